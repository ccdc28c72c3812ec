#pragma once
// The equipment part of the demo register: categories, items with opening balances, book-outs and part
// book-ins, written through the ledger's own writes on the current session's store.

#include <QDate>
#include <QtGlobal>

void WriteDemoEquipment(const QDate& today, quint32 seed);
