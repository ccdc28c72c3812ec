// A scripted day of work through the real save routines, offscreen: owner details, categories, vehicles, the
// rebate rates, the closing date, a tank with a purchase and a stock take, fuel issues, edits and Recalc, a service
// captured and allocated into history, equipment added, booked out and booked in, and a driver's permit. Each write
// that becomes durable is reported on standard output ("w" and a line break) as soon as it is, so that a test can kill
// the program at any moment and know what it had stored.
//
//   day_of_work HOME             the day, reporting each durable write
//   day_of_work HOME --record F  the same, writing the store's dump hash to F before the first write and after
//                                each durable write

#include "RawDump.h"

#include "BatchSession.h"
#include "CommandLine.h"
#include "EquipmentLedger.h"
#include "FlexGrid.h"
#include "QueryHelpers.h"
#include "Recalc.h"
#include "Registration.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "frmAdd.h"
#include "frmEquipment.h"
#include "frmEquipmentAdj.h"
#include "frmFuel.h"
#include "frmPDP.h"
#include "frmRebate.h"
#include "frmServAdd.h"
#include "frmTank.h"
#include "frmTankPurchase.h"
#include "frmTankStock.h"
#include "frmVoerDet.h"
#include "frmVoerDiens.h"
#include "frmVoerk.h"
#include "frmowner.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <cstdio>
#include <unistd.h>

namespace {

void Type(QLineEdit* field, const QString& text) {
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

void AddCategory(const QString& name, bool hours) {
    frmVoerk screen;
    screen.show();
    QTest::mouseClick(screen.Label4[0], Qt::LeftButton);
    Type(screen.txtKAT, name);
    if (hours)
        screen.Opt1[1]->setChecked(true);
    QTest::mouseClick(screen.Label4[3], Qt::LeftButton);
}

void AddVehicle(int category, const QString& make, const QString& reg, const QString& km) {
    Session& s = CurrentSession();
    s.SelectedID = category;
    s.SelectedCatID = category;
    frmVoerDet detail;
    detail.SetNewVehicleDefaults();
    detail.show();
    Type(detail.txtMaak, make);
    Type(detail.txtReg, reg);
    Type(detail.txtKilo, km);
    Type(detail.txtKoop, "250000");
    QTest::mouseClick(detail.lblcmd[0], Qt::LeftButton);
}

void EditVehicle(int id, int category, const QString& km) {
    Session& s = CurrentSession();
    s.SelectedID = id;
    s.SelectedCatID = category;
    frmVoerDet detail;
    detail.LoadDetail();
    detail.show();
    Type(detail.txtKilo, km);
    QTest::mouseClick(detail.lblcmd[0], Qt::LeftButton);
}

// A tank, a purchase into it and a stock take of it, each saved as the user saves it.
void KeepTank() {
    Session& s = CurrentSession();
    {
        frmTank tanks;
        tanks.show();
        QTest::mouseClick(tanks.Label4[0], Qt::LeftButton);
        Type(tanks.txtTank, "north diesel");
        Type(tanks.txtCapacity, "20000");
        QTest::mouseClick(tanks.Label4[3], Qt::LeftButton);
    }
    s.CurrentTankID = 1;
    s.CurrentPurchaseID = 0;
    {
        frmTankPurchase purchase;
        purchase.show();
        Type(purchase.txtDyy, "2024/03/05");
        Type(purchase.txtLiter, "5000");
        Type(purchase.txtCost, "105000");
        Type(purchase.txtCostLitre, "21");
        QTest::mouseClick(purchase.lblcmd[0], Qt::LeftButton);
    }
    frmTankStock stock;
    stock.show();
    QTest::mouseClick(stock.Label4, Qt::LeftButton);
    stock.cmbTank->setCurrentIndex(0);
    emit stock.cmbTank->activated(0);
    stock.dtpDate->setDate(QDate(2024, 3, 10));
    Type(stock.txtLitIn, "4700");
    Type(stock.txtReason, "Dip stick");
    QTest::mouseClick(stock.lblcmd[0], Qt::LeftButton);
}

void Pick(QComboBox* combo, int index) {
    combo->setCurrentIndex(index);
    emit combo->activated(index);
}

// A supplier and a cost category through the adder, a service captured for the first vehicle, then allocated into
// its history with a note.
void KeepService() {
    for (const char* caption : {"Supplier", "Cost Category"}) {
        frmAdd adder;
        adder.lblAdd->setText(caption);
        adder.show();
        Type(adder.txtAdd, caption == QString("Supplier") ? "bosch service" : "repairs");
        QTest::mouseClick(adder.lblcmd[1], Qt::LeftButton);
    }
    {
        frmServAdd capture;
        capture.show();
        QTest::mouseClick(capture.lblcmd[0], Qt::LeftButton);
        Pick(capture.Combo2, capture.Combo2->findText("Bakkies"));
        Pick(capture.Combo3, 0);
        Pick(capture.Combo4, 0);
        Pick(capture.Combo1, 0);
        Type(capture.txtDyy, "2024/03/20");
        Type(capture.txtKos, "1450");
        Type(capture.txtKm, "9000");
        QTest::mouseClick(capture.lblcmd[5], Qt::LeftButton);
    }
    frmVoerDiens history;
    history.show();
    Pick(history.Combo2, history.Combo2->findText("Bakkies"));
    Pick(history.Combo3, 0);
    history.flx2->setCurrentCell(1, 1);
    QTest::mouseClick(history.lblcmd[8], Qt::LeftButton);
    QTest::keyClicks(history.txtNota, "Brakes and oil");
    QTest::mouseClick(history.lblcmd[3], Qt::LeftButton);
}

// An equipment category and an item with its opening balance, a book-out of two and a book-in of one.
void KeepEquipment(ScriptedMessageService& messages) {
    Session& s = CurrentSession();
    {
        s.EquipmentMode = 0;
        s.ReportChoice = "Equipment List";
        frmEquipment list;
        list.show();
        QTest::mouseClick(list.Label4[0], Qt::LeftButton);
        Type(list.txtKAT, "Tools");
        QTest::mouseClick(list.Label4[3], Qt::LeftButton);
    }
    s.SelectedCategoryId = GetScalar(*s.db, "select max(tid) from toerkat", "0").toInt();
    auto entry = [&](int mode, const QString& desc, const QString& qty) {
        s.EquipmentMode = mode;
        frmEquipmentAdj d;
        d.show();
        Type(d.txtDesc, desc);
        Type(d.txtQtyBuy, qty);
        if (mode == kOpeningBalance)
            Type(d.txtCostBuy, "850");
        d.dtpTrans->setDate(QDate(2024, 3, 21));
        messages.answer(MsgResult::Yes); // "Add Item?" or "Update?"
        if (mode != kOpeningBalance)
            messages.answer(MsgResult::No); // no printed form
        QTest::mouseClick(d.cmdSave, Qt::LeftButton);
    };
    s.SelectedItemId = 0;
    entry(kOpeningBalance, "Angle grinder", "4");
    s.SelectedItemId = GetScalar(*s.db, "select max(iid) from toerinv", "0").toInt();
    s.ReportChoice = BookOutContext("Angle grinder", "4");
    entry(kBookOut, "Sipho", "2");
    const long long out = GetScalar(*s.db, "select max(id) from equipmenttrans where actionid = 2", "0").toLongLong();
    s.ReportChoice = BookInContext(out, "Angle grinder", "Sipho ( 2.00)");
    BookOutStockTakeId() =
        GetScalar(*s.db, "select stocktakeid from equipmenttrans where id = " + QString::number(out), "0").toLongLong();
    entry(kBookIn, "Returned", "1");
}

void KeepPermit() {
    frmPDP permits;
    permits.show();
    QTest::mouseClick(permits.lblcmd[0], Qt::LeftButton);
    Type(permits.txtId, "7001015009087");
    Type(permits.txtSurname, "Dlamini");
    Type(permits.txtFirstname, "Thandi");
    permits.dtpPdPdate->setDate(QDate(2026, 5, 31));
    QTest::mouseClick(permits.lblcmd[5], Qt::LeftButton);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ORVEL_NO_SHOW", "1");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2)
        return 2;
    const QString home = args[1];
    const QString record = args.indexOf("--record") > 0 ? args.value(args.indexOf("--record") + 1) : QString();
    QFile recordFile(record);
    if (!record.isEmpty() && !recordFile.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 2;

    ScriptedMessageService messages;
    RegisterAllScreens();
    CommandLine cl;
    cl.home = home;
    BatchSession batch(cl);
    // The store is made (or taken) as every start does; what it writes from here on is reported.
    if (const QString reason = batch.open(true); !reason.isEmpty()) {
        std::fprintf(stderr, "day_of_work: %s\n", qPrintable(reason));
        return 1;
    }
    Session& s = batch.session;
    const QString file = s.DataPath + "invent.db";
    if (!record.isEmpty())
        recordFile.write(RawDumpHash(file) + "\n"); // the state before the first write
    s.db->OnDurableWrite([&] {
        if (!record.isEmpty()) {
            recordFile.write(RawDumpHash(file) + "\n");
            recordFile.flush();
        }
        // Straight to the pipe: the report must not wait in a buffer when the program is killed.
        const char line[] = "w\n";
        if (write(STDOUT_FILENO, line, 2) != 2)
            _exit(3);
    });

    {
        frmowner owner;
        owner.show();
        Type(owner.txtname, "Quillmere Farms");
        Type(owner.txttel, "021 555 0101");
        QTest::mouseClick(owner.lblSave, Qt::LeftButton);
    }
    AddCategory("Bakkies", false);
    AddCategory("Tractors", true);
    const int bakkies = 1, tractors = 2;
    for (int i = 1; i <= 6; ++i)
        AddVehicle(i % 3 == 0 ? tractors : bakkies, QString("Make %1").arg(i), QString("CA %1-00%1").arg(i),
                   QString::number(1000 * i));
    {
        frmRebate rebate;
        rebate.show();
        Type(rebate.txtRebateRate, "412");
        QTest::mouseClick(rebate.lblcmd[0], Qt::LeftButton);
    }
    s.ClosedDate = QDateTime(QDate(2024, 2, 29), QTime(0, 0));
    SaveClosedDate(s);
    // A tank with a purchase, then two issues through the fuel screen (each save recalculates twice).
    s.db->Execute("insert into tanks (TankNaam, HuidigeVolume, CurRperL, Datum, PumpReading) "
                  "values ('Main', 0, 21.5, '2024/03/01', 100)");
    s.db->Execute("insert into FuelPurchase (TankID, Datum, Liter, Cost, CostPerLiter) "
                  "values (1, '2024/03/01', '2000', '43000', '21.50')");
    {
        frmFuel fuel;
        fuel.show();
        fuel.activateWindow(); // leaving the pump reading works out the litres: focus must move
        if (!QTest::qWaitForWindowActive(&fuel))
            return 1;
        for (int i = 0; i < 2; ++i) {
            fuel.Combo2->setCurrentIndex(fuel.Combo2->findText("Bakkies"));
            fuel.Combo3->setCurrentIndex(i);
            fuel.Combo7->setCurrentIndex(0);
            Type(fuel.txtDyy, QString("2024/03/1%1").arg(i));
            Type(fuel.txtPumpCurr, QString::number(140 + 40 * i));
            QTest::keyClick(fuel.txtPumpCurr, Qt::Key_Tab);
            Type(fuel.txtKm, QString::number(1000 * (i + 1) + 120));
            QTest::mouseClick(fuel.lblcmd[0], Qt::LeftButton);
        }
    }
    for (int i = 1; i <= 6; ++i) {
        s.db->Execute(QString("insert into VecFuel (VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres) "
                              "values (%1, 1, '2024/03/0%1', %2, 0, 40)")
                          .arg(i)
                          .arg(1000 * i + 250));
    }
    Recalc(*s.db, nullptr, false);
    for (int i = 1; i <= 6; ++i)
        EditVehicle(i, i % 3 == 0 ? tractors : bakkies, QString::number(1000 * i + 500));
    AddCategory("Trailers", false);
    KeepTank();
    Recalc(*s.db, nullptr, false);
    KeepService();
    KeepEquipment(messages);
    KeepPermit();
    s.db->OnDurableWrite(nullptr);
    // Each later save must have gone through, or the kills would not fall on them.
    const struct {
        const char* what;
        const char* count;
        const char* expected;
    } kept[] = {{"the service in history", "select count(*) from vdiens_allocated", "1"},
                {"the book-out and book-in", "select count(*) from equipmenttrans where actionid in (1, 2)", "2"},
                {"the permit", "select count(*) from pdp", "1"}};
    for (const auto& k : kept) {
        if (GetScalar(*s.db, k.count, "0") != k.expected) {
            std::fprintf(stderr, "day_of_work: %s was not saved (%s)\n", k.what,
                         qPrintable(messages.texts().join(" / ")));
            return 1;
        }
    }
    return 0;
}
