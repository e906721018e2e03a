// FrmAisTargets ("AIS Targets"): every vessel of the AIS table with its
// static and voyage data and its closest approach to the own vessel. A
// click on a column heading sorts by it (CPA: closest first); the list
// follows the table once a second while open. "Centre" (or a double click)
// centres the chart on the chosen target and shows it in the console.
// Modeless: the plotter runs on while it is open.
#pragma once
#include <QDialog>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <vector>

#include "targets/Ais.h"

namespace ombra {

class Plotter;

class FrmAisTargets : public QDialog {
    Q_OBJECT
public:
    FrmAisTargets(QWidget* owner, Plotter& plotter);
    // Reads the table again.
    void Refresh();
    // Sorts by a column, as a click on its heading does.
    void SortBy(int column);
    AisSort Sort() const { return sort_; }
    // The slot of each row as shown, top first.
    const std::vector<int16_t>& Slots() const { return slots_; }

    QTableWidget* LstTargets;
    QPushButton *ComCentre, *ComClose;

    enum Column { Name, MMSI, CallSign, Type, Status, Size, Destination, ETA, Range, CPA, TCPA, Columns };

private:
    void CentreOnSelected();
    Plotter& p_;
    AisSort sort_ = AisSort::Cpa;
    std::vector<int16_t> slots_;
    QTimer timer_;
};

}  // namespace ombra
