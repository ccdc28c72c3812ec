#pragma once
// The lookup lists edited beside their combos: departments, drivers, activities, vehicle suppliers and
// cost categories. Each routine works on the combo it is given (names in proper case, the key in the item
// data) and calls the refill callback after a change; system rows are protected and names in use are
// never deleted.

#include <QString>
#include <functional>

class QComboBox;

using RefillCallback = std::function<void()>;

// Actions of EditDepartment and ManageNameList.
enum NameListAction { kAddName = 0, kChangeName = 1, kDeleteName = 2 };
// Actions of EditSupplierCostCat.
enum SupplierCostCatAction { kAddSupplierCostCat = 5, kChangeSupplierCostCat = 6, kDeleteSupplierCostCat = 7 };
// The `which` of ManageNameList and LoadNameList.
enum NameList { kDrivers = 0, kActivities = 1 };

// Fills the combo from `departments`, first making "Department 1" (a system row) when there is none.
void LaaiDepartments(QComboBox* cmbDepartment);
// Fills the combo from `activities` (which 1, seed "Activity 1") or `drivers` (seed "Driver 1").
void LoadNameList(int which, QComboBox* combo);

// Add (0), change (1) or delete (2) a department, through the input dialog where a name is needed.
void EditDepartment(int action, QComboBox* cmbDepartment, const RefillCallback& refill);
// The same for drivers and activities (an activity also carries its "Rebate Applicable" flag).
void ManageNameList(int which, int action, QComboBox* combo, const RefillCallback& refill);
// Add (5), change (6) or delete (7) a vehicle supplier or cost category. tableWord is "vecsupplier" or
// "costcat", kind "Supplier" or "Cost Category".
void EditSupplierCostCat(int action, const QString& tableWord, const QString& kind, QComboBox* combo,
                         const RefillCallback& refill);

// The buttons beside the combos: with an empty combo only the add question, else the option dialog.
void AskDepartment(QComboBox* cmbDepartment, const RefillCallback& refill);
void AskNameList(int which, QComboBox* combo, const RefillCallback& refill);
void AskSupplierCostCat(const QString& tableWord, const QString& kind, QComboBox* combo, const RefillCallback& refill);
