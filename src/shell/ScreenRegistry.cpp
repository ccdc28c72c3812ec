#include "ScreenRegistry.h"

#include "Database.h"
#include "QtMessageService.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QHash>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <vector>

namespace {

struct Registry {
    QHash<QString, ScreenFactory> factories; // keyed by the name in lower case: form names are case-blind
    std::vector<QPointer<QWidget>> forms;    // loaded forms, in load order
    QPointer<QMdiArea> mdiArea;
    ReminderSqlBuilder reminderBuilder;
    QHash<QString, FormRoutine> routines; // keyed by "form.routine" in lower case
};

Registry& registry() {
    static Registry r;
    return r;
}

// Marks a form that has been shown, so that a form hidden by its close counts as unloaded.
constexpr const char* kShownProperty = "orvelShown";

class ShownWatcher : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show)
            watched->setProperty(kShownProperty, true);
        return false;
    }
};

// Ends the event loop of a modal plain form when the form is hidden (closed or hidden by its code).
class HideWatcher : public QObject {
public:
    explicit HideWatcher(QEventLoop* loop) : m_loop(loop) {}
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide)
            m_loop->quit();
        return false;
    }

private:
    QEventLoop* m_loop;
};

bool isLoaded(const QWidget* form) {
    if (!form)
        return false;
    // An MDI child is shown with its frame at once; closing either hides it, even while the main window
    // itself is hidden (during start-up).
    if (const auto* frame = qobject_cast<const QMdiSubWindow*>(form->parentWidget()))
        return !frame->isHidden() && !form->isHidden();
    return !(form->property(kShownProperty).toBool() && form->isHidden());
}

void pruneForms() {
    auto& forms = registry().forms;
    std::erase_if(forms, [](const QPointer<QWidget>& f) { return !isLoaded(f.data()); });
}

QWidget* modalParent() {
    if (QWidget* w = QApplication::activeModalWidget())
        return w;
    if (registry().mdiArea)
        return registry().mdiArea->window();
    return QApplication::activeWindow();
}

QWidget* makeForm(const ScreenFactory& factory, QWidget* parent) {
    try {
        return factory(parent);
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
    }
    return nullptr;
}

} // namespace

void RegisterScreen(const QString& name, ScreenFactory factory) {
    registry().factories.insert(name.toLower(), std::move(factory));
}

bool IsScreenRegistered(const QString& name) {
    return registry().factories.contains(name.toLower());
}

void UnregisterAllScreens() {
    registry().factories.clear();
}

void SetMdiArea(QMdiArea* area) {
    registry().mdiArea = area;
}

QMdiArea* CurrentMdiArea() {
    return registry().mdiArea.data();
}

void TrackForm(QWidget* form) {
    if (!form)
        return;
    pruneForms();
    for (const auto& f : registry().forms)
        if (f == form)
            return;
    form->installEventFilter(new ShownWatcher(form));
    if (form->isVisible())
        form->setProperty(kShownProperty, true);
    registry().forms.emplace_back(form);
}

QWidget* ShowScreen(const QString& name, bool modal) {
    const auto it = registry().factories.constFind(name.toLower());
    if (it == registry().factories.constEnd())
        return nullptr;
    const ScreenFactory factory = it.value(); // a copy: the factory may register screens itself

    if (!modal) {
        if (QWidget* open = FindForm(name)) {
            if (auto* sub = qobject_cast<QMdiSubWindow*>(open->parentWidget())) {
                sub->show();
                if (QMdiArea* area = sub->mdiArea())
                    area->setActiveSubWindow(sub);
            } else {
                open->show();
                open->raise();
                open->activateWindow();
            }
            return open;
        }
    }

    QMdiArea* area = registry().mdiArea.data();
    QWidget* form = makeForm(factory, modal ? modalParent() : area);
    if (!form)
        return nullptr;
    if (form->objectName().isEmpty())
        form->setObjectName(name);
    TrackForm(form);

    if (modal) {
        QPointer<QWidget> guard(form);
        if (auto* dialog = qobject_cast<QDialog*>(form)) {
            dialog->setModal(true);
            dialog->exec();
        } else {
            // A plain form shown modally: it becomes a modal window of its own until it is closed or hidden.
            form->setParent(modalParent(), Qt::Dialog);
            form->setWindowModality(Qt::ApplicationModal);
            form->setAttribute(Qt::WA_DeleteOnClose);
            QEventLoop loop;
            HideWatcher watcher(&loop);
            form->installEventFilter(&watcher);
            QObject::connect(form, &QObject::destroyed, &loop, &QEventLoop::quit);
            form->show();
            loop.exec(QEventLoop::DialogExec);
            if (guard)
                form->removeEventFilter(&watcher);
        }
        if (guard)
            delete guard.data();
        pruneForms();
        return nullptr;
    }

    form->setAttribute(Qt::WA_DeleteOnClose);
    if (area) {
        QMdiSubWindow* sub = area->addSubWindow(form);
        QPointer<QWidget> subGuard(sub);
        // A form that closes itself takes its frame with it. When the frame is the one being destroyed
        // (it takes its form along), it is no longer a QMdiSubWindow by then and is left alone.
        QObject::connect(form, &QObject::destroyed, area, [subGuard] {
            if (auto* frame = qobject_cast<QMdiSubWindow*>(subGuard.data()))
                frame->close();
        });
        sub->show();
        area->setActiveSubWindow(sub);
    } else {
        form->show();
    }
    return form;
}

QStringList OpenForms() {
    pruneForms();
    QStringList names;
    for (const auto& f : registry().forms)
        names << f->objectName();
    return names;
}

QWidget* FindForm(const QString& name) {
    pruneForms();
    for (const auto& f : registry().forms)
        if (f->objectName().compare(name, Qt::CaseInsensitive) == 0)
            return f.data();
    return nullptr;
}

bool IsFormVisible(const QString& name) {
    const QWidget* form = FindForm(name);
    return form && form->isVisible();
}

void UnloadForm(const QString& name) {
    QWidget* form = FindForm(name);
    if (!form)
        return;
    if (auto* sub = qobject_cast<QMdiSubWindow*>(form->parentWidget()))
        sub->close();
    else
        form->close();
    pruneForms();
}

void SetReminderSqlBuilder(ReminderSqlBuilder builder) {
    registry().reminderBuilder = std::move(builder);
}

const ReminderSqlBuilder& CurrentReminderSqlBuilder() {
    return registry().reminderBuilder;
}

void RegisterFormRoutine(const QString& formName, const QString& routine, FormRoutine fn) {
    registry().routines.insert((formName + "." + routine).toLower(), std::move(fn));
}

bool CallFormRoutine(const QString& formName, const QString& routine) {
    const auto it = registry().routines.constFind((formName + "." + routine).toLower());
    if (it == registry().routines.constEnd())
        return false;
    const FormRoutine fn = it.value();
    QWidget* form = FindForm(formName);
    if (!form) {
        const auto factory = registry().factories.constFind(formName.toLower());
        if (factory == registry().factories.constEnd())
            return false;
        // Loaded and left hidden; it stays loaded until the run ends or the form is shown and closed.
        QWidget* owner = registry().mdiArea ? registry().mdiArea->window() : nullptr;
        form = makeForm(factory.value(), owner);
        if (!form)
            return false;
        if (form->objectName().isEmpty())
            form->setObjectName(formName);
        form->hide();
        TrackForm(form);
    }
    fn(form);
    return true;
}
