#include "ui/FrmRoute.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <cstdio>

#include "core/Format.h"
#include "core/Units.h"
#include "core/Val.h"
#include "navobjects/Activation.h"
#include "navobjects/CommonWP.h"
#include "navobjects/NavChart.h"
#include "navobjects/Routes.h"
#include "platform/api/Dialogs.h"
#include "tides/PassagePlanner.h"
#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"
#include "ui/FrmList.h"

namespace ombra {

FrmRoute::FrmRoute(QWidget* owner, Routes& store, Activation& activation, NavChart& chart, const Units& units,
                   int16_t route)
    : QDialog(owner), store_(store), act_(activation), chart_(chart), units_(units), route_(route) {
    setObjectName("FrmRoute");
    setWindowTitle(Q("Route " + Format(route_, "000")));
    const Route* r = store_.At(route_);
    TxtName = new QLineEdit(r ? Q(r->Name) : QString(), this);
    TxtName->setObjectName("TxtName");
    TxtDescription = new QLineEdit(r ? Q(r->Description) : QString(), this);
    TxtDescription->setObjectName("TxtDescription");
    ChkDisplay = NamedCheck(this, nullptr, "ChkDisplay", "Display", r && r->Display);
    ChkLegText = NamedCheck(this, nullptr, "ChkLegText", "Display Leg Dist && Brg", r && r->ShowLegText);
    ComboColour = ColourCombo(this, "ComboColour", r ? r->Colour : 0);
    PicRoutePts = new QTableWidget(this);
    PicRoutePts->setObjectName("PicRoutePts");
    PicLegs = new QTableWidget(this);
    PicLegs->setObjectName("PicLegs");
    LabTotal = new QLabel(this);
    LabTotal->setObjectName("LabTotal");
    auto button = [this](const char* name, const char* caption) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        return b;
    };
    ComActivate = button("ComActivate", "&Activate");
    ComDelete = button("ComDelete", "&Delete");
    ComProperties = button("ComProperties", "&Properties");
    ComExport = button("ComExport", "E&xport to GPS");
    ComZoom = button("ComZoom", "&Zoom");
    ComAddKeyboard = button("ComAddKeyboard", "Add by &Keyboard");
    ComAddGPS = button("ComAddGPS", "Add by &GPS");
    SSTab1 = new QTabWidget(this);
    SSTab1->setObjectName("SSTab1");
    PassageTab = BuildPassageTab();
    LayOut();
    ConnectControls();
    Refill();
    resize(760, 460);
}

// The name and display choices above, the points and legs side by side,
// the total under them and the buttons at the foot.
void FrmRoute::LayOut() {
    auto* form = new QFormLayout;
    form->addRow("Name", TxtName);
    form->addRow("Description", TxtDescription);
    auto* checks = new QHBoxLayout;
    checks->addWidget(ChkDisplay);
    checks->addWidget(ChkLegText);
    checks->addWidget(ComboColour);
    form->addRow(checks);
    auto* lists = new QHBoxLayout;
    lists->addWidget(PicRoutePts, 3);
    lists->addWidget(PicLegs, 2);
    auto* routePage = new QWidget(this);
    auto* page = new QVBoxLayout(routePage);
    page->addLayout(form);
    page->addLayout(lists, 1);
    page->addWidget(LabTotal);
    SSTab1->addTab(routePage, "Route");
    SSTab1->addTab(PassageTab, "Passage Planning");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1, 1);
    OkCancel buttons =
        AddOkCancel(this, layout, {ComActivate, ComDelete, ComProperties, ComAddKeyboard, ComAddGPS, ComExport, ComZoom});
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
}

void FrmRoute::ConnectControls() {
    connect(PicRoutePts, &QTableWidget::itemSelectionChanged, this, [this] { EnableButtons(); });
    connect(PicRoutePts, &QTableWidget::cellDoubleClicked, this, [this] { ComProperties->click(); });
    // A click on a leg's kind swaps it between rhumb line and great circle.
    connect(PicLegs, &QTableWidget::cellClicked, this, [this](int row, int col) {
        if (col != 1) return;
        store_.SwapLegKind(route_, int16_t(row + 1));
        DropPassage();
        Refill();
    });
    connect(ComActivate, &QPushButton::clicked, this, [this] {
        if (store_.ActiveRoute == route_) act_.DeactivateRoute(false);
        else act_.ActivateRoute(route_, SelectedPoint());
        Refill();
    });
    // Deleting the last point deletes the route, and the dialog closes.
    connect(ComDelete, &QPushButton::clicked, this, [this] {
        if (SelectedPoint()) store_.DeleteRoutePoint(route_, SelectedPoint());
        DropPassage();
        if (!store_.At(route_) || !store_.At(route_)->Used()) {
            reject();
            return;
        }
        Refill();
    });
    connect(ComProperties, &QPushButton::clicked, this, [this] {
        if (SelectedPoint() && store_.EditRoutePoint(route_, SelectedPoint())) DropPassage();
        Refill();
    });
    for (auto [b, how] : {std::pair{ComAddKeyboard, AddBy::Keyboard}, std::pair{ComAddGPS, AddBy::GPS}})
        connect(b, &QPushButton::clicked, this, [this, how = how] {
            store_.AddRoutePointBy(route_, how);
            DropPassage();
            Refill();
        });
    connect(ComExport, &QPushButton::clicked, this, [this] {
        if (ExportToGps) ExportToGps(route_);
    });
    connect(ComZoom, &QPushButton::clicked, this, [this] {
        if (const Waypoint* p = store_.PointAt(route_, SelectedPoint() ? SelectedPoint() : int16_t(1)))
            chart_.CentreOn(p->Position.Wgs84);
    });
    connect(ComOK, &QPushButton::clicked, this, [this] {
        Store();
        accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(this, &QDialog::finished, this, [this] { DropPassage(); });
    connect(CommCalcRoute, &QPushButton::clicked, this, [this] { CommCalcRoute_Click(); });
    PicPassage->viewport()->installEventFilter(this);
    connect(OptCalcBasis[1], &QRadioButton::toggled, this, [this](bool on) {
        TxtStartDate->setEnabled(on);
        TxtStartTime->setEnabled(on);
    });
}

FrmRoute::~FrmRoute() = default;

QWidget* FrmRoute::BuildPassageTab() {
    auto* tab = new QWidget(this);
    tab->setObjectName("PassageTab");
    auto edit = [tab](const char* name, bool readOnly = false) {
        auto* e = new QLineEdit(tab);
        e->setObjectName(name);
        e->setReadOnly(readOnly);
        return e;
    };
    TxtSetSpeed = edit("TxtSetSpeed");
    TxtStartDate = edit("TxtStartDate");
    TxtStartTime = edit("TxtStartTime");
    TxtArrDate = edit("TxtArrDate", true);
    TxtArrTime = edit("TxtArrTime", true);
    TxtTotTime = edit("TxtTotTime", true);
    TxtTidalGain = edit("TxtTidalGain", true);
    TxtTotalDistance = edit("TxtTotalDistance", true);
    ChkUseTides = NamedCheck(tab, nullptr, "ChkUseTides", "Calc using Tides", true);
    ChkUseCurrVesPos = NamedCheck(tab, nullptr, "ChkUseCurrVesPos", "Use Vessel Position as First WP");
    ChkBestDepTime = NamedCheck(tab, nullptr, "ChkBestDepTime", "Calc Best Departure Time");
    auto* basis = new QVBoxLayout;
    QButtonGroup* group = RadioGroup(tab, basis, {"OptCalcBasis0", "OptCalcBasis1"},
                                     {"Use Current Date && Time", "Set Departure Date &&Time"}, 0);
    OptCalcBasis[0] = qobject_cast<QRadioButton*>(group->button(0));
    OptCalcBasis[1] = qobject_cast<QRadioButton*>(group->button(1));
    TxtStartDate->setEnabled(false);
    TxtStartTime->setEnabled(false);
    CommCalcRoute = new QPushButton("Calc", tab);
    CommCalcRoute->setObjectName("CommCalcRoute");
    CommPrintPassage = new QPushButton("Print", tab);
    CommPrintPassage->setObjectName("CommPrintPassage");
    CommPrintPassage->setEnabled(false);  // the passage printout comes with the report printing
    PicPassage = new QTableWidget(tab);
    PicPassage->setObjectName("PicPassage");
    PicPassage->setSelectionBehavior(QAbstractItemView::SelectRows);
    PicPassage->setSelectionMode(QAbstractItemView::SingleSelection);
    PicPassage->setEditTriggers(QAbstractItemView::NoEditTriggers);
    PicPassage->verticalHeader()->hide();
    GaugeProgress = new QProgressBar(tab);
    GaugeProgress->setObjectName("GaugeProgress");
    GaugeProgress->setRange(0, 24);
    GaugeProgress->hide();

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel("Speed", tab), 0, 0);
    grid->addWidget(TxtSetSpeed, 0, 1);
    grid->addWidget(new QLabel(Q(units_.UnitText(UnitKind::Speed)), tab), 0, 2);
    grid->addWidget(ChkUseTides, 1, 0, 1, 3);
    grid->addLayout(basis, 2, 0, 1, 3);
    grid->addWidget(new QLabel("Date", tab), 3, 0);
    grid->addWidget(TxtStartDate, 3, 1);
    grid->addWidget(new QLabel("Time", tab), 4, 0);
    grid->addWidget(TxtStartTime, 4, 1);
    grid->addWidget(ChkUseCurrVesPos, 5, 0, 1, 3);
    grid->addWidget(ChkBestDepTime, 6, 0, 1, 3);
    auto* calc = new QHBoxLayout;
    calc->addWidget(CommCalcRoute);
    calc->addWidget(CommPrintPassage);
    grid->addLayout(calc, 7, 0, 1, 3);
    auto* outputs = new QFormLayout;
    auto* eta = new QHBoxLayout;
    eta->addWidget(TxtArrDate);
    eta->addWidget(TxtArrTime);
    outputs->addRow("ETA at last Waypoint", eta);
    auto* total = new QHBoxLayout;
    total->addWidget(TxtTotTime);
    total->addWidget(new QLabel("dd, hh, mm", tab));
    outputs->addRow("Total Time", total);
    outputs->addRow("Tidal Gain %", TxtTidalGain);
    outputs->addRow("Total distance", TxtTotalDistance);
    grid->addLayout(outputs, 8, 0, 1, 3);
    grid->setRowStretch(9, 1);
    auto* row = new QHBoxLayout;
    row->addLayout(grid);
    auto* right = new QVBoxLayout;
    right->addWidget(PicPassage, 1);
    right->addWidget(GaugeProgress);
    row->addLayout(right, 1);
    auto* layout = new QVBoxLayout(tab);
    layout->addLayout(row);
    for (QWidget* w : std::initializer_list<QWidget*>{TxtSetSpeed, ChkUseTides, OptCalcBasis[0], OptCalcBasis[1],
                                                      TxtStartDate, TxtStartTime, ChkUseCurrVesPos, ChkBestDepTime,
                                                      CommCalcRoute})
        w->setEnabled(false);
    return tab;
}

void FrmRoute::AttachPassage(PassageLinks links) {
    links_ = std::move(links);
    const bool on = links_.passage != nullptr;
    for (QWidget* w : std::initializer_list<QWidget*>{TxtSetSpeed, ChkUseTides, OptCalcBasis[0], OptCalcBasis[1],
                                                      ChkUseCurrVesPos, ChkBestDepTime, CommCalcRoute})
        w->setEnabled(on);
    TxtStartDate->setEnabled(on && OptCalcBasis[1]->isChecked());
    TxtStartTime->setEnabled(on && OptCalcBasis[1]->isChecked());
    if (on && TxtStartDate->text().isEmpty() && links_.now) {
        const DateTime now = DateTime::FromSerial(links_.now());
        TxtStartDate->setText(Q(FormatDate(now, "Short Date")));
        TxtStartTime->setText(Q(FormatDate(now, "Short Time")));
    }
}

namespace {

// "dd/mm/yyyy" (the short date) and "hh:mm" or "hh:mm:ss" (the short time).
bool ReadShortDate(const std::string& text, DateTime& out) {
    int n = 0;
    if (std::sscanf(text.c_str(), " %d/%d/%d %n", &out.day, &out.month, &out.year, &n) != 3 || size_t(n) != text.size())
        return false;
    if (out.year < 100) out.year += out.year < 30 ? 2000 : 1900;
    return IsValidDate(out.year, out.month, out.day);
}
bool ReadShortTime(const std::string& text, DateTime& out) {
    int n = 0;
    out.second = 0;
    const int got = std::sscanf(text.c_str(), " %d:%d%n:%d%n", &out.hour, &out.minute, &n, &out.second, &n);
    if (got < 2 || size_t(n) != text.size()) return false;
    return out.hour >= 0 && out.hour < 24 && out.minute >= 0 && out.minute < 60 && out.second >= 0 && out.second < 60;
}

}  // namespace

bool FrmRoute::Refuse(const std::string& text, QWidget* focus) {
    if (links_.dialogs) links_.dialogs->MsgBox(text, mb::OKOnly | mb::Exclamation, links_.title);
    if (focus) focus->setFocus();
    return false;
}

void FrmRoute::CommCalcRoute_Click() {
    if (!links_.passage) return;
    if (OptCalcBasis[1]->isChecked()) {
        // The two texts are crossed: an empty time asks for a date, an
        // empty date for a time.
        if (TxtStartTime->text().trimmed().isEmpty()) return (void)Refuse("Must enter a date", TxtStartTime);
        if (TxtStartDate->text().trimmed().isEmpty()) return (void)Refuse("Must enter a time", TxtStartDate);
        DateTime t;
        if (!ReadShortDate(S(TxtStartDate->text()), t)) return (void)Refuse("Invalid Time Format", TxtStartDate);
        if (!ReadShortTime(S(TxtStartTime->text()), t)) return (void)Refuse("Invalid Time Format", TxtStartTime);
    }
    const std::string speed = S(TxtSetSpeed->text());
    if (!IsNumeric(speed) || !(Val(speed) > 0)) return (void)Refuse("Must enter a Speed", TxtSetSpeed);
    LatLong pos;
    if (ChkUseCurrVesPos->isChecked() && !(links_.vessel && links_.vessel(pos)))
        return (void)Refuse("Cannot Calculate From Vessel Without an Active Vessel.", ChkUseCurrVesPos);
    if (links_.busy) links_.busy(true);
    CalcRoute();
    if (links_.busy) links_.busy(false);
}

void FrmRoute::CalcRoute() {
    const Route* r = store_.At(route_);
    if (!r || !links_.passage) return;
    PassagePlanner& p = *links_.passage;
    PassageInputs in;
    float speed = float(Val(S(TxtSetSpeed->text())));
    units_.FromDisplay(UnitKind::Speed, speed);
    in.speed = speed;
    in.useTides = ChkUseTides->isChecked();
    in.basis = OptCalcBasis[1]->isChecked() ? 1 : 0;
    DateTime start;
    if (ReadShortDate(S(TxtStartDate->text()), start) && ReadShortTime(S(TxtStartTime->text()), start))
        in.start = start.Serial();
    in.now = links_.now ? links_.now() : 0.0;
    in.useVesselPos = ChkUseCurrVesPos->isChecked();
    in.bestDeparture = ChkBestDepTime->isChecked() && ChkBestDepTime->isEnabled();
    in.vesselActive = links_.vessel && links_.vessel(in.vesselPos);
    in.activePoint = links_.activePoint ? links_.activePoint() : 0;
    p.PassageRoute = route_;
    PicPassage->setRowCount(0);
    if (in.bestDeparture) {
        GaugeProgress->setValue(0);
        GaugeProgress->show();
    }
    const PassageRefusal no = p.CalcRoute(*r, in, units_, [this](int row) {
        GaugeProgress->setValue(row);
        GaugeProgress->repaint();
    });
    GaugeProgress->hide();
    if (no) {
        QWidget* focus = no.focus == "ChkUseCurrVesPos" ? static_cast<QWidget*>(ChkUseCurrVesPos) : nullptr;
        Refuse(no.text, focus);
    }
    TxtArrDate->setText(Q(p.TxtArrDate));
    TxtArrTime->setText(Q(p.TxtArrTime));
    TxtTotTime->setText(Q(p.TxtTotTime));
    TxtTidalGain->setText(Q(p.TxtTidalGain));
    TxtTotalDistance->setText(Q(p.TxtTotalDistance));
    ShowPassageResults(p.PassageState());
    if (p.PassageState() == 2 && p.BestRow > 0) {
        PicPassage->selectRow(p.BestRow - 1);
        PicPassage->scrollToItem(PicPassage->item(p.BestRow - 1, 0));
    }
    if (links_.redraw) links_.redraw();
}

void FrmRoute::ShowPassageResults(int16_t state) {
    if (!links_.passage) return;
    const PassageTable t = links_.passage->ShowPassageResults(state, units_, links_.shownCourse);
    if (t.headings.empty()) {
        PicPassage->setRowCount(0);
        return;
    }
    FillRows(PicPassage, t.headings, t.rows);
    PicPassage->clearSelection();
}

bool FrmRoute::eventFilter(QObject* watched, QEvent* event) {
    if (watched == PicPassage->viewport() && event->type() == QEvent::MouseButtonRelease && links_.passage &&
        links_.passage->PassageState() == 2) {
        const auto* m = static_cast<QMouseEvent*>(event);
        const int row = PicPassage->rowAt(int(m->position().y()));
        if (row >= 0) PickDeparture(row + 1);
    }
    return QDialog::eventFilter(watched, event);
}

void FrmRoute::PickDeparture(int row) {
    PassagePlanner& p = *links_.passage;
    if (row < 1 || row > 24) return;
    const DateTime t = DateTime::FromSerial(p.BestDepartureTime[size_t(row)]);
    TxtStartTime->setText(Q(FormatDate(t, "Short Time")));
    TxtStartDate->setText(Q(FormatDate(t, "Short Date")));
    SSTab1->setCurrentWidget(PassageTab);
    ChkBestDepTime->setChecked(false);
    OptCalcBasis[1]->setChecked(true);
    if (links_.busy) links_.busy(true);
    CalcRoute();
    if (links_.busy) links_.busy(false);
}

void FrmRoute::DropPassage() {
    if (!links_.passage) return;
    links_.passage->SetPassageState(0);
    PicPassage->setRowCount(0);
    if (links_.redraw) links_.redraw();
}

int16_t FrmRoute::SelectedPoint() const { return int16_t(SelectedRow(PicRoutePts) + 1); }

void FrmRoute::Store() {
    Route* r = store_.At(route_);
    if (!r) return;
    r->Name = S(TxtName->text());
    r->Description = S(TxtDescription->text());
    r->Display = ChkDisplay->isChecked() ? -1 : 0;
    r->ShowLegText = ChkLegText->isChecked();
    r->Colour = int16_t(ComboColour->currentIndex());
    chart_.Redraw();
}

void FrmRoute::Refill() {
    std::vector<std::vector<std::string>> pts, legs;
    for (const RoutePointRow& p : store_.PointRows(route_, false))
        pts.push_back({p.No, p.Name, p.Display, p.Active, p.Latitude, p.Longitude});
    FillRows(PicRoutePts, {"No.", "Name", "Display", "Active", "Latitude", "Longitude"}, pts);
    for (const RouteLegRow& l : store_.LegRows(route_)) legs.push_back({l.Leg, l.Kind, l.Bearing, l.Range});
    FillRows(PicLegs, {"Leg", "RL/GC", "Bearing", "Range"}, legs);
    const Route* r = store_.At(route_);
    double total = r ? r->TotalDistance() : 0.0;
    LabTotal->setText(Q("Total distance " + units_.ToDisplay(UnitKind::Distance, float(total), "0.000") + " " +
                        units_.UnitText(UnitKind::Distance)));
    EnableButtons();
}

void FrmRoute::EnableButtons() {
    bool chosen = SelectedRow(PicRoutePts) >= 0;
    ComDelete->setEnabled(chosen);
    ComProperties->setEnabled(chosen);
    ComZoom->setEnabled(chart_.CanZoom());
    ComActivate->setText(store_.ActiveRoute == route_ ? "&De-activate" : "&Activate");
}

}  // namespace ombra
