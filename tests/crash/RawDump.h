#pragma once
// Every row of every table of a store file, read with SQLite alone (a connection of its own, read-only), in a fixed
// order: two files with equal dumps hold the same register. The time of day of a stored moment (a service
// reference's assignment, a book-out's stock-take header) is the clock's, different in every run of the same day:
// it is left out, its date kept.

#include <QByteArray>
#include <QCryptographicHash>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <sqlite3.h>

inline QByteArray RawDump(const QString& file) {
    sqlite3* db = nullptr;
    QByteArray out;
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return "<cannot open>";
    }
    auto each = [&](const QByteArray& sql, auto&& row) {
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(db, sql.constData(), -1, &s, nullptr) != SQLITE_OK) {
            out += "<error " + sql + ">";
            return;
        }
        while (sqlite3_step(s) == SQLITE_ROW)
            row(s);
        sqlite3_finalize(s);
    };
    QList<QByteArray> tables;
    each("SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY name",
         [&](sqlite3_stmt* s) { tables << reinterpret_cast<const char*>(sqlite3_column_text(s, 0)); });
    for (const QByteArray& table : tables) {
        out += "== " + table + "\n";
        each("SELECT * FROM \"" + table + "\" ORDER BY rowid", [&](sqlite3_stmt* s) {
            for (int c = 0; c < sqlite3_column_count(s); ++c) {
                static const QRegularExpression clock(R"((\d{4}[-/]\d\d[-/]\d\d)[ T]\d\d:\d\d:\d\d)");
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(s, c));
                QString value = QString::fromUtf8(text ? text : "");
                value.replace(clock, "\\1 (time)");
                out += QByteArray::number(sqlite3_column_type(s, c)) + ":" + value.toUtf8() + "|";
            }
            out += "\n";
        });
    }
    sqlite3_close(db);
    return out;
}

inline QByteArray RawDumpHash(const QString& file) {
    return QCryptographicHash::hash(RawDump(file), QCryptographicHash::Sha1).toHex();
}
