#pragma once
// What every benchmark shares: timing, medians, the kind of build, writing the figures.

#include "NumberedError.h"

#include <QString>
#include <functional>

struct Session;
#include <vector>

namespace bench {

double Seconds(const std::function<void()>& work);
double Median(std::vector<double> values);
QString BuildKind(); // "build: optimised\n" or "build: debug (unoptimised)\n"
void WriteFigures(const QString& file, const QString& text);
int Report(const QString& file, const QString& text); // prints the figures, writes them to the file, gives 0
int Failed(const NumberedError& e);                   // prints the error, gives 1
// Opens a new store in `home` for the session, made current, and brings it up to date as at any start.
void StartStore(Session& session, const QString& home);

} // namespace bench
