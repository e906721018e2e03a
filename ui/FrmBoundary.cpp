#include "ui/FrmBoundary.h"

#include <QBrush>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "core/Format.h"
#include "navobjects/Boundaries.h"
#include "navobjects/CommonWP.h"
#include "navobjects/NavChart.h"
#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"
#include "ui/FrmList.h"

namespace ombra {

namespace {
Qt::BrushStyle QtHatch(int16_t pattern) {
    switch (HatchStyle(pattern)) {
        case BrushStyle::Vertical: return Qt::VerPattern;
        case BrushStyle::BDiagonal: return Qt::BDiagPattern;
        case BrushStyle::FDiagonal: return Qt::FDiagPattern;
        case BrushStyle::Cross: return Qt::CrossPattern;
        case BrushStyle::DiagCross: return Qt::DiagCrossPattern;
        default: return Qt::HorPattern;
    }
}

// The fill patterns with a swatch each, showing `pattern` (the first when
// out of range).
QComboBox* PatternCombo(QWidget* parent, int pattern) {
    auto* c = new QComboBox(parent);
    c->setObjectName("ComboPattern");
    for (int i = 0; i < kHatchCount; ++i) {
        QPixmap swatch(16, 12);
        swatch.fill(Qt::white);
        QPainter p(&swatch);
        p.fillRect(swatch.rect(), QBrush(Qt::black, QtHatch(int16_t(i))));
        c->addItem(QIcon(swatch), kHatchNames[i]);
    }
    c->setCurrentIndex(pattern >= 0 && pattern < kHatchCount ? pattern : 0);
    return c;
}
}  // namespace

FrmBoundary::FrmBoundary(QWidget* owner, Boundaries& store, NavChart& chart, int16_t boundary)
    : QDialog(owner), store_(store), chart_(chart), boundary_(boundary) {
    setObjectName("FrmBoundary");
    setWindowTitle(Q("Boundary " + Format(boundary, "000")));
    const Boundary* b = store_.At(boundary_);
    if (b) marksAtOpen_ = b->Marks;
    TxtName = new QLineEdit(b ? Q(b->Name) : QString(), this);
    TxtName->setObjectName("TxtName");
    TxtDescription = new QLineEdit(b ? Q(b->Description) : QString(), this);
    TxtDescription->setObjectName("TxtDescription");
    ChkFilled = NamedCheck(this, nullptr, "ChkFilled", "Filled", b && b->Filled);
    auto* entryExit = new QGroupBox(this);
    entryExit->setObjectName("OptEntryExit");
    OptEntry = new QRadioButton(kBoundaryAlarmModes[0], entryExit);
    OptExit = new QRadioButton(kBoundaryAlarmModes[1], entryExit);
    (b && b->AlarmOnExit == 1 ? OptExit : OptEntry)->setChecked(true);
    auto* eel = new QVBoxLayout(entryExit);
    eel->addWidget(OptEntry);
    eel->addWidget(OptExit);
    ComboColour = ColourCombo(this, "ComboColour", b ? b->Colour : 0);
    ComboPattern = PatternCombo(this, b ? b->Pattern : 0);
    auto* datums = new QGroupBox("Datums", this);
    OptDatumChart = new QRadioButton("Chart", datums);
    OptDatumWGS84 = new QRadioButton("WGS84", datums);
    OptDatumWGS84->setChecked(true);
    auto* dl = new QHBoxLayout(datums);
    dl->addWidget(OptDatumChart);
    dl->addWidget(OptDatumWGS84);
    PicBoundaryMarks = new QTableWidget(this);
    PicBoundaryMarks->setObjectName("PicBoundaryMarks");

    auto* form = new QFormLayout;
    form->addRow("Name", TxtName);
    form->addRow("Description", TxtDescription);
    form->addRow(ChkFilled, entryExit);
    form->addRow("Colour", ComboColour);
    form->addRow("Pattern", ComboPattern);
    form->addRow(datums);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(PicBoundaryMarks, 1);
    OkCancel buttons = AddOkCancel(this, layout);
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    ConnectControls();
    Refill();
    resize(560, 480);
}

void FrmBoundary::ConnectControls() {
    connect(OptDatumChart, &QRadioButton::toggled, this, [this] { Refill(); });
    connect(PicBoundaryMarks, &QTableWidget::cellDoubleClicked, this, [this](int row, int) {
        store_.EditBoundaryMark(boundary_, int16_t(row + 1));
        Refill();
    });
    connect(ComOK, &QPushButton::clicked, this, [this] {
        if (Boundary* x = store_.At(boundary_)) {
            x->Name = S(TxtName->text());
            x->Description = S(TxtDescription->text());
            x->Filled = ChkFilled->isChecked() ? -1 : 0;
            x->AlarmOnExit = OptExit->isChecked() ? 1 : 0;
            x->Colour = int16_t(ComboColour->currentIndex());
            x->Pattern = int16_t(ComboPattern->currentIndex());
        }
        chart_.Redraw();
        accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, &FrmBoundary::reject);
}

void FrmBoundary::reject() {
    if (Boundary* x = store_.At(boundary_); x && x->Used()) {
        x->Marks = marksAtOpen_;
        x->SyncCount();
        chart_.Redraw();
    }
    QDialog::reject();
}

void FrmBoundary::Refill() {
    std::vector<std::vector<std::string>> rows;
    for (const BoundaryMarkRow& m : store_.MarkRows(boundary_, OptDatumChart->isChecked()))
        rows.push_back({m.No, m.Name, m.Display, m.Latitude, m.Longitude});
    FillRows(PicBoundaryMarks, {"No.", "Name", "Display", "Latitude", "Longitude"}, rows);
}

FrmBoundaryDB::FrmBoundaryDB(QWidget* owner, Boundaries& store, NavChart& chart)
    : QDialog(owner), store_(store), chart_(chart) {
    setObjectName("FrmBoundaryDB");
    setWindowTitle("Boundary Alarms");
    PicBoundaries = StoreTable(this, "PicBoundaries", [this] { EnableButtons(); }, [this] { ComProperties->click(); });
    ComDisplay = new QPushButton("&Display", this);
    ComDelete = new QPushButton("&Delete", this);
    ComProperties = new QPushButton("&Properties", this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(PicBoundaries, 1);
    layout->addLayout(ButtonRow(this, ComProperties, {ComDisplay}, ComDelete, &ComClose));
    OnSelectedSlot(this, ComDisplay, [this](int16_t s) { store_.DisplayBoundary(s); });
    OnSelectedSlot(this, ComDelete, [this](int16_t s) { store_.DeleteBoundary(s); });
    connect(ComProperties, &QPushButton::clicked, this, [this] {
        if (!SelectedSlot()) return;
        FrmBoundary f(this, store_, chart_, SelectedSlot());
        f.exec();
        Refill();
    });
    Refill();
    resize(420, 360);
}

int16_t FrmBoundaryDB::SelectedSlot() const { return ombra::SelectedSlot(PicBoundaries, slots_); }

void FrmBoundaryDB::Refill() {
    FillSlotRows(
        PicBoundaries, {"No.", "Name", "Display", "Alarm"}, store_.Rows(),
        [](const BoundaryRow& r) { return std::vector<std::string>{r.No, r.Name, r.Display, r.Alarm}; }, slots_);
    EnableButtons();
}

void FrmBoundaryDB::EnableButtons() {
    int16_t s = SelectedSlot();
    for (QPushButton* b : {ComDisplay, ComDelete, ComProperties}) b->setEnabled(s != 0);
    const Boundary* b = s ? store_.At(s) : nullptr;
    ComDisplay->setText(b && b->Display ? "&Hide" : "&Display");
}

}  // namespace ombra
