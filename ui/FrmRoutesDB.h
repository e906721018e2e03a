// FrmRoutesDB: the routes of the open database, one row a used route
// ("No.", "Name", "Display", "Active"), and the commands on the row:
// "&Display" ("&Hide" on a displayed route), "&Delete", "&Properties"
// (FrmRoute), "&Activate" ("&De-activate" on the active route), "&Close";
// the buttons stand in the order every store list shares (ButtonRow).
#pragma once
#include <QDialog>
#include <QPushButton>
#include <QTableWidget>
#include <functional>

namespace ombra {

class Routes;
class Activation;

class FrmRoutesDB : public QDialog {
    Q_OBJECT
public:
    FrmRoutesDB(QWidget* owner, Routes& store, Activation& activation);
    void Refill();
    // The store slot of the selected row; 0 when none is selected.
    int16_t SelectedSlot() const;
    std::function<void(int16_t route)> ShowRoute;

    QTableWidget* PicRoutes;
    QPushButton *ComDisplay, *ComDelete, *ComProperties, *ComActivate, *ComClose = nullptr;

private:
    void EnableButtons();
    Routes& store_;
    Activation& act_;
    std::vector<int16_t> slots_;
};

}  // namespace ombra
