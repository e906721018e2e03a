#include "ui/FrmWayPointDB.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "navobjects/Activation.h"
#include "navobjects/NavChart.h"
#include "navobjects/Waypoints.h"
#include "ui/FrmList.h"

namespace ombra {

FrmWayPointDB::FrmWayPointDB(QWidget* owner, Waypoints& store, Activation& activation, NavChart& chart)
    : QDialog(owner), store_(store), act_(activation), chart_(chart) {
    setObjectName("FrmWayPointDB");
    setWindowTitle("Waypoint DB");
    PicWaypoints = StoreTable(this, "PicWaypoints", [this] { EnableButtons(); }, [this] { ComProperties->click(); });
    auto* datum = new QGroupBox("Datum", this);
    OptWGS84 = new QRadioButton("WGS84", datum);
    OptChart = new QRadioButton("Chart", datum);
    OptWGS84->setChecked(true);
    auto* dl = new QHBoxLayout(datum);
    dl->addWidget(OptWGS84);
    dl->addWidget(OptChart);
    ComExport = new QPushButton("E&xport to GPS", this);
    ComZoom = new QPushButton("&Zoom", this);
    ComActivate = new QPushButton("&Activate", this);
    ComProperties = new QPushButton("&Properties", this);
    ComDelete = new QPushButton("&Delete", this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(PicWaypoints, 1);
    layout->addWidget(datum);
    layout->addLayout(ButtonRow(this, ComProperties, {ComZoom, ComActivate, ComExport}, ComDelete, &ComClose));

    connect(OptWGS84, &QRadioButton::toggled, this, [this] { Refill(); });
    connect(ComExport, &QPushButton::clicked, this, [this] {
        if (ExportToGps && SelectedSlot()) ExportToGps(SelectedSlot());
    });
    connect(ComZoom, &QPushButton::clicked, this, [this] {
        if (const Waypoint* w = store_.At(SelectedSlot())) chart_.CentreOn(w->Position.Wgs84);
    });
    connect(ComActivate, &QPushButton::clicked, this, [this] {
        int16_t s = SelectedSlot();
        if (!s) return;
        if (store_.ActiveIndex == s) act_.DeactivateWaypoint(false);
        else act_.ActivateWaypoint(s);
        Refill();
    });
    OnSelectedSlot(this, ComProperties, [this](int16_t s) {
        if (s) store_.EditWaypoint(s);
    });
    OnSelectedSlot(this, ComDelete, [this](int16_t s) {
        if (s) store_.DeleteWaypoint(s);
    });
    Refill();
    resize(520, 420);
}

int16_t FrmWayPointDB::SelectedSlot() const { return ombra::SelectedSlot(PicWaypoints, slots_); }

void FrmWayPointDB::Refill() {
    FillSlotRows(
        PicWaypoints, {"No.", "Name", "Latitude", "Longitude"}, store_.Rows(OptChart->isChecked()),
        [](const WaypointRow& r) { return std::vector<std::string>{r.No, r.Name, r.Latitude, r.Longitude}; }, slots_);
    EnableButtons();
}

void FrmWayPointDB::EnableButtons() {
    int16_t s = SelectedSlot();
    for (QPushButton* b : {ComExport, ComActivate, ComProperties, ComDelete}) b->setEnabled(s != 0);
    ComZoom->setEnabled(s != 0 && chart_.CanZoom());
    ComActivate->setText(s != 0 && store_.ActiveIndex == s ? "&De-activate" : "&Activate");
}

}  // namespace ombra
