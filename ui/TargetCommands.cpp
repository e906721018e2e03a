#include "ui/TargetCommands.h"

#include <QGroupBox>

#include "plotter/Plotter.h"
#include "ui/FrmCommARPA.h"
#include "ui/FrmCommTest.h"
#include "ui/FrmMain.h"

namespace ombra {

void TargetCommands::Bind() {
    main_.Bind("MARPASettings", [this] { ArpaSettings(); });
    main_.Bind("MCentreArpaTarget", [this] { p_.arpa().CentreOnArpaTarget(); });
    main_.Bind("MCentreTrackedTarget", [this] { p_.tracked().CentreOnTrackedTarget(); });
    ConsoleChanged();
}

void TargetCommands::ArpaSettings() {
    auto& ins = p_.instruments();
    FrmCommARPA dlg(&main_, LoadArpaDialog(p_.registry(), ins.settings, p_.arpa().Settings),
                    [this](int16_t port, int32_t baud) {
                        p_.instruments().comm.TestPort = port;
                        p_.instruments().comm.TestBaudRate = baud;
                        FrmCommTest t(&main_, p_.instruments().comm);
                        if (t.Load()) t.exec();
                    });
    dlg.exec();
    if (dlg.Result() == "Cancel") return;
    SaveArpaDialog(p_.registry(), ins.settings, p_.arpa().Settings, dlg.Values());
    ConsoleChanged();
    p_.RequestChartRedraw();
}

void TargetCommands::ConsoleChanged() {
    if (auto* arpa = main_.findChild<QGroupBox*>("FrameARPA")) arpa->setVisible(p_.arpa().Settings.Enable);
    if (auto* tracked = main_.findChild<QGroupBox*>("FrameTarget")) tracked->setVisible(p_.tracked().TargetCount > 0);
}

}  // namespace ombra
