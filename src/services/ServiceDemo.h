#pragma once
// Demonstration services for `orvel demo`: open services under job references and services in the vehicles'
// history, with cost breakdowns of all four types, written on the current session's store by the statements
// the service screens use.

#include <QDate>
#include <QtGlobal>

// Uses the vehicles already in the store (none: nothing is written); adds a few suppliers and cost categories
// when there are none. The same seed gives the same services.
void WriteDemoServices(const QDate& today, quint32 seed);
