// The helpers every screen uses with the store, the regular-expression helpers and the closed-date test.
#include "QueryHelpers.h"
#include "Database.h"
#include "ScriptedMessageService.h"
#include "TempHome.h"

#include <gtest/gtest.h>

namespace {

class QueryHelpers : public ::testing::Test {
protected:
    void SetUp() override {
        db = Database::Open(home.storeFile(), true);
        db->Execute("create table kamer (KID counter, [Desc] text(50), Hoeveel double)");
        db->Execute("insert into kamer ([Desc],Hoeveel) values ('Office',2)");
        db->Execute("insert into kamer ([Desc],Hoeveel) values ('Store',null)");
        db->Execute("insert into kamer ([Desc],Hoeveel) values ('office',5)");
        db->Execute("create table leeg (id long, naam text(20))");
    }
    TempHome home;
    ScriptedMessageService messages;
    std::unique_ptr<Database> db;
};

} // namespace

TEST_F(QueryHelpers, GetScalarDefaults) {
    EXPECT_EQ(GetScalar(*db, "select [Desc] from kamer where KID = 1", "none", 0, "err"), "Office");
    EXPECT_EQ(GetScalar(*db, "select [Desc], Hoeveel from kamer where KID = 3", "none", 1, "err"), "5");
    // Null gives the default, no row and a bad statement the error default.
    EXPECT_EQ(GetScalar(*db, "select Hoeveel from kamer where KID = 2", "none", 0, "err"), "none");
    EXPECT_EQ(GetScalar(*db, "select max(id) from leeg", "0", 0, "err"), "0");
    EXPECT_EQ(GetScalar(*db, "select id from leeg", "0", 0, "err"), "err");
    EXPECT_EQ(GetScalar(*db, "select [Desc] from kamer", "0", 7, "err"), "err");
}

TEST(NullToDefaultTest, EmptyNullAndEmptyTextGiveTheDefault) {
    EXPECT_EQ(NullToDefault(Value(), Value("d")).toString(), "d");
    EXPECT_EQ(NullToDefault(Value(""), Value("d")).toString(), "d");
    EXPECT_EQ(NullToDefault(Value("x"), Value("d")).toString(), "x");
    EXPECT_EQ(NullToDefault(Value(0), Value(9)).toLong(), 0);
}

TEST_F(QueryHelpers, TablesAndFields) {
    EXPECT_EQ(TableExists(*db, "KAMER"), "KAMER");
    EXPECT_EQ(TableExists(*db, "rooms"), "");
    db->CreateTableDef("MSysObjects", {{"Id", "long", 0}});
    EXPECT_EQ(TableExists(*db, "MSysObjects"), "");
    EXPECT_EQ(TableExists(*db, "sqlite_master"), "");

    EXPECT_EQ(FieldExists(*db, "Kamer", "KID"), "0");
    EXPECT_EQ(FieldExists(*db, "kamer", "desc"), "1");
    EXPECT_EQ(FieldExists(*db, "kamer", "Rede"), "");
    EXPECT_EQ(FieldExists(*db, "rooms", "KID"), "");
}

TEST(TrimToLastDelimiterTest, CutsAtTheLastDelimiterWhenTheTextHoldsAComma) {
    EXPECT_EQ(TrimToLastDelimiter("1,2,3", ","), "1,2");
    EXPECT_EQ(TrimToLastDelimiter("  4,5, ", ","), "4,5");
    EXPECT_EQ(TrimToLastDelimiter("12", ","), "12");
    EXPECT_EQ(TrimToLastDelimiter("a;b", ";"), "a;b");   // no comma: left as it is
    EXPECT_EQ(TrimToLastDelimiter("a,b;c", ";"), "a,b"); // the comma only opens the cut
    EXPECT_EQ(TrimToLastDelimiter("a,b", ";"), "");      // nothing to cut at: the failure answer
}

TEST_F(QueryHelpers, EscapeThenUnescapeKeepsAnApostrophe) {
    QString name = "  o'brien's garage  ";
    const QString escaped = SqlEscape(name, true, false, true);
    EXPECT_EQ(escaped, "O''brien''s Garage");
    EXPECT_EQ(name, escaped); // changed in place
    db->Execute("insert into kamer ([Desc]) values ('" + escaped + "')");
    EXPECT_EQ(GetScalar(*db, "select [Desc] from kamer where [Desc] like '*brien*'", "", 0, "err"), "O'brien's Garage");
    EXPECT_EQ(SqlUnescape(escaped), "O'brien's Garage");
    EXPECT_EQ(SqlUnescape("ab''cd", false, 3), "ab'");

    QString dotted = "a.b c";
    EXPECT_EQ(SqlEscape(dotted, false, true, false), "a_b c");
    QString empty;
    EXPECT_EQ(SqlEscape(empty, true, true, true), "");
}

TEST_F(QueryHelpers, CountRecordsWalksAndReturnsToTheFirst) {
    auto rs = db->OpenRecordset("select * from kamer order by KID", RecordsetType::Snapshot);
    EXPECT_EQ(CountRecords(*rs), 3);
    EXPECT_EQ(rs->Field("KID").toLong(), 1);
    auto none = db->OpenRecordset("select * from leeg", RecordsetType::Snapshot);
    EXPECT_EQ(CountRecords(*none), 0);
}

TEST(PercentOfTotalTest, RoundsFallsBackAndSurvivesAZeroTotal) {
    EXPECT_EQ(PercentOfTotal(200, 50, 1, 0, 0, true), "25");
    EXPECT_EQ(PercentOfTotal(3, 1, 2, 0, 0, true), "33.33");
    EXPECT_EQ(PercentOfTotal(1000, 1, 1, 0.5, 0.5, true), "0.5");
    EXPECT_EQ(PercentOfTotal(0, 5, 2, 0, 0, true), "0");
}

TEST_F(QueryHelpers, Collections) {
    const QStringList items = {"Diesel", "Petrol 95", "petrol 93"};
    EXPECT_EQ(FindInCollection(items, "DIESEL", true, false), 1);
    EXPECT_EQ(FindInCollection(items, "petrol", true, false), 0);
    EXPECT_EQ(FindInCollection(items, "petrol", false, false), 2);
    EXPECT_EQ(FindInCollection(items, "93", false, true), 3);
    EXPECT_EQ(FindInCollection({}, "x", false, true), 0);

    EXPECT_EQ(CollectionFromQuery(*db, "select [Desc] from kamer order by KID", 0, false),
              QStringList({"Office", "Store", "office"}));
    EXPECT_EQ(CollectionFromQuery(*db, "select [Desc] from kamer order by KID", 0, true),
              QStringList({"Office", "Store"}));
    EXPECT_TRUE(CollectionFromQuery(*db, "select x from nowhere", 0, false).isEmpty());
}

TEST(ConfirmErrorTest, AsksYesOrNoWithNoAsDefault) {
    ScriptedMessageService messages;
    EXPECT_FALSE(ConfirmError(false, "Heading", "one", "two"));
    EXPECT_TRUE(messages.shown.isEmpty());

    messages.answer(MsgResult::Yes);
    EXPECT_TRUE(ConfirmError(true, "ERROR in SavePurchase", "detail one", "detail two"));
    ASSERT_EQ(messages.shown.size(), 1);
    EXPECT_EQ(messages.shown[0].text,
              "ERROR in SavePurchase\r\ndetail two\r\ndetail one\r\nYes - Resume Next, No - Exit");
    EXPECT_EQ(messages.shown[0].buttons, MsgButtons::YesNoDefaultNo);
    EXPECT_EQ(messages.shown[0].icon, MsgIcon::Question);

    messages.answer(MsgResult::No);
    EXPECT_FALSE(ConfirmError(true, "h", "1", "2"));
}

TEST(ClosedDateTest, OnAndBeforeTheClosingDateAreRefused) {
    ScriptedMessageService messages;
    const QDateTime closed(QDate(2024, 3, 31), QTime(0, 0));
    EXPECT_FALSE(IsDateClosed(QDateTime(QDate(2024, 4, 1), QTime(0, 0)), closed));
    EXPECT_TRUE(messages.shown.isEmpty());

    EXPECT_TRUE(IsDateClosed(QDateTime(QDate(2024, 3, 31), QTime(17, 30)), closed)); // the time does not count
    EXPECT_TRUE(IsDateClosed(QDateTime(QDate(2023, 12, 1), QTime(0, 0)), closed));
    ASSERT_EQ(messages.shown.size(), 2);
    EXPECT_EQ(messages.shown[0].text, "The date entered is already closed. Please change the date.");
    EXPECT_EQ(messages.shown[0].title, "Closed date");
    EXPECT_EQ(messages.shown[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages.shown[0].buttons, MsgButtons::Ok);
}

TEST(RegexHelpersTest, CaptureIgnoresCaseAndTakesTheFirstMatch) {
    const QString quantity = ".*\\(((?:[0-9]*\\s)*[0-9]*\\.?[0-9]{0,5})\\)";
    EXPECT_EQ(RegexCapture("Spanner set (1 234.5)", quantity, 0), "1 234.5");
    EXPECT_EQ(RegexCapture("Book out ID 42 and id 7", "id\\s*([0-9]{1,})", 0), "42");
    EXPECT_EQ(RegexCapture("no number here", "id\\s*([0-9]{1,})", 0), "");
    EXPECT_EQ(RegexCapture("id 42", "id\\s*([0-9]{1,})", 1), "");
}

TEST(RegexHelpersTest, FindListsEveryMatchOrReportsFailure) {
    EXPECT_EQ(RegexFind("[^a-z0-9]", "Abc", false), "Failed");
    EXPECT_EQ(RegexFind("[^a-z0-9]", "Abc", true), "0:0");
    EXPECT_EQ(RegexFind("[0-9]+", "a12b3", false), "1:2,4:1");
    EXPECT_EQ(RegexFind("^x", "ab\nxy\nx", false), "3:1,6:1"); // multi-line
    EXPECT_EQ(RegexFind("B", "abcB", false), "1:1,3:1");       // case-blind
    EXPECT_EQ(RegexFind("[", "abc", false), "");
}

TEST(RegexHelpersTest, ReplaceIsGlobalCaseBlindAndMultiLine) {
    EXPECT_EQ(RegexReplace("Fuel/Tank?[A]*", "[\\\\/\\?\\*\\[\\]]", ""), "FuelTankA");
    EXPECT_EQ(RegexReplace("one\ntwo", "^", "> "), "> one\n> two");
    EXPECT_EQ(RegexReplace("2024-05-06", "(\\d+)-(\\d+)-(\\d+)", "$3/$2/$1 $$ [$&]"), "06/05/2024 $ [2024-05-06]");
    EXPECT_EQ(RegexReplace("abc", "(", "x"), "");
}
