#pragma once
// Permits for a demonstration register.

#include <QDate>
#include <QtGlobal>

// Adds permits to the current session's store whose renewal dates lie within a few months of `today`, a few of
// them on it, so that the start shows the permit reminders. The same seed gives the same people and dates.
void WriteDemoPermits(const QDate& today, quint32 seed);
