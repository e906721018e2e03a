#include "ui/FrmRoute.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/Format.h"
#include "core/Units.h"
#include "navobjects/Activation.h"
#include "navobjects/CommonWP.h"
#include "navobjects/NavChart.h"
#include "navobjects/Routes.h"
#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"
#include "ui/FrmList.h"

namespace ombra {

FrmRoute::FrmRoute(QWidget* owner, Routes& store, Activation& activation, NavChart& chart, const Units& units,
                   int16_t route)
    : QDialog(owner), store_(store), act_(activation), chart_(chart), units_(units), route_(route) {
    setObjectName("FrmRoute");
    setWindowTitle(Q("Route " + Format(route_, "000")));
    const Route* r = store_.At(route_);
    TxtName = new QLineEdit(r ? Q(r->Name) : QString(), this);
    TxtName->setObjectName("TxtName");
    TxtDescription = new QLineEdit(r ? Q(r->Description) : QString(), this);
    TxtDescription->setObjectName("TxtDescription");
    ChkDisplay = NamedCheck(this, nullptr, "ChkDisplay", "Display", r && r->Display);
    ChkLegText = NamedCheck(this, nullptr, "ChkLegText", "Display Leg Dist && Brg", r && r->ShowLegText);
    ComboColour = ColourCombo(this, "ComboColour", r ? r->Colour : 0);
    PicRoutePts = new QTableWidget(this);
    PicRoutePts->setObjectName("PicRoutePts");
    PicLegs = new QTableWidget(this);
    PicLegs->setObjectName("PicLegs");
    LabTotal = new QLabel(this);
    LabTotal->setObjectName("LabTotal");
    auto button = [this](const char* name, const char* caption) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        return b;
    };
    ComActivate = button("ComActivate", "&Activate");
    ComDelete = button("ComDelete", "&Delete");
    ComProperties = button("ComProperties", "&Properties");
    ComExport = button("ComExport", "E&xport to GPS");
    ComZoom = button("ComZoom", "&Zoom");
    ComAddKeyboard = button("ComAddKeyboard", "Add by &Keyboard");
    ComAddGPS = button("ComAddGPS", "Add by &GPS");
    LayOut();
    ConnectControls();
    Refill();
    resize(760, 460);
}

// The name and display choices above, the points and legs side by side,
// the total under them and the buttons at the foot.
void FrmRoute::LayOut() {
    auto* form = new QFormLayout;
    form->addRow("Name", TxtName);
    form->addRow("Description", TxtDescription);
    auto* checks = new QHBoxLayout;
    checks->addWidget(ChkDisplay);
    checks->addWidget(ChkLegText);
    checks->addWidget(ComboColour);
    form->addRow(checks);
    auto* lists = new QHBoxLayout;
    lists->addWidget(PicRoutePts, 3);
    lists->addWidget(PicLegs, 2);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(lists, 1);
    layout->addWidget(LabTotal);
    OkCancel buttons =
        AddOkCancel(this, layout, {ComActivate, ComDelete, ComProperties, ComAddKeyboard, ComAddGPS, ComExport, ComZoom});
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
}

void FrmRoute::ConnectControls() {
    connect(PicRoutePts, &QTableWidget::itemSelectionChanged, this, [this] { EnableButtons(); });
    connect(PicRoutePts, &QTableWidget::cellDoubleClicked, this, [this] { ComProperties->click(); });
    // A click on a leg's kind swaps it between rhumb line and great circle.
    connect(PicLegs, &QTableWidget::cellClicked, this, [this](int row, int col) {
        if (col != 1) return;
        store_.SwapLegKind(route_, int16_t(row + 1));
        Refill();
    });
    connect(ComActivate, &QPushButton::clicked, this, [this] {
        if (store_.ActiveRoute == route_) act_.DeactivateRoute(false);
        else act_.ActivateRoute(route_, SelectedPoint());
        Refill();
    });
    // Deleting the last point deletes the route, and the dialog closes.
    connect(ComDelete, &QPushButton::clicked, this, [this] {
        if (SelectedPoint()) store_.DeleteRoutePoint(route_, SelectedPoint());
        if (!store_.At(route_) || !store_.At(route_)->Used()) {
            reject();
            return;
        }
        Refill();
    });
    connect(ComProperties, &QPushButton::clicked, this, [this] {
        if (SelectedPoint()) store_.EditRoutePoint(route_, SelectedPoint());
        Refill();
    });
    for (auto [b, how] : {std::pair{ComAddKeyboard, AddBy::Keyboard}, std::pair{ComAddGPS, AddBy::GPS}})
        connect(b, &QPushButton::clicked, this, [this, how = how] {
            store_.AddRoutePointBy(route_, how);
            Refill();
        });
    connect(ComExport, &QPushButton::clicked, this, [this] {
        if (ExportToGps) ExportToGps(route_);
    });
    connect(ComZoom, &QPushButton::clicked, this, [this] {
        if (const Waypoint* p = store_.PointAt(route_, SelectedPoint() ? SelectedPoint() : int16_t(1)))
            chart_.CentreOn(p->Position.Wgs84);
    });
    connect(ComOK, &QPushButton::clicked, this, [this] {
        Store();
        accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
}

int16_t FrmRoute::SelectedPoint() const { return int16_t(SelectedRow(PicRoutePts) + 1); }

void FrmRoute::Store() {
    Route* r = store_.At(route_);
    if (!r) return;
    r->Name = S(TxtName->text());
    r->Description = S(TxtDescription->text());
    r->Display = ChkDisplay->isChecked() ? -1 : 0;
    r->ShowLegText = ChkLegText->isChecked();
    r->Colour = int16_t(ComboColour->currentIndex());
    chart_.Redraw();
}

void FrmRoute::Refill() {
    std::vector<std::vector<std::string>> pts, legs;
    for (const RoutePointRow& p : store_.PointRows(route_, false))
        pts.push_back({p.No, p.Name, p.Display, p.Active, p.Latitude, p.Longitude});
    FillRows(PicRoutePts, {"No.", "Name", "Display", "Active", "Latitude", "Longitude"}, pts);
    for (const RouteLegRow& l : store_.LegRows(route_)) legs.push_back({l.Leg, l.Kind, l.Bearing, l.Range});
    FillRows(PicLegs, {"Leg", "RL/GC", "Bearing", "Range"}, legs);
    const Route* r = store_.At(route_);
    double total = r ? r->TotalDistance() : 0.0;
    LabTotal->setText(Q("Total distance " + units_.ToDisplay(UnitKind::Distance, float(total), "0.000") + " " +
                        units_.UnitText(UnitKind::Distance)));
    EnableButtons();
}

void FrmRoute::EnableButtons() {
    bool chosen = SelectedRow(PicRoutePts) >= 0;
    ComDelete->setEnabled(chosen);
    ComProperties->setEnabled(chosen);
    ComZoom->setEnabled(chart_.CanZoom());
    ComActivate->setText(store_.ActiveRoute == route_ ? "&De-activate" : "&Activate");
}

}  // namespace ombra
