// FrmRoute: one route. Name, description, "Display", "Display Leg Dist &&
// Brg", the colour, the list of points (PicRoutePts: "No.", "Name",
// "Display", "Active", "Latitude", "Longitude") and of legs (PicLegs:
// "Leg", "RL/GC", "Bearing", "Range"; a click on a leg's RL/GC cell swaps
// it), the total distance, and the commands on the chosen point:
// ComActivate ("&Activate" / "&De-activate"), ComDelete, ComProperties,
// ComExport (the route to the GPS), ComZoom; and a point added at the end
// by keyboard or from the GPS (ComAddKeyboard, ComAddGPS). Its passage planning tab
// belongs to the tides work and is added there.
#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <functional>

namespace ombra {

class Routes;
class Activation;
class NavChart;
class Units;

class FrmRoute : public QDialog {
    Q_OBJECT
public:
    FrmRoute(QWidget* owner, Routes& store, Activation& activation, NavChart& chart, const Units& units, int16_t route);
    void Refill();
    std::function<void(int16_t route)> ExportToGps;

    QLineEdit *TxtName, *TxtDescription;
    QCheckBox *ChkDisplay, *ChkLegText;
    QComboBox* ComboColour;
    QTableWidget *PicRoutePts, *PicLegs;
    QLabel* LabTotal;
    QPushButton *ComActivate, *ComDelete, *ComProperties, *ComExport, *ComZoom, *ComOK, *ComCancel;
    // A point at the end, typed in or at the vessel's position.
    QPushButton *ComAddKeyboard, *ComAddGPS;

private:
    void LayOut();
    void ConnectControls();
    int16_t SelectedPoint() const;
    void EnableButtons();
    void Store();
    Routes& store_;
    Activation& act_;
    NavChart& chart_;
    const Units& units_;
    int16_t route_;
};

}  // namespace ombra
