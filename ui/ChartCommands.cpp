#include "ui/ChartCommands.h"

#include "plotter/Plotter.h"
#include "platform/qt/QtServices.h"
#include "ui/ChartArea.h"
#include "ui/FrmChartDetails.h"
#include "ui/FrmChartErrors.h"
#include "ui/FrmChartManager.h"
#include "ui/FrmMain.h"
#include "ui/FrmNotes.h"

namespace ombra {

ChartCommands::ChartCommands(FrmMain& main, Plotter& plotter) : main_(main), p_(plotter) {
    area_ = new ChartArea(p_.charts, &main_);
    area_->setObjectName("PicNavCanvas");
    main_.SetChartWidget(area_);
    Display& view = p_.charts.View;
    view.WarningsChanged = [this] { main_.SetWarnings(Q(p_.charts.View.WarningText())); };
    view.StatusChanged = [this] { StatusChanged(); };
    p_.charts.Charts.Hourglass = [this](bool busy) { p_.services.shell.SetBusyCursor(busy); };
    p_.charts.Charts.ChartOpened = [this] { StatusChanged(); };
    area_->OnMouseMove = [this](ChartPoint, bool onPlan, const LatLong& pos) {
        p_.cursorOnChart = onPlan;
        p_.cursorPos = pos;
    };
    area_->DragAllowed = [this] { return p_.globals.CurrentTool == 0; };
    // Chart problems the catalogue finds are listed in their own window.
    p_.charts.Cat.ChartErrorsChanged = [this] {
        if (p_.charts.Cat.ChartErrors.empty() && !errors_) return;
        if (!errors_) errors_ = new FrmChartErrors(&main_);
        errors_->SetErrors(p_.charts.Cat.ChartErrors);
        if (!p_.charts.Cat.ChartErrors.empty() && !errors_->isVisible()) errors_->show();
    };
}

void ChartCommands::StatusChanged() {
    std::string caption = "Vestrane " + p_.globals.ProductName;
    if (p_.charts.Charts.ChartIsOpen())
        caption += "  -  " + p_.charts.View.ScaleCaption() + "   " + p_.charts.View.DatumCaption();
    main_.setWindowTitle(Q(caption));
    main_.SetInfoPanel(4, Q(p_.charts.Charts.ChartIsOpen() ? p_.charts.View.DepthUnitsCaption() : std::string()));
}

void ChartCommands::Palette(int mode) {
    p_.ApplyPaletteMode(int16_t(mode));
    p_.registry.SaveSetting(Key::PaletteMode, std::to_string(mode));
    const char* names[] = {"MPaletteDay", "MPaletteTwilight", "MPaletteNight"};
    for (int i = 0; i < 3; ++i)
        if (QAction* a = main_.Action(names[i])) {
            a->setCheckable(true);
            a->setChecked(i == mode);
        }
}

void ChartCommands::Bind() {
    auto needChart = [this](auto f) {
        return [this, f] {
            if (!p_.charts.Charts.ChartIsOpen()) {
                p_.services.dialogs.MsgBox("Please select a Chart using the &Chart menu", mb::OKOnly | mb::Information,
                                           "No Chart Selected");
                return;
            }
            f();
        };
    };
    main_.Bind("MChartManager", [this] {
        FrmChartManager m(p_.charts, p_.services.dialogs, p_.globals.ProductName, &main_);
        m.exec();
        StatusChanged();
    });
    main_.Bind("MChartDetails", needChart([this] {
        FrmChartDetails d(p_.charts, &main_);
        d.exec();
    }));
    main_.Bind("MNotes", needChart([this] {
        FrmNotes n(p_.charts, &main_);
        n.exec();
    }));
    main_.Bind("MPlans", needChart([this] { p_.charts.View.ShowPlansList(); }));
    main_.Bind("MHiRes", needChart([this] { p_.charts.View.ShowHiRes(); }));
    main_.Bind("MLoRes", needChart([this] { p_.charts.View.ShowLoRes(); }));
    main_.Bind("MPaletteDay", [this] { Palette(0); });
    main_.Bind("MPaletteTwilight", [this] { Palette(1); });
    main_.Bind("MPaletteNight", [this] { Palette(2); });
    main_.Bind("MCentreVessel", needChart([this] { p_.chartOps.CentreOnVessel(p_.instruments.vessel.vessel.Pos); }));
    main_.Bind("MWayPtsCentre", needChart([this] { p_.nav.waypoints.CentreOnWaypoint(); }));
    main_.Bind("MRoutesCentre", needChart([this] { p_.nav.routes.CentreOnRoute(); }));
    main_.Bind("MBoundariesCentre", needChart([this] { p_.nav.boundaries.CentreOnBoundary(); }));
    Palette(p_.PaletteMode);
}

}  // namespace ombra
