// FrmWayPointDB ("Waypoint DB"): the open waypoint database as a list, one
// row a used slot ("No." as "000", "Name", "Latitude", "Longitude"), the
// "Datum" choice of the position columns, and the commands on the row:
// "E&xport to GPS", "&Zoom", "&Activate" ("&De-activate" on the active
// waypoint), "&Properties", "&Delete". With no row chosen the commands are
// disabled; "&Zoom" also without a chart.
#pragma once
#include <QDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <functional>

namespace ombra {

class Waypoints;
class Activation;
class NavChart;

class FrmWayPointDB : public QDialog {
    Q_OBJECT
public:
    FrmWayPointDB(QWidget* owner, Waypoints& store, Activation& activation, NavChart& chart);
    void Refill();
    // The store slot of the selected row; 0 when none is selected.
    int16_t SelectedSlot() const;
    // The export of the chosen waypoints ("E&xport to GPS").
    std::function<void(int16_t slot)> ExportToGps;

    QTableWidget* PicWaypoints;
    QRadioButton *OptWGS84, *OptChart;
    QPushButton *ComExport, *ComZoom, *ComActivate, *ComProperties, *ComDelete, *ComClose = nullptr;

private:
    void EnableButtons();
    Waypoints& store_;
    Activation& act_;
    NavChart& chart_;
    std::vector<int16_t> slots_;
};

}  // namespace ombra
