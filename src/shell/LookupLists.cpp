#include "LookupLists.h"

#include "QtMessageService.h"

#include "ComboHelpers.h"
#include "Dialogs.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"

#include <QComboBox>
#include <QCoreApplication>

namespace {

const char* const kActionWords[] = {"Add ", "Change ", "Delete "};

// The lists whose rows are shared with vecfuel (and, for departments, with voertuig).
struct NameListDef {
    QString table;    // departments, drivers, activities
    QString keyWord;  // the vecfuel column that points at it
    QString nameWord; // " Department Name", ...
    QString noun;     // Department, Driver, Activity
    QString seedName; // the system row made on first fill
};

const NameListDef kDepartments{"departments", "deptid", " Department Name", "Department", "Department 1"};
const NameListDef kDriverList{"drivers", "driverid", " Driver Name", "Driver", "Driver 1"};
const NameListDef kActivityList{"activities", "activityid", " Activity Name", "Activity", "Activity 1"};

const NameListDef& ListOf(int which) {
    return which == kActivities ? kActivityList : kDriverList;
}

// A statement with no handler of its own: the run-time error box, and the program ends with what was
// stored kept.
void RunTimeError(int number, const QString& description) {
    EndRunWithError(number, description);
}

bool ExecuteUnprotected(const QString& sql) {
    try {
        db().Execute(sql);
        return true;
    } catch (const NumberedError& e) {
        RunTimeError(e.number(), e.description());
    }
    return false;
}

QString ItemDataText(const QComboBox* combo) {
    return QString::number(ItemDataAt(combo, combo->currentIndex()));
}

bool ReadsTrue(const QString& text) {
    return text.compare("True", Qt::CaseInsensitive) == 0 || vb::Val(text) != 0;
}

QString Doubled(QString text) {
    return text.replace("'", "''");
}

void FillNameCombo(const NameListDef& list, QComboBox* combo) {
    const QString sql = "select * from " + list.table + " order by description";
    if (GetScalar(db(), sql, "", 0, "").isEmpty())
        ExecuteUnprotected("insert into " + list.table + " (description,issys) values ('" + list.seedName + "',1)");
    combo->clear();
    try {
        auto rs = db().OpenRecordset(sql);
        for (; !rs->Eof(); rs->MoveNext()) {
            long long id = 0;
            try {
                id = rs->Field("ID").toLong();
            } catch (const VbError&) {
            }
            combo->addItem(vb::ProperCase(rs->Field("Description").toString()), id);
        }
    } catch (const DbError& e) {
        RunTimeError(e.number(), e.description());
    }
    if (combo->count() > 0)
        combo->setCurrentIndex(0);
}

bool RefusedAsSystemRow(const NameListDef& list, const QString& id, const QString& name) {
    if (GetScalar(db(), "select issys from  " + list.table + " where issys = True" + " and id = " + id, "0", 0, "0") !=
        "True")
        return false;
    MsgBox("'" + name + "' Cannot be deleted. Only name change allowed.", MsgButtons::Ok, MsgIcon::Exclamation);
    return true;
}

bool RefusedAsInUse(const QString& countSql, const QString& name) {
    if (GetScalar(db(), countSql, "0", 0, "0") == "0")
        return false;
    MsgBox("'" + name + "' is in use and cannot be deleted. Suggest change name", MsgButtons::Ok, MsgIcon::Exclamation);
    return true;
}

void EditNameList(const NameListDef& list, int action, QComboBox* combo, const RefillCallback& refill) {
    if (action < kAddName || action > kDeleteName)
        return;
    const bool isActivity = &list == &kActivityList;
    const QString id = ItemDataText(combo);
    QString name = vb::Trim(combo->currentText());
    bool flag = false;
    if (isActivity)
        flag = ReadsTrue(GetScalar(db(), "select rebated from " + list.table + " where id = " + id, "0", 0, "0"));

    if (action != kDeleteName) {
        const QString prompt = kActionWords[action] + list.nameWord + " 50 characters max.";
        QString answer = ShowInput(prompt, action == kAddName ? QString() : name, 50,
                                   isActivity ? QStringLiteral("Rebate Applicable") : QString(), flag);
        if (answer.isEmpty())
            return;
        bool flagGiven = false;
        if (answer.contains('|')) {
            const int bar = answer.lastIndexOf('|');
            flag = ReadsTrue(answer.mid(bar + 1));
            flagGiven = true;
            answer = answer.left(bar);
        }
        name = vb::Trim(answer);

        // The look-up is made before the quotes are doubled: a name with a quote breaks it, and a broken
        // look-up reads as "not found".
        QString duplicateSql = "select id,description from  " + list.table + " where description = '" + name + "'";
        if (action == kChangeName)
            duplicateSql += " and id <> " + id;

        if (action == kChangeName && isActivity && flagGiven) {
            // Runs before the duplicate check, so a refused rename still keeps the new flag.
            if (!ExecuteUnprotected("update " + list.table + " set rebated = " + (flag ? "True" : "False") +
                                    " where id = " + id))
                return;
        }
        if (GetScalar(db(), duplicateSql, "0", 0, "0") != "0") {
            MsgBox("'" + name + "' Already Exists");
            return;
        }
        QString sql;
        if (action == kChangeName) {
            sql = "update " + list.table + " set description = '" + Doubled(name) + "'" + " where id = " + id;
        } else if (isActivity) {
            sql = "insert into " + list.table + " (description,rebated)" + " Values (" + "'" + Doubled(name) + "'" +
                  "," + (flag ? "True" : "False") + ")";
        } else {
            sql = "insert into " + list.table + " (description)" + " Values (" + "'" + Doubled(name) + "'" + ")";
        }
        if (ExecuteUnprotected(sql) && refill)
            refill();
        return;
    }

    if (RefusedAsSystemRow(list, id, name))
        return;
    if (RefusedAsInUse("select count(*) as howmany from  vecfuel" + QString(" where ") + list.keyWord + " = " + id,
                       name))
        return;
    if (&list == &kDepartments &&
        RefusedAsInUse("select count(*) as howmany from  voertuig" + QString(" where deptid = ") + id, name))
        return;
    if (ExecuteUnprotected("delete from " + list.table + " where id = " + id) && refill)
        refill();
}

void AskNameAction(const NameListDef& list, QComboBox* combo, const std::function<void(int)>& run) {
    if (combo->count() == 0) {
        QString noun = list.noun;
        if (&list != &kDepartments)
            noun = noun.toLower();
        if (MsgBox("Add new " + noun + "?", MsgButtons::YesNo, MsgIcon::Question) == MsgResult::Yes)
            run(kAddName);
        return;
    }
    const int choice = ShowOptions(list.noun + " - Please Select an Option Below", "Add " + list.noun,
                                   "Change " + list.noun + " Name", "Delete " + list.noun);
    if (choice >= 0 && choice <= 2)
        run(choice);
}

bool IsSupplierTable(const QString& tableWord) {
    return tableWord.compare("vecsupplier", Qt::CaseInsensitive) == 0;
}

} // namespace

void LaaiDepartments(QComboBox* cmbDepartment) {
    FillNameCombo(kDepartments, cmbDepartment);
}

void LoadNameList(int which, QComboBox* combo) {
    FillNameCombo(ListOf(which), combo);
}

void EditDepartment(int action, QComboBox* cmbDepartment, const RefillCallback& refill) {
    EditNameList(kDepartments, action, cmbDepartment, refill);
}

void ManageNameList(int which, int action, QComboBox* combo, const RefillCallback& refill) {
    EditNameList(ListOf(which), action, combo, refill);
}

void EditSupplierCostCat(int action, const QString& tableWord, const QString& kind, QComboBox* combo,
                         const RefillCallback& refill) {
    if (action < kAddSupplierCostCat || action > kDeleteSupplierCostCat)
        return;
    const bool supplier = IsSupplierTable(tableWord);
    const QString id = ItemDataText(combo);
    QString name = vb::Trim(combo->currentText());

    if (action == kDeleteSupplierCostCat) {
        if (supplier) {
            if (RefusedAsInUse("select count(*) as howmany from  vdiens_unallocated" + QString(" where supplierid = ") +
                                   id,
                               name) ||
                RefusedAsInUse(
                    "select count(*) as howmany from  vdiens_allocated" + QString(" where supplierid = ") + id, name))
                return;
        } else {
            // The first count names a column vdiens_allocated does not have; it fails into "0", and the
            // second count is the one that guards.
            if (RefusedAsInUse(
                    "select count(*) as howmany from  vdiens_allocated" + QString(" where costcatid  = ") + id, name) ||
                RefusedAsInUse("select count(*) as howmany from  vdiens_allocated" +
                                   QString(" where costcategoryid  = ") + id,
                               name))
                return;
        }
        const QString key = supplier ? "sup_no" : "cc_iid";
        if (ExecuteUnprotected("delete from " + tableWord + " where " + key + " = " + id) && refill)
            refill();
        return;
    }

    const QString prompt = kActionWords[action - kAddSupplierCostCat] + kind + " Name" + " 30 characters max.";
    const QString answer = ShowInput(prompt, action == kAddSupplierCostCat ? QString() : name, 30);
    if (answer.isEmpty())
        return;
    name = vb::Trim(answer);

    QString duplicateSql;
    if (supplier) {
        duplicateSql = "SELECT[SUP_No],[SUP_Desc] FROM " + tableWord + " where [SUP_Desc] = '" + Doubled(name) + "'";
        if (action == kChangeSupplierCostCat)
            duplicateSql += " and sup_no <> " + id;
    } else {
        duplicateSql = "SELECT [CC_IID],[CC_CostCatagory] from " + tableWord + " where [CC_CostCatagory] = '" +
                       Doubled(name) + "'";
        if (action == kChangeSupplierCostCat)
            duplicateSql += " and CC_IID <> " + id;
    }
    if (GetScalar(db(), duplicateSql, "0", 0, "0") != "0") {
        MsgBox("'" + name + "' Already Exists");
        return;
    }

    QString sql;
    const QString column = supplier ? "sup_desc" : "CC_CostCatagory";
    if (action == kAddSupplierCostCat)
        sql = "insert into " + tableWord + "(" + column + ")" + " Values (" + "'" + Doubled(name) + "'" + ")";
    else if (supplier)
        sql = "update " + tableWord + " set sup_desc = '" + Doubled(name) + "'" + " where sup_no = " + id;
    else
        sql = "update " + tableWord + " set CC_CostCatagory = '" + Doubled(name) + "'" + " where cc_iid = " + id;
    if (ExecuteUnprotected(sql) && refill)
        refill();
}

void AskDepartment(QComboBox* cmbDepartment, const RefillCallback& refill) {
    AskNameAction(kDepartments, cmbDepartment, [&](int action) { EditDepartment(action, cmbDepartment, refill); });
}

void AskNameList(int which, QComboBox* combo, const RefillCallback& refill) {
    AskNameAction(ListOf(which), combo, [&](int action) { ManageNameList(which, action, combo, refill); });
}

void AskSupplierCostCat(const QString& tableWord, const QString& kind, QComboBox* combo, const RefillCallback& refill) {
    if (combo->count() == 0) {
        if (MsgBox("Add new " + kind + "?", MsgButtons::YesNo, MsgIcon::Question) == MsgResult::Yes)
            EditSupplierCostCat(kAddSupplierCostCat, tableWord, kind, combo, refill);
        return;
    }
    const int choice = ShowOptions(kind + " - Please Select an Option Below", "Add " + kind, "Change " + kind + " Name",
                                   "Delete " + kind);
    if (choice >= 0 && choice <= 2)
        EditSupplierCostCat(kAddSupplierCostCat + choice, tableWord, kind, combo, refill);
}
