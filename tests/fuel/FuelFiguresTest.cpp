// The consumption figures: the current estimate with its quiet stops, the latest issue and the latest eleven
// issues of a vehicle with their order of rounding.

#include "FuelFigures.h"
#include "FuelTestStore.h"
#include "Vb.h"

namespace {

// The five boxes of a group in a line: travelled, per litre, per 100, rand per litre, cost per km.
QString Line(const FigureGroup& g) {
    return QStringList{g.kmTravel, g.kmPerLitre, g.litresPer100, g.randPerLitre, g.costPerKm}.join(' ');
}

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

TEST(CurrentTankFigures, DistanceFromThePreviousReadingOrFromTheReadingAloneAndQuietStops) {
    struct Case {
        const char *prKm, *km, *litres, *rate;
        bool completes;
        const char* expected; // from a group holding "a b c d e"
    } cases[] = {
        {"1000", "1400", "40", "20.5", true, "400.00 10.00 10.00 20.50 2.05"},
        {"", "300", "60", "21", true, "300.00 5.00 20.00 21.00 4.20"}, // no previous: the reading itself
        {"0", "300", "60", "21", true, "300.00 5.00 20.00 21.00 4.20"},
        {"1000", "1100", "30", "20", true, "100.00 3.33 30.00 20.00 6.00"},
        {"1000", "1400", "", "20", false, "a b c d e"}, // empty litres: the first division fails
        // A distance of 0: per litre is 0, so per 100 fails before anything is written.
        {"1000", "1000", "40", "20", false, "a b c d e"},
    };
    for (const Case& c : cases) {
        FigureGroup group{"a", "b", "c", "d", "e"};
        EXPECT_EQ(ShowCurrentTankFigures(c.prKm, c.km, c.litres, c.rate, group), c.completes) << c.km;
        EXPECT_EQ(Line(group), c.expected) << c.prKm << " " << c.km;
    }
}

TEST(FirstFillFigures, WithoutAStartReadingItStopsAtTheFirstDivision) {
    FigureGroup previous;
    EXPECT_FALSE(ShowFirstFillFigures("1000", "20", 0.0, 0.0, previous));
    EXPECT_TRUE(previous.isEmpty());
    // With figures already shown it does nothing.
    FigureGroup shown{"1", "2", "3", "4", "5"};
    EXPECT_TRUE(ShowFirstFillFigures("1000", "20", 0.0, 0.0, shown));
    EXPECT_EQ(Line(shown), "1 2 3 4 5");
    FigureGroup filled;
    EXPECT_TRUE(ShowFirstFillFigures("1400", "20.5", 1000, 40, filled));
    EXPECT_EQ(Line(filled), "400.00 10.00 10.00 20.50 2.05");
}

TEST_F(FiguresStore, NoIssuesLeaveBothGroupsEmptyAndEqualReadingsGiveZeros) {
    figures();
    EXPECT_TRUE(m_previous.isEmpty());
    EXPECT_TRUE(m_previous10.isEmpty());
    issue(5000, "5000", 40, 20);
    figures();
    EXPECT_EQ(Line(m_previous), "0.00 0.00 0.00 20.00 0.00");
    EXPECT_EQ(Line(m_previous10), "0.00 0.00 0.00 20.00 0.00");
}

TEST_F(FiguresStore, LitresPer100ComeFromTheRoundedKilometresPerLitre) {
    // 2004 km on 1000 litres: 2.004 shows as 2.00, and 100 / 2.00 is 50.00 (not 49.90 from 2.004); 21500 / 2004.
    issue(3004, "1000", 1000, 21.5);
    figures();
    EXPECT_EQ(Line(m_previous), "2004.00 2.00 50.00 21.50 10.73");
    // A large issue over a short distance: 0.004 km per litre shows as 0.00 and takes the 0.00 branch.
    exec("delete from VecFuel");
    issue(1004, "1000", 1000, 20);
    figures();
    EXPECT_EQ(Line(m_previous), "4.00 0.00 0.00 20.00 5000.00");
}

TEST_F(FiguresStore, ElevenIssuesCountWholeATwelfthDoesNot) {
    // Readings 100 to 1100 by 100, 10 litres each; the lowest has the rate 30, the others 20. The rate shown is
    // that of the oldest row read: 110 litres at 30 over 1100 km.
    for (int i = 1; i <= 11; ++i)
        issue(i * 100, QString::number(i * 100 - 100), 10, i == 1 ? 30 : 20);
    figures();
    EXPECT_EQ(m_previous.kmTravel, "100.00");
    EXPECT_EQ(Line(m_previous10), "1100.00 10.00 10.00 30.00 3.00");
    // A twelfth issue with a higher reading pushes the lowest out: its 100 km and its rate no longer count.
    issue(1250, "1100", 10, 20);
    figures();
    EXPECT_EQ(m_previous.kmTravel, "150.00");
    EXPECT_EQ(Line(m_previous10), "1150.00 10.45 9.57 20.00 1.91");
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

} // namespace
