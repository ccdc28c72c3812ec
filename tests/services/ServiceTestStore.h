#pragma once
// The vehicle register's test store with suppliers and cost categories, and the steps a person takes on the
// service screens: picking in a combo, answering the lookup-list dialogs.

#include "../vehicles/VehicleTestStore.h"
#include "Dialogs.h"
#include "FlexGrid.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

class ServiceStoreTest : public VehicleStoreTest {
protected:
    void SetUp() override {
        VehicleStoreTest::SetUp();
        SeedRegister();
        m_session.ClosedDate = QDateTime(QDate(2024, 6, 30), QTime(0, 0));
        m_toyota = scalar("select transid from voertuig where maak = 'TOYOTA'").toInt();
        m_ford = scalar("select transid from voertuig where maak = 'ford'").toInt();
    }

    void SeedSuppliersAndCategories() {
        exec("insert into VecSupplier (SUP_Desc) values ('BOSCH SERVICE')");
        exec("insert into VecSupplier (SUP_Desc) values ('midas')");
        exec("insert into CostCat (CC_CostCatagory) values ('Maintenance')");
        exec("insert into CostCat (CC_CostCatagory) values ('Repairs')");
        m_bosch = scalar("select sup_no from VecSupplier where sup_desc = 'BOSCH SERVICE'").toInt();
        m_midas = scalar("select sup_no from VecSupplier where sup_desc = 'midas'").toInt();
        m_maintenance = scalar("select cc_iid from CostCat where cc_costcatagory = 'Maintenance'").toInt();
        m_repairs = scalar("select cc_iid from CostCat where cc_costcatagory = 'Repairs'").toInt();
    }

    // An open service written as the capture screen writes it; returns its TransID.
    int addOpenService(int vehicle, const QString& date, const QString& cost, const QString& km,
                       const QString& reference, int supplier = 0, int category = 0) {
        exec(QString("insert into vdiens_unallocated ([date], supplierid, costcatid, cost, km, voertuigid, reference, "
                     "kyk) values ('%1', %2, %3, '%4', '%5', %6, '%7', 0)")
                 .arg(date)
                 .arg(supplier ? supplier : m_bosch)
                 .arg(category ? category : m_maintenance)
                 .arg(cost, km)
                 .arg(vehicle)
                 .arg(reference));
        return scalar("select max(transid) from vdiens_unallocated").toInt();
    }

    int addHistory(int vehicle, const QString& date, const QString& cost, const QString& km, const QString& note,
                   const QString& reference = "00001") {
        exec(QString("insert into vdiens_allocated (vechileid, supplierid, CostCategoryID, [date], cost, kilometers, "
                     "note, reference) values (%1, %2, %3, '%4', '%5', '%6', '%7', '%8')")
                 .arg(vehicle)
                 .arg(m_bosch)
                 .arg(m_maintenance)
                 .arg(date, cost, km, note, reference));
        return scalar("select max(transid) from vdiens_allocated").toInt();
    }

    void addCostLine(const QString& link, int id, const QString& kind, const QString& ref1, double value1,
                     double value2, const QString& ref2 = QString()) {
        exec(
            QString("insert into vdiens_extra (%1, costtype, reference1, reference2, value1, value2) values (%2, '%3', "
                    "'%4', '%5', %6, %7)")
                .arg(link)
                .arg(id)
                .arg(kind, ref1, ref2)
                .arg(value1)
                .arg(value2));
    }

    template <class Screen> std::unique_ptr<Screen> open() {
        auto screen = std::make_unique<Screen>();
        screen->resize(1280, 800);
        screen->show();
        screen->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(screen.get()));
        return screen;
    }

    // A pick in a combo, as the mouse makes it.
    static void pick(QComboBox* combo, const QString& text) {
        const int index = combo->findText(text);
        ASSERT_GE(index, 0) << qPrintable(text);
        combo->setCurrentIndex(index);
        emit combo->activated(index);
    }

    static void click(QPushButton* button) {
        ASSERT_TRUE(button->isVisible()) << qPrintable(button->text());
        QTest::mouseClick(button, Qt::LeftButton);
    }

    static void type(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
    }

    // A click on the row's first shown cell.
    static void pickRow(FlexGrid* grid, int row) {
        const QRect cell = grid->visualRect(grid->model()->index(row, 1));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    }

    static QStringList column(const FlexGrid* grid, int col) {
        QStringList out;
        for (int r = 1; r < grid->Rows(); ++r)
            out << grid->TextMatrix(r, col);
        return out;
    }

    // Runs `act` on the next modal dialog of the given form once it is up.
    template <typename Form> static void whenShown(std::function<void(Form*)> act, int triesLeft = 300) {
        QTimer::singleShot(10, [=] {
            if (auto* form = qobject_cast<Form*>(QApplication::activeModalWidget())) {
                act(form);
                return;
            }
            if (triesLeft > 0) {
                whenShown<Form>(act, triesLeft - 1);
                return;
            }
            ADD_FAILURE() << "the expected dialog did not open";
            if (QWidget* other = QApplication::activeModalWidget())
                other->close();
        });
    }

    static void typeName(const QString& name) {
        whenShown<frmInputDialog>([=](frmInputDialog* form) {
            QTest::keyClicks(form->txtMsg[0], name);
            QTest::mouseClick(form->cmdCloseDialog, Qt::LeftButton);
        });
    }

    QString newestWorkbook(const QString& folder) const {
        return WorkbookReader::newestIn(m_home.path() + "/Reports/" + folder);
    }

    int m_toyota = 0, m_ford = 0;
    int m_bosch = 0, m_midas = 0, m_maintenance = 0, m_repairs = 0;
};
