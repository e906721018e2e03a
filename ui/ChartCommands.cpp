#include "ui/ChartCommands.h"

#include <QMenu>

#include "core/Val.h"
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
    area_ = new ChartArea(p_.charts(), &main_);
    area_->setObjectName("PicNavCanvas");
    main_.SetChartWidget(area_);
    area_->OnMouseMove = [this](ChartPoint, bool onPlan, const LatLong& pos) { p_.SetChartCursor(onPlan, pos); };
    area_->ZoomRectWanted = [this] { return p_.registry().IsTrue(Key::ZoomRect); };
}

void ChartCommands::WarningsChanged() { main_.SetWarnings(Q(p_.charts().View.WarningText())); }

// Chart problems the catalogue finds are listed in their own window.
void ChartCommands::ChartErrorsChanged() {
    const auto& list = p_.charts().Cat.ChartErrors;
    if (list.empty() && !errors_) return;
    if (!errors_) errors_ = new FrmChartErrors(&main_);
    errors_->SetErrors(list);
    if (!list.empty() && !errors_->isVisible()) errors_->show();
}

void ChartCommands::StatusChanged() {
    std::string caption = "Vestrane " + p_.globals().ProductName;
    if (p_.charts().Charts.ChartIsOpen())
        caption += "  -  " + p_.charts().View.ScaleCaption() + "   " + p_.charts().View.DatumCaption();
    main_.setWindowTitle(Q(caption));
    main_.SetInfoPanel(4, Q(p_.charts().Charts.ChartIsOpen() ? p_.charts().View.DepthUnitsCaption() : std::string()));
}

void ChartCommands::Palette(int mode) {
    p_.ApplyPaletteMode(int16_t(mode));
    p_.registry().SaveSetting(Key::PaletteMode, std::to_string(mode));
    const char* names[] = {"MPaletteDay", "MPaletteTwilight", "MPaletteNight"};
    for (int i = 0; i < 3; ++i)
        if (QAction* a = main_.Action(names[i])) {
            a->setCheckable(true);
            a->setChecked(i == mode);
        }
}

// Vessel > Auto-Scroll turns the keeping of the vessel's run in view on and
// off. Its time is the one of Program Options; off then on brings back the
// last time used (ten minutes when there never was one). The tick is shown
// whenever the Vessel menu opens, so a change in Program Options shows too.
void ChartCommands::BindAutoScroll() {
    QAction* a = main_.Action("MAutoScroll");
    if (!a) return;
    a->setCheckable(true);
    auto& vessel = p_.instruments().vessel;
    auto show = [this, a, &vessel] {
        if (vessel.AutoscrollTime > 0.0f) lastAutoscroll_ = vessel.AutoscrollTime;
        a->setChecked(vessel.AutoscrollTime > 0.0f);
    };
    main_.Bind("MAutoScroll", [this, show, &vessel] {
        float time = vessel.AutoscrollTime > 0.0f ? 0.0f : (lastAutoscroll_ > 0.0f ? lastAutoscroll_ : 10.0f);
        if (vessel.AutoscrollTime > 0.0f) lastAutoscroll_ = vessel.AutoscrollTime;
        vessel.AutoscrollTime = time;
        p_.registry().SaveSetting(Key::AutoscrollTime, NumberText(time));
        show();
    });
    if (QMenu* m = main_.findChild<QMenu*>("MVessel")) QObject::connect(m, &QMenu::aboutToShow, a, show);
    show();
}

void ChartCommands::Bind() {
    auto needChart = [this](auto f) {
        return [this, f] {
            if (!p_.charts().Charts.ChartIsOpen()) {
                p_.services().dialogs.MsgBox("Please select a Chart using the &Chart menu", mb::OKOnly | mb::Information,
                                           "No Chart Selected");
                return;
            }
            f();
        };
    };
    main_.Bind("MChartManager", [this] {
        FrmChartManager m(p_.charts(), p_.services().dialogs, p_.globals().ProductName, &main_);
        m.exec();
        StatusChanged();
    });
    main_.Bind("MChartDetails", needChart([this] {
        FrmChartDetails d(p_.charts(), &main_);
        d.exec();
    }));
    main_.Bind("MNotes", needChart([this] {
        FrmNotes n(p_.charts(), &main_);
        n.exec();
    }));
    main_.Bind("MPlans", needChart([this] { p_.charts().View.ShowPlansList(); }));
    main_.Bind("MHiRes", needChart([this] { p_.charts().View.ShowHiRes(); }));
    // The next chart of larger or smaller scale at the same place; the
    // chart view keeps + and - (and the wheel) for the pixel zoom.
    main_.Bind("MZoomInChart", needChart([this] { p_.charts().Charts.ZoomInChart(); }));
    main_.Bind("MZoomOutChart", needChart([this] { p_.charts().Charts.ZoomOutChart(); }));
    if (QAction* a = main_.Action("MZoomInChart")) a->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp));
    if (QAction* a = main_.Action("MZoomOutChart")) a->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown));
    BindAutoScroll();
    main_.Bind("MLoRes", needChart([this] { p_.charts().View.ShowLoRes(); }));
    main_.Bind("MPaletteDay", [this] { Palette(0); });
    main_.Bind("MPaletteTwilight", [this] { Palette(1); });
    main_.Bind("MPaletteNight", [this] { Palette(2); });
    main_.Bind("MCentreVessel", needChart([this] { p_.CentreOnVessel(); }));
    // The vessel tool: a click on the chart puts the vessel there (dead
    // reckoning); offered while no GPS mode places it.
    main_.Bind("MPlaceVessel", needChart([this] { p_.nav().tools.PlaceVessel(); }));
    if (QMenu* m = main_.findChild<QMenu*>("MVessel"))
        QObject::connect(m, &QMenu::aboutToShow, m, [this] {
            if (QAction* a = main_.Action("MPlaceVessel")) a->setEnabled(p_.nav().tools.CanPlaceVessel());
        });
    main_.Bind("MWayPtsCentre", needChart([this] { p_.nav().waypoints.CentreOnWaypoint(); }));
    main_.Bind("MRoutesCentre", needChart([this] { p_.nav().routes.CentreOnRoute(); }));
    main_.Bind("MBoundariesCentre", needChart([this] { p_.nav().boundaries.CentreOnBoundary(); }));
    Palette(p_.PaletteMode());
    BindLabels();
}

// View > Labels and View > Route Icons: each entry is ticked while it rules.
void ChartCommands::BindLabels() {
    const char* labels[] = {"MLabelsDefault", "MLabelsOn", "MLabelsOff"};
    auto tick = [this, labels] {
        for (int i = 0; i < 3; ++i)
            if (QAction* a = main_.Action(labels[i])) {
                a->setCheckable(true);
                a->setChecked(p_.LabelMode() == i);
            }
        for (auto [name, off] : {std::pair{"MRtIconsDefault", false}, std::pair{"MRtIconsOff", true}})
            if (QAction* a = main_.Action(name)) {
                a->setCheckable(true);
                a->setChecked(p_.RouteIconsOff() == off);
            }
    };
    for (int i = 0; i < 3; ++i)
        main_.Bind(labels[i], [this, i, tick] {
            p_.SetLabelMode(int16_t(i));
            tick();
        });
    main_.Bind("MRtIconsDefault", [this, tick] {
        p_.SetRouteIconsOff(false);
        tick();
    });
    main_.Bind("MRtIconsOff", [this, tick] {
        p_.SetRouteIconsOff(true);
        tick();
    });
    tick();
}

}  // namespace ombra
