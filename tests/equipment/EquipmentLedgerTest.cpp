// The ledger's statements and writes without screens: context texts, dates spliced as text, book-out balances,
// the open list's look-ups and the item statement.
#include "EquipmentLedger.h"
#include "EquipmentTestStore.h"
#include "Vb.h"

namespace {

class LedgerTest : public EquipmentStoreTest {};

} // namespace

TEST(EquipmentContext, QuantitiesAndIdsReadBackFromTheirTexts) {
    struct Case {
        QString text;
        double quantity;
        long long id;
    };
    const Case cases[] = {
        {BookOutContext("Drill", "5"), 5, 0},
        {BookOutContext("Drill", "1 250.00"), 1250, 0},
        {BookOutContext("Grinder (large)", "12.5"), 12.5, 0},
        {BookOutContext("Drill", "-3"), 0, 0}, // no minus in the pattern: reads as 0
        {BookInContext(40123, "Ladder", "Jan (2.00)"), 2, 40123},
        {BookInContext(7, "A very long item name that runs on past the cut", "PIET (1 000.50)"), 1000.5, 7},
        {"id 12 - 'x' Sam (3.00) BOOKED OUT", 3, 12},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ParseContextQuantity(c.text).toDouble(), c.quantity) << qPrintable(c.text);
        EXPECT_EQ(ParseContextId(c.text), c.id) << qPrintable(c.text);
    }
    EXPECT_EQ(BookInContext(7, QString(40, 'x'), "r (1.00)"), "ID 7 - '" + QString(35, 'x') + "' r (1.00) booked out");
}

TEST_F(LedgerTest, NewItemWritesHeaderOpeningRowAndQuantity) {
    const int cat = addCategory("Tools");
    const int item = addItem(cat, "Drill", 4, 10);
    EXPECT_EQ(scalar("select hoeveel & '|' & kitem from toerinv where iid = " + QString::number(item)), "4|2.5");
    EXPECT_EQ(scalar("select count(*) from equipmentstocktake"), "1");
    EXPECT_EQ(scalar("select trreason & '|' & trperson & '|' & equipid from equipmentstocktake"),
              "Book Out|Drill|" + QString::number(cat));
    EXPECT_EQ(scalar("select trdesc & '|' & actionid & '|' & stocktakeid from equipmenttrans"), "Stock Take On|0|0");
    EXPECT_EQ(scalar("select format(sortdate,'yyyy/mm/dd') & '|' & format(trdate,'yyyy/mm/dd') from equipmenttrans"),
              QDate::currentDate().addYears(-50).toString("yyyy/MM/dd") + "|" +
                  QDate::currentDate().toString("yyyy/MM/dd"));
    // The date spliced as text is a date: ranges, min and max read it.
    const QDate today = QDate::currentDate();
    EXPECT_EQ(scalar("select count(*) from equipmenttrans where trdate >= #" + DayStartText(today) +
                     "# and trdate <= #" + DayEndText(today) + "#"),
              "1");
    EXPECT_EQ(ScalarDate("select max(trdate) from equipmenttrans", QDate(2000, 1, 1)), today);
}

TEST_F(LedgerTest, BookOutsAndBookInsKeepTheLedgerAndQuantityTogether) {
    const int cat = addCategory("Tools");
    const int item = addItem(cat, "Drill", 10, 100);
    const QDate day(2024, 3, 5);
    const long long out = bookOut(cat, item, 4, "Sam", day);
    EXPECT_EQ(GetBookOutBalance(out).toDouble(), -4);
    EXPECT_EQ(scalar("select stocktakeid from equipmenttrans where id = " + QString::number(out)),
              scalar("select max(id) from equipmentstocktake"));
    EquipmentEntry in;
    in.mode = kBookIn;
    in.categoryId = cat;
    in.itemId = item;
    in.description = "Sam";
    in.quantity = Currency::fromDouble(1.5);
    in.date = day;
    in.bookOutId = out;
    in.bookOutStockTakeId = 77;
    const long long first = WriteEquipmentMovement(in);
    EXPECT_EQ(scalar("select bookoutid from equipmenttrans where id = " + QString::number(first)),
              QString::number(out));
    EXPECT_EQ(scalar("select stocktakeid from equipmenttrans where id = " + QString::number(first)), "77");
    EXPECT_EQ(GetBookOutBalance(out).toDouble(), -2.5);
    EXPECT_EQ(scalar("select trclosed from equipmenttrans where id = " + QString::number(out)), "False");
    in.quantity = Currency::fromDouble(2.5);
    WriteEquipmentMovement(in);
    EXPECT_EQ(GetBookOutBalance(out).toDouble(), 0);
    EXPECT_EQ(scalar("select count(*) from equipmenttrans where trclosed = true"), "3");
    EXPECT_EQ(number("select hoeveel from toerinv"), 10);
    EXPECT_TRUE(ledgerDisagreements().isEmpty()) << ledgerDisagreements().join("; ").toStdString();
}
