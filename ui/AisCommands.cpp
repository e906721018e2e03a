#include "ui/AisCommands.h"

#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "ui/FrmAisTargets.h"
#include "ui/FrmCommAIS.h"
#include "ui/FrmCommTest.h"
#include "ui/FrmMain.h"

namespace ombra {

AisCommands::~AisCommands() { delete list_.data(); }

void AisCommands::Bind() {
    main_.Bind("MAISSettings", [this] { Settings(); });
    main_.Bind("MAISTargets", [this] { Targets(); });
    main_.Bind("MAISCentre", [this] { p_.CentreOnAisTarget(); });
}

void AisCommands::Settings() {
    FrmCommAIS dlg(
        &main_, p_.AisDialog(),
        [this](int16_t port, int32_t baud) {
            p_.instruments().comm.TestPort = port;
            p_.instruments().comm.TestBaudRate = baud;
            FrmCommTest t(&main_, p_.instruments().comm);
            if (t.Load()) t.exec();
        },
        [this] { p_.aisTargets().ClearAll(); });
    dlg.exec();
    if (dlg.Result() != "Cancel") p_.ApplyAisDialog(dlg.Values());
}

FrmAisTargets* AisCommands::Targets() {
    if (!list_) list_ = new FrmAisTargets(&main_, p_);
    list_->Refresh();
    list_->show();
    list_->raise();
    return list_;
}

void AisCommands::AddPopupEntries(QMenu& popup, ChartPoint at) {
    int16_t index = p_.AisTargetAt(at);
    if (index < 0) return;
    QAction* a = popup.addAction(Q(p_.aisTargets().PopupCaption(index)), [this, index] {
        p_.aisTargets().SetActiveTarget(index);
    });
    a->setObjectName("MAISTarget");
}

}  // namespace ombra
