#include "ui/LogCommands.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>

#include "plotter/Plotter.h"
#include "ui/FrmLog.h"
#include "ui/FrmLogEntry.h"
#include "ui/FrmMain.h"

namespace ombra {

LogCommands::LogCommands(FrmMain& main, Plotter& plotter) : main_(main), p_(plotter) {}

void LogCommands::Bind() {
    main_.Bind("MLogsView", [this] { ViewLog(); });
    main_.Bind("MLogsNew", [this] {
        p_.logs().OpenTodaysLog();
        UpdateMenu();
        ViewLog();
    });
    main_.Bind("MLogsOpen", [this] {
        const bool wasOlder = p_.logs().OlderLog();
        const DateTime before = p_.logs().Day.Header.LogDate;
        p_.logs().OpenOlderLog();
        UpdateMenu();
        if (p_.logs().OlderLog() != wasOlder || !(p_.logs().Day.Header.LogDate == before)) ViewLog();
    });
    main_.Bind("MLogsEntry", [this] { p_.AddLogEntry(LogEntryKind::Menu); });
    // The same command at one click on the Nav toolbar, enabled with the menu's.
    if (QAction* entry = main_.Action("MLogsEntry"); entry && !main_.NavToolbar()->actions().contains(entry))
        main_.NavToolbar()->addAction(entry);
    if (QAction* menu = main_.Action("MLogs"))
        if (QMenu* m = menu->menu()) QObject::connect(m, &QMenu::aboutToShow, m, [this] { UpdateMenu(); });
    UpdateMenu();
}

void LogCommands::UpdateMenu() {
    Logs& logs = p_.logs();
    const bool inUse = logs.LogInUse();
    if (QAction* a = main_.Action("MLogsView")) a->setEnabled(inUse);
    if (QAction* a = main_.Action("MLogsEntry")) a->setEnabled(inUse);
    if (QAction* a = main_.Action("MLogsNew")) a->setEnabled(!logs.LogIsToday());
}

void LogCommands::ViewLog() {
    if (!p_.logs().LogInUse()) return;
    if (!log_) {
        log_ = new FrmLog(&main_, p_);
        log_->setAttribute(Qt::WA_DeleteOnClose);
    } else {
        log_->Load();
    }
    log_->show();
    log_->raise();
    log_->activateWindow();
}

FrmLog* LogCommands::Window() const { return log_.data(); }

bool LogCommands::ShowLogEntry(LogEntry& entry, const DateTime& when) {
    QWidget* owner = log_ ? static_cast<QWidget*>(log_.data()) : &main_;
    return ShowFrmLogEntry(owner, entry, when);
}

void LogCommands::EntryAdded() {
    if (log_) log_->RedrawEntries();
}

void LogCommands::LogChanged() {
    UpdateMenu();
    if (log_) log_->Load();
}

}  // namespace ombra
