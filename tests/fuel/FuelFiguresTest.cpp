// The consumption figures: the current estimate with its quiet stops, the latest issue and the latest eleven
// issues of a vehicle with their order of rounding.

#include "FuelFigures.h"
#include "FuelTestStore.h"
#include "Vb.h"

namespace {

class FiguresStore : public FuelStoreTest {
protected:
    void issue(double km, const QString& previous, double litres, double rate) {
        exec(QString("insert into VecFuel (VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres, RperL) "
                     "values (7, 1, '2024/05/01', %1, %2, %3, %4)")
                 .arg(km)
                 .arg(previous)
                 .arg(litres)
                 .arg(rate));
    }
    void figures() { ShowFuelFigures(*m_session.db, "7", m_previous, m_previous10); }
    FigureGroup m_previous, m_previous10;
};

} // namespace

TEST(CurrentTankFigures, DistanceFromThePreviousReadingOrFromTheReadingAlone) {
    struct Case {
        const char *prKm, *km, *litres, *rate;
        FigureGroup expected;
    } cases[] = {
        {"1000", "1400", "40", "20.5", {"400.00", "10.00", "10.00", "20.50", "2.05"}},
        {"", "300", "60", "21", {"300.00", "5.00", "20.00", "21.00", "4.20"}},  // no previous: the reading itself
        {"0", "300", "60", "21", {"300.00", "5.00", "20.00", "21.00", "4.20"}}, // a previous of 0 the same
        {"1000", "1100", "30", "20", {"100.00", "3.33", "30.00", "20.00", "6.00"}},
    };
    for (const Case& c : cases) {
        FigureGroup current;
        EXPECT_TRUE(ShowCurrentTankFigures(c.prKm, c.km, c.litres, c.rate, current));
        EXPECT_EQ(current.kmTravel, c.expected.kmTravel) << c.km;
        EXPECT_EQ(current.kmPerLitre, c.expected.kmPerLitre) << c.km;
        EXPECT_EQ(current.litresPer100, c.expected.litresPer100) << c.km;
        EXPECT_EQ(current.randPerLitre, c.expected.randPerLitre) << c.km;
        EXPECT_EQ(current.costPerKm, c.expected.costPerKm) << c.km;
    }
}

TEST(CurrentTankFigures, ADivisionByZeroStopsQuietlyKeepingWhatWasWritten) {
    // Empty litres: the first division fails and nothing changes.
    FigureGroup untouched{"a", "b", "c", "d", "e"};
    EXPECT_FALSE(ShowCurrentTankFigures("1000", "1400", "", "20", untouched));
    EXPECT_EQ(untouched.kmTravel, "a");
    EXPECT_EQ(untouched.costPerKm, "e");
    // A distance of 0: kilometres per litre is 0, so litres per 100 km fails before anything is written.
    FigureGroup equal{"a", "b", "c", "d", "e"};
    EXPECT_FALSE(ShowCurrentTankFigures("1000", "1000", "40", "20", equal));
    EXPECT_EQ(equal.kmPerLitre, "b");
}

TEST(FirstFillFigures, WithoutAStartReadingItStopsAtTheFirstDivision) {
    FigureGroup previous;
    EXPECT_FALSE(ShowFirstFillFigures("1000", "20", 0.0, 0.0, previous));
    EXPECT_TRUE(previous.isEmpty());
    // With figures already shown it does nothing.
    FigureGroup shown{"1", "2", "3", "4", "5"};
    EXPECT_TRUE(ShowFirstFillFigures("1000", "20", 0.0, 0.0, shown));
    EXPECT_EQ(shown.kmPerLitre, "2");
    // Given a start reading and litres it fills the group as the current figures do.
    FigureGroup filled;
    EXPECT_TRUE(ShowFirstFillFigures("1400", "20.5", 1000, 40, filled));
    EXPECT_EQ(filled.kmTravel, "400.00");
    EXPECT_EQ(filled.costPerKm, "2.05");
}

TEST_F(FiguresStore, AVehicleWithoutIssuesLeavesBothGroupsEmpty) {
    figures();
    EXPECT_TRUE(m_previous.isEmpty());
    EXPECT_TRUE(m_previous10.isEmpty());
}

TEST_F(FiguresStore, EqualReadingsGiveZerosWithoutADivisionByZero) {
    issue(5000, "5000", 40, 20);
    figures();
    EXPECT_EQ(m_previous.kmTravel, "0.00");
    EXPECT_EQ(m_previous.kmPerLitre, "0.00");
    EXPECT_EQ(m_previous.litresPer100, "0.00");
    EXPECT_EQ(m_previous.randPerLitre, "20.00");
    EXPECT_EQ(m_previous.costPerKm, "0.00");
    EXPECT_EQ(m_previous10.kmTravel, "0.00");
    EXPECT_EQ(m_previous10.litresPer100, "0.00");
    EXPECT_EQ(m_previous10.costPerKm, "0.00");
}

TEST_F(FiguresStore, LitresPer100ComeFromTheRoundedKilometresPerLitre) {
    // 2004 km on 1000 litres: 2.004 shows as 2.00, and 100 / 2.00 is 50.00 (not 49.90 from 2.004).
    issue(3004, "1000", 1000, 21.5);
    figures();
    EXPECT_EQ(m_previous.kmTravel, "2004.00");
    EXPECT_EQ(m_previous.kmPerLitre, "2.00");
    EXPECT_EQ(m_previous.litresPer100, "50.00");
    EXPECT_EQ(m_previous.costPerKm, "10.73"); // 21500 / 2004
    // A large issue over a short distance: 0.004 km per litre shows as 0.00 and takes the 0.00 branch.
    exec("delete from VecFuel");
    issue(1004, "1000", 1000, 20);
    figures();
    EXPECT_EQ(m_previous.kmPerLitre, "0.00");
    EXPECT_EQ(m_previous.litresPer100, "0.00");
    EXPECT_EQ(m_previous.costPerKm, "5000.00");
}

TEST_F(FiguresStore, ElevenIssuesCountWholeATwelfthDoesNot) {
    // Readings 100 to 1100 by 100, 10 litres each; the lowest has the rate 30, the others 20.
    for (int i = 1; i <= 11; ++i)
        issue(i * 100, QString::number(i * 100 - 100), 10, i == 1 ? 30 : 20);
    figures();
    EXPECT_EQ(m_previous.kmTravel, "100.00");
    EXPECT_EQ(m_previous10.kmTravel, "1100.00");
    EXPECT_EQ(m_previous10.kmPerLitre, "10.00");
    EXPECT_EQ(m_previous10.litresPer100, "10.00");
    EXPECT_EQ(m_previous10.randPerLitre, "30.00"); // the rate of the oldest row read
    EXPECT_EQ(m_previous10.costPerKm, "3.00");     // 110 litres at 30 over 1100 km
    // A twelfth issue with a higher reading pushes the lowest out: its 100 km and its rate no longer count.
    issue(1250, "1100", 10, 20);
    figures();
    EXPECT_EQ(m_previous.kmTravel, "150.00");
    EXPECT_EQ(m_previous10.kmTravel, "1150.00");
    EXPECT_EQ(m_previous10.kmPerLitre, "10.45");
    EXPECT_EQ(m_previous10.litresPer100, "9.57");
    EXPECT_EQ(m_previous10.randPerLitre, "20.00");
    EXPECT_EQ(m_previous10.costPerKm, "1.91");
}

TEST_F(FiguresStore, AnIssueOfNoLitresFailsWithADivisionError) {
    issue(1200, "1000", 0, 20);
    try {
        figures();
        FAIL() << "no error";
    } catch (const VbError& e) {
        EXPECT_EQ(e.number(), 11);
    }
    // The travelled box was written before the failing division.
    EXPECT_EQ(m_previous.kmTravel, "200.00");
}
