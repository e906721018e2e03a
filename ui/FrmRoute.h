// FrmRoute: one route. Name, description, "Display", "Display Leg Dist &&
// Brg", the colour, the list of points (PicRoutePts: "No.", "Name",
// "Display", "Active", "Latitude", "Longitude") and of legs (PicLegs:
// "Leg", "RL/GC", "Bearing", "Range"; a click on a leg's RL/GC cell swaps
// it), the total distance, and the commands on the chosen point:
// ComActivate ("&Activate" / "&De-activate"), ComDelete, ComProperties,
// ComExport (the route to the GPS), ComZoom; and a point added at the end
// by keyboard or from the GPS (ComAddKeyboard, ComAddGPS).
//
// The passage tab plans the route through the tidal stream: the speed
// (TxtSetSpeed), "Calc using Tides", the departure (OptCalcBasis: now, or
// TxtStartDate and TxtStartTime), "Use Vessel Position as First WP", "Calc
// Best Departure Time", "Calc"; the arrival, total time, tidal gain and
// total distance; and the results list (PicPassage): the legs of a plan, or
// the 24 departures of a best-departure search, where picking a row plans
// that departure. The tab works once the planner is attached.
#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableWidget>
#include <functional>

#include "core/Types.h"

namespace ombra {

class Routes;
class Activation;
class NavChart;
class Units;
class PassagePlanner;
class Dialogs;

// What the passage tab needs of the program round it.
struct PassageLinks {
    PassagePlanner* passage = nullptr;
    Dialogs* dialogs = nullptr;
    std::string title;                                  // the program's, for message boxes
    std::function<double()> now;                        // the clock, a date serial
    std::function<bool(LatLong& pos)> vessel;           // false when no vessel is active
    std::function<int16_t()> activePoint;               // of this route, 0 none
    std::function<double(double trueCourse, int leg)> shownCourse;
    std::function<void(bool busy)> busy;
    std::function<void()> redraw;
};

class FrmRoute : public QDialog {
    Q_OBJECT
public:
    FrmRoute(QWidget* owner, Routes& store, Activation& activation, NavChart& chart, const Units& units, int16_t route);
    ~FrmRoute() override;
    void Refill();
    std::function<void(int16_t route)> ExportToGps;
    // Wires the passage tab to the planner.
    void AttachPassage(PassageLinks links);
    int16_t RouteIndex() const { return route_; }

    QLineEdit *TxtName, *TxtDescription;
    QCheckBox *ChkDisplay, *ChkLegText;
    QComboBox* ComboColour;
    QTableWidget *PicRoutePts, *PicLegs;
    QLabel* LabTotal;
    QPushButton *ComActivate, *ComDelete, *ComProperties, *ComExport, *ComZoom, *ComOK, *ComCancel;
    // A point at the end, typed in or at the vessel's position.
    QPushButton *ComAddKeyboard, *ComAddGPS;

    QTabWidget* SSTab1;
    QLineEdit *TxtSetSpeed, *TxtStartDate, *TxtStartTime;
    QCheckBox *ChkUseTides, *ChkUseCurrVesPos, *ChkBestDepTime;
    QRadioButton* OptCalcBasis[2];
    QPushButton *CommCalcRoute, *CommPrintPassage;
    QLineEdit *TxtArrDate, *TxtArrTime, *TxtTotTime, *TxtTidalGain, *TxtTotalDistance;
    QTableWidget* PicPassage;
    QProgressBar* GaugeProgress;
    QWidget* PassageTab;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void LayOut();
    void ConnectControls();
    int16_t SelectedPoint() const;
    void EnableButtons();
    void Store();
    QWidget* BuildPassageTab();
    // The checks of "Calc", then the plan.
    void CommCalcRoute_Click();
    void CalcRoute();
    void ShowPassageResults(int16_t state);
    // A pick in the best-departure list plans that departure.
    void PickDeparture(int row);
    // The route changed or the window goes: the plan goes with it.
    void DropPassage();
    bool Refuse(const std::string& text, QWidget* focus);
    PassageLinks links_;
    Routes& store_;
    Activation& act_;
    NavChart& chart_;
    const Units& units_;
    int16_t route_;
};

}  // namespace ombra
