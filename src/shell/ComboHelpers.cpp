#include "ComboHelpers.h"

#include "Database.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"

#include <QComboBox>
#include <QListWidget>

namespace {

QString& vehicleComboSql() {
    static QString sql;
    return sql;
}

// Walks the statement's rows; a failing statement ends the walk quietly, as the helpers do.
template <typename RowFn> void forEachRow(const QString& sql, RowFn onRow) {
    try {
        auto rs = db().OpenRecordset(sql, RecordsetType::Snapshot);
        while (!rs->Eof()) {
            onRow(*rs);
            rs->MoveNext();
        }
    } catch (const DbError&) {
    } catch (const VbError&) {
    }
}

long long idOf(const Value& v) {
    try {
        return v.toLong();
    } catch (const VbError&) {
        return 0;
    }
}

} // namespace

void FillCategoryCombo(QComboBox* combo, const QString& firstItem) {
    combo->clear();
    if (!firstItem.isEmpty())
        combo->addItem(firstItem);
    forEachRow("select * from voerkat order by [desc]", [combo](Recordset& rs) {
        combo->addItem(vb::ProperCase(rs.Field("Desc").toString()), idOf(rs.Field("TransID")));
    });
    if (combo->count() > 0)
        combo->setCurrentIndex(0);
}

void FillVehicleCombo(QComboBox* combo, int categoryId) {
    vehicleComboSql() =
        "select maak,regnr,transid from voertuig" + QString(" where catid = ") + QString::number(categoryId);
    forEachRow(vehicleComboSql(), [combo](Recordset& rs) {
        combo->addItem(vb::ProperCase(rs.Field("Maak").toString()) + " (" + rs.Field("RegNr").toString() + ")",
                       idOf(rs.Field("TransID")));
    });
}

QString LastVehicleComboSql() {
    return vehicleComboSql();
}

void FillTankCombo(QComboBox* combo, bool withPrompts, bool /*allTanksPrompt: taken, not looked at*/) {
    combo->clear();
    try {
        auto rs = db().OpenRecordset("select * from tanks order by tanknaam", RecordsetType::Snapshot);
        if (rs->Eof()) {
            rs->Close();
            return;
        }
        if (withPrompts) {
            combo->addItem("---  Select A Tank    ---", 0);
            combo->addItem("---  Select All Tanks  ---", -1);
        }
        while (!rs->Eof()) {
            combo->addItem(rs->Field("TankNaam").toString(), idOf(rs->Field("TransID")));
            rs->MoveNext();
        }
    } catch (const DbError&) {
    } catch (const VbError&) {
    }
}

int FindItemData(const QComboBox* combo, long long value) {
    for (int i = 0; i < combo->count(); ++i)
        if (combo->itemData(i).isValid() && combo->itemData(i).toLongLong() == value)
            return i;
    return 0;
}

int FindItemData(const QListWidget* list, long long value) {
    for (int i = 0; i < list->count(); ++i) {
        const QVariant data = list->item(i)->data(Qt::UserRole);
        if (data.isValid() && data.toLongLong() == value)
            return i;
    }
    return 0;
}

int ItemDataAt(const QComboBox* combo, int index) {
    if (index < 0 || index >= combo->count())
        return 0;
    return combo->itemData(index).toInt();
}

int ItemDataAt(const QListWidget* list, int index) {
    if (index < 0 || index >= list->count())
        return 0;
    return list->item(index)->data(Qt::UserRole).toInt();
}

void AddItemWithData(QListWidget* list, const QString& text, long long data) {
    auto* item = new QListWidgetItem(text, list);
    item->setData(Qt::UserRole, data);
}

QString SelectedItemsList(const QListWidget* list, bool useText) {
    QString result;
    for (int i = 0; i < list->count(); ++i) {
        const QListWidgetItem* item = list->item(i);
        if (!item->isSelected())
            continue;
        result += useText ? item->text() : QString::number(item->data(Qt::UserRole).toLongLong());
        result += ",";
    }
    return TrimToLastDelimiter(result, ",");
}

void SetAllSelected(QListWidget* list, bool selected, int listIndex) {
    for (int i = 0; i < list->count(); ++i)
        list->item(i)->setSelected(selected);
    if (listIndex >= 0 && listIndex < list->count())
        list->setCurrentRow(listIndex, QItemSelectionModel::NoUpdate);
    else
        list->setCurrentRow(-1, QItemSelectionModel::NoUpdate);
}
