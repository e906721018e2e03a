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
    PicWaypoints = new QTableWidget(this);
    PicWaypoints->setObjectName("PicWaypoints");
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
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {ComExport, ComZoom, ComActivate, ComProperties, ComDelete}) buttons->addWidget(b);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(PicWaypoints, 1);
    layout->addWidget(datum);
    layout->addLayout(buttons);

    connect(OptWGS84, &QRadioButton::toggled, this, [this] { Refill(); });
    connect(PicWaypoints, &QTableWidget::itemSelectionChanged, this, [this] { EnableButtons(); });
    connect(PicWaypoints, &QTableWidget::cellDoubleClicked, this, [this] { ComProperties->click(); });
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
    connect(ComProperties, &QPushButton::clicked, this, [this] {
        if (SelectedSlot()) store_.EditWaypoint(SelectedSlot());
        Refill();
    });
    connect(ComDelete, &QPushButton::clicked, this, [this] {
        if (SelectedSlot()) store_.DeleteWaypoint(SelectedSlot());
        Refill();
    });
    Refill();
    resize(520, 420);
}

int16_t FrmWayPointDB::SelectedSlot() const {
    int row = SelectedRow(PicWaypoints);
    return row >= 0 && row < int(slots_.size()) ? slots_[size_t(row)] : int16_t(0);
}

void FrmWayPointDB::Refill() {
    std::vector<std::vector<std::string>> rows;
    slots_.clear();
    for (const WaypointRow& r : store_.Rows(OptChart->isChecked())) {
        rows.push_back({r.No, r.Name, r.Latitude, r.Longitude});
        slots_.push_back(r.Slot);
    }
    FillRows(PicWaypoints, {"No.", "Name", "Latitude", "Longitude"}, rows);
    EnableButtons();
}

void FrmWayPointDB::EnableButtons() {
    int16_t s = SelectedSlot();
    for (QPushButton* b : {ComExport, ComActivate, ComProperties, ComDelete}) b->setEnabled(s != 0);
    ComZoom->setEnabled(s != 0 && chart_.CanZoom());
    ComActivate->setText(s != 0 && store_.ActiveIndex == s ? "&De-activate" : "&Activate");
}

}  // namespace ombra
