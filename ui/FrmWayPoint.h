// FrmWayPoint ("Way Point"): one waypoint, route point or boundary mark:
// name, description, position relative to WGS84, symbol (the current one
// and the scrolling strip of the 37), label choice, arrival range in the
// user's distance unit and "Show Alarm Range". The rules of its OK button
// are the logic's (navobjects/CommonWP.h, AcceptFields): an invalid
// position keeps the dialog open; the position is only taken from the
// boxes when they were edited, so an untouched one keeps its precision.
#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "navobjects/CommonWP.h"
#include "navobjects/NavHost.h"

namespace ombra {

class Dialogs;
class SymbolStrips;
class Units;

class FrmWayPoint : public QDialog {
    Q_OBJECT
public:
    FrmWayPoint(QWidget* owner, const SymbolStrips& symbols, const Units& units, Dialogs& dialogs,
                const std::string& productName, WaypointDialogRequest& request);

    QLineEdit *TxtName, *TxtDescription, *TxtLat, *TxtLon, *TxtRange;
    QLabel *LabDatabase, *LabDbName, *LabDatum, *LabRange, *LabRangeUnits, *PicIcon;
    QListWidget* ListIcons;
    QComboBox* ComboLabel;
    QCheckBox* ChkShowRange;
    QPushButton *ComOK, *ComCancel;

private:
    void LayOut();
    void ComOK_Click();
    void ShowIcon(int icon);
    const SymbolStrips& symbols_;
    const Units& units_;
    Dialogs& dialogs_;
    const std::string& productName_;
    WaypointDialogRequest& request_;
    bool positionEdited_ = false;
};

// A symbol cell as a pixmap, for the pickers and lists.
QPixmap SymbolPixmap(const SymbolStrips& symbols, int icon, bool active = false);

}  // namespace ombra
