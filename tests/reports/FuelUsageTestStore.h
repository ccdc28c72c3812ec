#pragma once
// The register of the fuel usage tests: the report screen's small store with two drivers, a rebated and an
// ordinary activity, kilometre and hour vehicles with and without rebate, and issues over December and January
// entered out of date order. Every figure the tests expect is worked out by hand from the rows below.
//
//  #  vehicle      tank         date        prev  read  litres R/l  driver    activity    pump before/after
//  1  TOYOTA CA 1  MAIN DIESEL  2024/11/20   900  1000  15     20  JAN SMIT  DELIVERY      90 / 100 (outside)
//  2  TOYOTA CA 1  MAIN DIESEL  2024/12/05  1000  1100  10     20  JAN SMIT  DELIVERY     100 / 110
//  3  JOHN DEERE   MAIN DIESEL  2024/12/07   500   510  50     20  PIET NEL  PLOUGHING    110 / 160
//  4  NISSAN CA 2  PETROL       2024/12/10  2000  2100  25     22  JAN SMIT  PLOUGHING      0 / 25
//  5  JOHN DEERE   MAIN DIESEL  2025/01/15   510   530  30     21  JAN SMIT  PLOUGHING    195 / 225
//  6  TOYOTA CA 1  MAIN DIESEL  2024/12/20  1100  1300  20     20  PIET NEL  DELIVERY     160 / 180
//  7  NISSAN CA 2  MAIN DIESEL  2025/01/05  2100  2150   5     20  PIET NEL  PLOUGHING    180 / 185
//  8  TOYOTA CA 1  MAIN DIESEL  2025/01/10  1300  1400  10     21  PIET NEL  DELIVERY     185 / 195
//
// John Deere (hours, category TRACTORS) is rebated at 100%, the Nissan at 50%, the Toyota not at all; PLOUGHING
// is a rebated activity, DELIVERY is not. MASSEY MF 2 (hours) has no issue.

#include "ReportTestStore.h"

class FuelUsageStoreTest : public ReportStoreTest {
protected:
    void issueBy(int vehicle, int tank, const QString& date, double prev, double read, double litres, double rperl,
                 int driver, int activity, double pumpBefore, double pumpAfter) {
        exec(QString("insert into vecfuel (voertuigid, tankid, datum, previouskmread, kmread, litres, rperl, driverid, "
                     "activityid, pumpreadprev, pumpreadcurr) values (%1, %2, '%3', %4, %5, %6, %7, %8, %9, %10, %11)")
                 .arg(vehicle)
                 .arg(tank)
                 .arg(date)
                 .arg(prev)
                 .arg(read)
                 .arg(litres)
                 .arg(rperl)
                 .arg(driver)
                 .arg(activity)
                 .arg(pumpBefore)
                 .arg(pumpAfter));
    }
    void rebate(int vehicle, int percent) {
        exec(
            QString("update voertuig set rebated = true, rebatepct = %1 where transid = %2").arg(percent).arg(vehicle));
    }

    void SeedUsage() {
        exec("insert into departments (id, description) values (1, 'WORKSHOP')");
        exec("insert into drivers (id, description) values (1, 'JAN SMIT')");
        exec("insert into drivers (id, description) values (2, 'PIET NEL')");
        exec("insert into activities (id, description, rebated) values (1, 'PLOUGHING', true)");
        exec("insert into activities (id, description, rebated) values (2, 'DELIVERY', false)");
        m_kmCat = addCategory("BAKKIES", false);
        m_hourCat = addCategory("TRACTORS", true);
        m_k1 = addVehicle(m_kmCat, "TOYOTA", "CA 1", false);
        m_k2 = addVehicle(m_kmCat, "NISSAN", "CA 2", false);
        m_h1 = addVehicle(m_hourCat, "JOHN DEERE", "JD 1", true);
        m_h2 = addVehicle(m_hourCat, "MASSEY", "MF 2", true);
        rebate(m_h1, 100);
        rebate(m_k2, 50);
        m_t1 = addTank("MAIN DIESEL");
        m_t2 = addTank("PETROL");
        issueBy(m_k1, m_t1, "2024/11/20", 900, 1000, 15, 20, 1, 2, 90, 100);
        issueBy(m_k1, m_t1, "2024/12/05", 1000, 1100, 10, 20, 1, 2, 100, 110);
        issueBy(m_h1, m_t1, "2024/12/07", 500, 510, 50, 20, 2, 1, 110, 160);
        issueBy(m_k2, m_t2, "2024/12/10", 2000, 2100, 25, 22, 1, 1, 0, 25);
        issueBy(m_h1, m_t1, "2025/01/15", 510, 530, 30, 21, 1, 1, 195, 225);
        issueBy(m_k1, m_t1, "2024/12/20", 1100, 1300, 20, 20, 2, 2, 160, 180);
        issueBy(m_k2, m_t1, "2025/01/05", 2100, 2150, 5, 20, 2, 1, 180, 185);
        issueBy(m_k1, m_t1, "2025/01/10", 1300, 1400, 10, 21, 2, 2, 185, 195);
    }

    // Every vehicle with an issue, hour vehicle first, as the screen merges its lists.
    QString allIds() const { return QString("%1,%2,%3").arg(m_h1).arg(m_k1).arg(m_k2); }
    QString kmIds() const { return QString("%1,%2").arg(m_k1).arg(m_k2); }
};
