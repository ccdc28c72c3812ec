#pragma once
// A fresh, empty store file in a temporary folder, opened for one test, with a way to look at what SQLite
// holds underneath the store layer.

#include "Database.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>

class StoreFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        db = Database::Open(m_dir.path() + "/test.db");
    }

    // The first column of the first row of a plain SQLite query, as text; "<null>" for Null, "<none>" for no row.
    QString raw(const QString& sql) const {
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(db->handle(), sql.toUtf8().constData(), -1, &s, nullptr) != SQLITE_OK) {
            sqlite3_finalize(s);
            return "<error>";
        }
        QString out = "<none>";
        if (sqlite3_step(s) == SQLITE_ROW) {
            const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
            out = t ? QString::fromUtf8(t) : QString("<null>");
        }
        sqlite3_finalize(s);
        return out;
    }

    // The Jet error number a call throws, 0 when it throws none.
    template <typename Fn> static int errorOf(Fn fn) {
        try {
            fn();
        } catch (const DbError& e) {
            return e.number();
        }
        return 0;
    }

    QString path() const { return m_dir.path() + "/test.db"; }

    std::unique_ptr<Database> db;

private:
    QTemporaryDir m_dir;
};
