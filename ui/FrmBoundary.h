// FrmBoundary ("Boundary", titled "Boundary 001"): one boundary alarm:
// TxtName, TxtDescription, ChkFilled ("Filled"), the option group
// OptEntryExit ("Alarm On VesselEntry", "Alarm On Vessel Exit"), the
// colour and hatch combos with their images, the "Datums" group ("Chart",
// "WGS84") of the position columns, and the mark list PicBoundaryMarks
// ("No.", "Name", "Display", "Latitude", "Longitude"); a double click on a
// mark opens FrmWayPoint as "Boundary Mark 3". OK stores the colours and
// flags and redraws the chart.
#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <vector>

#include "navobjects/Waypoint.h"

namespace ombra {

class Boundaries;
class NavChart;

class FrmBoundary : public QDialog {
    Q_OBJECT
public:
    FrmBoundary(QWidget* owner, Boundaries& store, NavChart& chart, int16_t boundary);
    void Refill();
    // Cancel, Esc or the close box: the marks go back to what they were
    // when the window opened, since their edits are applied as they are made.
    void reject() override;

    QLineEdit *TxtName, *TxtDescription;
    QCheckBox* ChkFilled;
    QRadioButton *OptEntry, *OptExit, *OptDatumChart, *OptDatumWGS84;
    QComboBox *ComboColour, *ComboPattern;
    QTableWidget* PicBoundaryMarks;
    QPushButton *ComOK, *ComCancel;

private:
    void ConnectControls();
    Boundaries& store_;
    NavChart& chart_;
    int16_t boundary_;
    std::vector<Waypoint> marksAtOpen_;
};

class FrmBoundaryDB : public QDialog {
    Q_OBJECT
public:
    FrmBoundaryDB(QWidget* owner, Boundaries& store, NavChart& chart);
    void Refill();
    // The store slot of the selected row; 0 when none is selected.
    int16_t SelectedSlot() const;

    QTableWidget* PicBoundaries;
    QPushButton *ComDisplay, *ComDelete, *ComProperties, *ComClose = nullptr;

private:
    void EnableButtons();
    Boundaries& store_;
    NavChart& chart_;
    std::vector<int16_t> slots_;
};

}  // namespace ombra
