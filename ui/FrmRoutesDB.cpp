#include "ui/FrmRoutesDB.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "navobjects/Activation.h"
#include "navobjects/Routes.h"
#include "ui/FrmList.h"

namespace ombra {

FrmRoutesDB::FrmRoutesDB(QWidget* owner, Routes& store, Activation& activation)
    : QDialog(owner), store_(store), act_(activation) {
    setObjectName("FrmRoutesDB");
    setWindowTitle("Routes DB");
    PicRoutes = StoreTable(this, "PicRoutes", [this] { EnableButtons(); }, [this] { ComProperties->click(); });
    ComDisplay = new QPushButton("&Display", this);
    ComDelete = new QPushButton("&Delete", this);
    ComProperties = new QPushButton("&Properties", this);
    ComActivate = new QPushButton("&Activate", this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(PicRoutes, 1);
    layout->addLayout(ButtonRow(this, ComProperties, {ComDisplay, ComActivate}, ComDelete, &ComClose));
    OnSelectedSlot(this, ComDisplay, [this](int16_t s) { store_.DisplayRoute(s); });
    OnSelectedSlot(this, ComDelete, [this](int16_t s) { store_.DeleteRoute(s); });
    OnSelectedSlot(this, ComProperties, [this](int16_t s) {
        if (ShowRoute && s) ShowRoute(s);
    });
    connect(ComActivate, &QPushButton::clicked, this, [this] {
        int16_t s = SelectedSlot();
        if (!s) return;
        if (store_.ActiveRoute == s) act_.DeactivateRoute(false);
        else act_.ActivateRoute(s, 0);
        Refill();
    });
    Refill();
    resize(420, 360);
}

int16_t FrmRoutesDB::SelectedSlot() const { return ombra::SelectedSlot(PicRoutes, slots_); }

void FrmRoutesDB::Refill() {
    FillSlotRows(
        PicRoutes, {"No.", "Name", "Display", "Active"}, store_.Rows(),
        [](const RouteRow& r) { return std::vector<std::string>{r.No, r.Name, r.Display, r.Active}; }, slots_);
    EnableButtons();
}

void FrmRoutesDB::EnableButtons() {
    int16_t s = SelectedSlot();
    for (QPushButton* b : {ComDisplay, ComDelete, ComProperties, ComActivate}) b->setEnabled(s != 0);
    const Route* r = s ? store_.At(s) : nullptr;
    ComDisplay->setText(r && r->Display ? "&Hide" : "&Display");
    ComActivate->setText(s && store_.ActiveRoute == s ? "&De-activate" : "&Activate");
}

}  // namespace ombra
