#include "ui/DdeCommands.h"

#include <QAction>
#include <QMenu>

#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "ui/FrmCommDDE.h"
#include "ui/FrmFindTarget.h"
#include "ui/FrmMain.h"

namespace ombra {

DdeCommands::DdeCommands(FrmMain& main, Plotter& plotter) : main_(main), plotter_(plotter) {}

void DdeCommands::Bind() {
    main_.Bind("mnuDDEOnline", [this] { ToggleOnline(); });
    main_.Bind("mnuDDEFind", [this] { FindTarget({}, true); });
    main_.Bind("mnuDDEOptions", [this] { Options(); });
    if (QAction* a = main_.Action("mnuDDEOnline")) a->setCheckable(true);
    ShowOnline();
}

// The menu's tick, and the console's DDE frame while the link is on line
// or holds targets.
void DdeCommands::ShowOnline() {
    const bool online = plotter_.dde().Online();
    if (QAction* a = main_.Action("mnuDDEOnline")) a->setChecked(online);
    if (QWidget* frame = main_.findChild<QWidget*>("FrameDDE"))
        frame->setVisible(online || !plotter_.dde().NamedTargets().empty());
}

void DdeCommands::ToggleOnline() {
    plotter_.dde().SetOnline(!plotter_.dde().Online());
    ShowOnline();
}

void DdeCommands::Options() {
    FrmCommDDE dlg(&main_, plotter_.dde().Settings());
    dlg.exec();
    if (dlg.Result() == "OK") plotter_.dde().ApplySettings(dlg.Values());
    ShowOnline();
}

void DdeCommands::FindTarget(ChartPoint screen, bool all) {
    std::vector<FoundTarget> found = plotter_.targetFinder().FindTargets(screen, all);
    if (found.empty()) {
        plotter_.services().dialogs.MsgBox("There are no targets to find.", mb::OKOnly | mb::Information,
                                           "Targets Found...");
        return;
    }
    QStringList rows;
    for (const FoundTarget& t : found) rows << Q(t.kind + ": " + t.label);
    FrmFindTarget dlg(&main_, rows);
    dlg.exec();
    const int picked = dlg.Picked();
    if (picked >= 0 && size_t(picked) < found.size()) plotter_.targetFinder().SelectTarget(found[size_t(picked)]);
}

void DdeCommands::AddTargetEntries(QMenu& popup, ChartPoint screen) {
    if (plotter_.targetFinder().FindTargets(screen, false).empty()) return;
    QAction* a = popup.addAction("Targets Found...", [this, screen] { FindTarget(screen, false); });
    a->setObjectName("MTargetsFound");
}

}  // namespace ombra
