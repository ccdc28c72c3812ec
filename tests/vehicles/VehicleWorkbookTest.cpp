// The two vehicle workbooks, read back from the saved files.
#include "VehicleTestStore.h"
#include "frmVoerDet.h"
#include "frmVoerk.h"

#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace {

class VehicleWorkbookTest : public VehicleStoreTest {
protected:
    void SetUp() override {
        VehicleStoreTest::SetUp();
        SeedRegister();
    }

    // The one workbook saved under Reports/Vehicles whose name starts with `report`.
    QString savedWorkbook(const QString& report) const {
        const QDir dir(m_home.path() + "/Reports/Vehicles");
        const QStringList found = dir.entryList({report + "-*.xlsx"}, QDir::Files);
        return found.size() == 1 ? dir.filePath(found.first()) : QString();
    }
};

} // namespace

TEST_F(VehicleWorkbookTest, VehicleListOfTheSelectedCategory) {
    frmVoerk s;
    s.show();
    s.list1->setCurrentRow(1); // Light Vehicles
    m_messages.answer(MsgResult::No);
    QTest::mouseClick(s.lblPrint, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Print View?");
    EXPECT_EQ(savedWorkbook("Vehicle Category"), "");

    QTest::mouseClick(s.lblPrint, Qt::LeftButton);
    const QString file = savedWorkbook("Vehicle Category");
    ASSERT_FALSE(file.isEmpty());
    WorkbookReader book;
    ASSERT_TRUE(book.open(file)) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet(0);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("A1"), "Vehicles In Selected Category Light Vehicles");
    EXPECT_TRUE(sheet->merged("A1:H1"));
    const QStringList headings = {"Category",       "Make",       "Model",           "Registration #",
                                  "Purchase Price", "Kilometers", "Licence Renewal", "Service Due"};
    const QString columns = "ABCDEFGH";
    for (int c = 0; c < 8; ++c)
        EXPECT_EQ(sheet->text(columns[c] + QString("2")), headings[c]);

    // Rows as stored, ordered by make: ford, Isuzu, TOYOTA.
    EXPECT_EQ(QStringList({sheet->text("A3"), sheet->text("B3"), sheet->text("C3"), sheet->text("D3")}),
              QStringList({"LIGHT VEHICLES", "ford", "ranger", "CA 777"}));
    EXPECT_EQ(QStringList({sheet->text("B4"), sheet->text("B5"), sheet->text("B6")}),
              QStringList({"Isuzu", "TOYOTA", ""}));
    ASSERT_TRUE(sheet->cell("E5")->isNumber());
    EXPECT_DOUBLE_EQ(sheet->number("E5"), 385000);
    EXPECT_EQ(sheet->cell("E5")->style.numberFormat, "### ### ##0.00");
    ASSERT_TRUE(sheet->cell("F5")->isNumber());
    EXPECT_DOUBLE_EQ(sheet->number("F5"), 125400.5);
    EXPECT_EQ(sheet->cell("F5")->style.numberFormat, "### ### ###");
    // The store's text dates arrive as date cells.
    EXPECT_DOUBLE_EQ(sheet->number("G5"), QDate(1899, 12, 30).daysTo(QDate(2025, 3, 31)));
    EXPECT_EQ(sheet->cell("G5")->style.numberFormat, "yyyy/mm/dd");
    EXPECT_DOUBLE_EQ(sheet->number("H5"), QDate(1899, 12, 30).daysTo(QDate(2024, 11, 15)));
}

TEST_F(VehicleWorkbookTest, VehicleFormOnOnePage) {
    const int id = scalar("select transid from voertuig where regnr = 'CA 123-456'").toInt();
    exec(QString("update voertuig set rebated = -1, oilfilterref = 'OF-77', fanbeltref = 'FB-12', tyresize = "
                 "'265/65R17', depwaarde = 12.5 where transid = %1")
             .arg(id));
    m_session.SelectedID = id;
    m_session.SelectedCatID = m_light;
    frmVoerDet d;
    d.LoadDetail();
    d.show();
    QTest::mouseClick(d.cmdPrint, Qt::LeftButton);
    const QString file = savedWorkbook("Vehicle Form View");
    ASSERT_FALSE(file.isEmpty());
    WorkbookReader book;
    ASSERT_TRUE(book.open(file)) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet(0);
    ASSERT_NE(sheet, nullptr);

    EXPECT_EQ(sheet->text("A1"), "Vehicle Information");
    EXPECT_TRUE(sheet->merged("A1:D1"));
    EXPECT_EQ(sheet->text("A2"), "Vehicle Information");
    const std::vector<std::pair<QString, QString>> rows = {
        {"Odometer", "Kilometer"},
        {"Rebate", "Yes"},
        {"Name/Make", "TOYOTA"},
        {"Registration No", "CA 123-456"},
        {"Kilometers", ""},
        {"Licence Renewal Date", ""},
        {"Service Due Date", ""},
        {"Additional Information", ""},
        {"Model", "HILUX"},
        {"Engine Number", ""},
        {"Purchase Date", "2022/01/01"},
        {"Purchase Price", ""},
        {"Depreciation %", ""},
        {"Value", ""},
        {"Insured Value", ""},
        {"Specifications", ""},
        {"Fuel Tank Size", ""},
        {"Battery Size", ""},
        {"Tyre Size", "265/65R17"},
        {"Oil Filter Info", "OF-77"},
        {"Fanbelt Info", "OF-77"}, // the fanbelt row prints the oil filter reference
    };
    for (size_t i = 0; i < rows.size(); ++i) {
        const QString r = QString::number(static_cast<int>(i) + 3);
        EXPECT_EQ(sheet->text("A" + r), rows[i].first) << "row " << r.toStdString();
        const QDate date = QDate::fromString(rows[i].second, "yyyy/MM/dd");
        if (date.isValid()) {
            EXPECT_DOUBLE_EQ(sheet->number("D" + r), QDate(1899, 12, 30).daysTo(date)) << "row " << r.toStdString();
        } else if (!rows[i].second.isEmpty()) {
            EXPECT_EQ(sheet->text("D" + r), rows[i].second) << "row " << r.toStdString();
        }
    }
    ASSERT_TRUE(sheet->cell("D7")->isNumber());
    EXPECT_DOUBLE_EQ(sheet->number("D7"), 125400.5);
    EXPECT_EQ(sheet->cell("D7")->style.numberFormat, "### ### ##0");
    EXPECT_DOUBLE_EQ(sheet->number("D14"), 385000);
    EXPECT_DOUBLE_EQ(sheet->number("D15"), 12.5);
    EXPECT_EQ(sheet->cell("D15")->style.numberFormat, "##0.00");
}
