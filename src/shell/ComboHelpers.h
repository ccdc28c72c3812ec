#pragma once
// Filling and reading combo boxes and list boxes whose items carry a row id as their data (Qt::UserRole).
// Failures are swallowed, as the store helpers do: a bad statement leaves the list as far as it got.

#include <QString>

class Database;
class QComboBox;
class QListWidget;

// Clears the combo, adds firstItem when given, then each voerkat Desc in proper case with its TransID;
// selects the first item when there is one.
void FillCategoryCombo(QComboBox* combo, const QString& firstItem = QString());
// Adds (without clearing) "Maak (RegNr)" of each vehicle of the category with its TransID. The statement is
// kept in LastVehicleComboSql().
void FillVehicleCombo(QComboBox* combo, int categoryId);
QString LastVehicleComboSql();
// Clears the combo; with tanks present and withPrompts set, first "---  Select A Tank    ---" (0) and
// "---  Select All Tanks  ---" (-1); then each TankNaam with its TransID. allTanksPrompt is not looked at.
void FillTankCombo(QComboBox* combo, bool withPrompts, bool allTanksPrompt = true);

// The index of the first item whose data equals value; 0 when there is none.
int FindItemData(const QComboBox* combo, long long value);
int FindItemData(const QListWidget* list, long long value);
int ItemDataAt(const QComboBox* combo, int index); // 0 for no item
int ItemDataAt(const QListWidget* list, int index);
void AddItemWithData(QListWidget* list, const QString& text, long long data);

// The selected items, first to last, as "a,b,c" (their data, or their texts with useText).
QString SelectedItemsList(const QListWidget* list, bool useText);
// Every item selected or not, then the current index set to listIndex.
void SetAllSelected(QListWidget* list, bool selected, int listIndex);
