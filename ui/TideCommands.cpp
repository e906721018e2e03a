#include "ui/TideCommands.h"

#include <QAction>
#include <QMenu>

#include "plotter/Plotter.h"
#include "ui/FrmMain.h"
#include "ui/FrmTideOptions.h"
#include "ui/FrmTideStream.h"

namespace ombra {

TideCommands::TideCommands(FrmMain& main, Plotter& plotter) : main_(main), p_(plotter) {}

void TideCommands::Bind() {
    main_.Bind("MTidesOptions", [this] { Options(); });
    main_.Bind("MTidesInstall", [this] { p_.InstallTideSet(); });
    main_.Bind("MTidesView", [this] { ViewTides(); });
}

void TideCommands::Options() {
    FrmTideOptions dlg(&main_, p_.tideDisplay().UseProudman());
    dlg.exec();
    if (dlg.Result() == "OK") p_.tideDisplay().SetUseProudman(dlg.ChkUseProudman->isChecked());
}

void TideCommands::ViewTides() {
    if (!p_.tideDisplay().ShowTideStreamDialog()) return;
    if (!window_) {
        window_ = new FrmTideStream(&main_, p_);
        window_->setAttribute(Qt::WA_DeleteOnClose);
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void TideCommands::NoteClick(bool onPlan, const LatLong& pos) {
    clickOnPlan_ = onPlan;
    click_ = pos;
}

void TideCommands::AddPopupEntries(QMenu& popup) {
    QAction* a = popup.addAction("&Tidal Stream", [this] { p_.tideDisplay().ShowTideAtPoint(click_); });
    a->setObjectName("MTidalStream");
    a->setEnabled(clickOnPlan_ && p_.tides().TideRegionCount() > 0);
}

}  // namespace ombra
