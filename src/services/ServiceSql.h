#pragma once
// The statements and grid fills that the service screens share: the list of open or allocated services,
// job reference numbers, and the totals of a service's cost breakdown.

#include <QString>

class FlexGrid;

// The statement of the open (unallocated) or allocated services. noIds leaves out the id columns (for the
// printed list); serviceID above 0 and vehicleID of 1 or more narrow it. With a searchText, searchKind
// "supplier" takes it as a list of supplier numbers and "reference" as a part of the reference.
QString BuildServiceSql(int serviceID, bool noIds, int vehicleID, bool unallocated, const QString& searchText,
                        const QString& searchKind);

// Fills the grid from BuildServiceSql and returns the number of services listed. The id columns follow the
// cells' order: supplierid, cost category id, vehicle id (after the note for allocated services).
int FillServiceGrid(FlexGrid& grid, int serviceID, int vehicleID, bool unallocated, const QString& searchText,
                    const QString& searchKind);

// Column positions in a grid filled by FillServiceGrid.
namespace svccol {
constexpr int TransID = 0, Date = 1, Supplier = 2, CostCategory = 3, VehCategory = 4, Vehicle = 5, Reference = 6,
              Cost = 7, Km = 8, Note = 9;
// The id columns: open services from 9, allocated ones from 10 (after the note).
inline int SupplierId(bool unallocated) {
    return unallocated ? 9 : 10;
}
inline int CostCatId(bool unallocated) {
    return unallocated ? 10 : 11;
}
inline int VehicleId(bool unallocated) {
    return unallocated ? 11 : 12;
}
} // namespace svccol

// The next free job reference number: 1 while no reference was ever assigned, else one above the highest
// assigned one.
int NextReference();
// The reference as shown on job cards: the number padded with zeros to 5 characters (a longer number as it is).
QString ReferenceText(const QString& number);

// The link of a cost line: open services by vdiensid, history rows by historyid.
QString CostLinkColumn(bool serviceMode);
// The statement of a service's total: the non-labour costs plus the labour cost (hours never count).
QString CostTotalSql(bool serviceMode, int linkId);
// The service's total as the store gives it, 0 when it has no lines.
double CostTotal(bool serviceMode, int linkId);
// Fills a two-column grid with the totals by cost type ("Cost Type", "Rands"); with no lines the grid stays
// empty and hidden. Returns the number of types listed.
int FillCostTotals(FlexGrid& grid, bool serviceMode, int linkId);

// Splits a note for storage: line breaks as CR LF, as the note field holds them.
QString NoteForStore(const QString& shown);
QString NoteForShow(const QString& stored);
