#include "ReportRegistry.h"

#include "FlexGrid.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <map>

namespace {
std::map<QString, ReportProcedures>& Registry() {
    static std::map<QString, ReportProcedures> registry;
    return registry;
}
} // namespace

void RegisterReport(const QString& title, ReportProcedures procedures) {
    Registry()[title] = std::move(procedures);
}

const ReportProcedures* FindReport(const QString& title) {
    const auto it = Registry().find(title);
    return it == Registry().end() ? nullptr : &it->second;
}

QStringList RegisteredReports() {
    QStringList titles;
    for (const auto& [title, procedures] : Registry())
        titles << title;
    return titles;
}

void ReportRun::Message(const QString& text) const {
    if (!lblMsg)
        return;
    lblMsg->setText(text);
    lblMsg->repaint();
    QCoreApplication::processEvents();
}

void ReportRun::Progress(double percent) const {
    if (progress)
        progress->setValue(static_cast<int>(qBound(0.0, percent, 100.0)));
}

void ReportRun::ProgressVisible(bool visible) const {
    if (progress)
        progress->setVisible(visible);
}

QString MergeVehicleLists(const QString& hourList, const QString& kmList) {
    if (kmList.isEmpty())
        return hourList;
    if (hourList.isEmpty())
        return kmList;
    return hourList + "," + kmList;
}
