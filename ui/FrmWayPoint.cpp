#include "ui/FrmWayPoint.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QPixmap>
#include <QVBoxLayout>

#include "core/Units.h"
#include "navobjects/Symbols.h"
#include "platform/qt/QtServices.h"
#include "ui/DialogParts.h"

namespace ombra {

QPixmap SymbolPixmap(const SymbolStrips& symbols, int icon, bool active) {
    const Image& cell = symbols.Cell(int16_t(icon), active);
    QImage q(reinterpret_cast<const uchar*>(cell.pixels.data()), cell.width, cell.height, cell.width * 4,
             QImage::Format_ARGB32);
    return QPixmap::fromImage(q.copy());
}

FrmWayPoint::FrmWayPoint(QWidget* owner, const SymbolStrips& symbols, const Units& units, Dialogs& dialogs,
                         const std::string& productName, WaypointDialogRequest& request)
    : QDialog(owner), symbols_(symbols), units_(units), dialogs_(dialogs), productName_(productName), request_(request) {
    setObjectName("FrmWayPoint");
    setWindowTitle(Q(request.Caption.empty() ? std::string("Way Point") : request.Caption));
    WaypointFields f = FieldsOf(request.Record, units);

    LabDatabase = new QLabel(Q(request.DbLabel), this);
    LabDbName = new QLabel(Q(request.DbName), this);
    LabDbName->setObjectName("LabDbName");
    TxtName = new QLineEdit(Q(f.Name), this);
    TxtName->setObjectName("TxtName");
    TxtName->setMaxLength(40);
    TxtDescription = new QLineEdit(Q(f.Description), this);
    TxtDescription->setObjectName("TxtDescription");
    TxtDescription->setMaxLength(80);
    LabDatum = new QLabel("Edit positions relative to WGS84 datum.", this);
    TxtLat = new QLineEdit(Q(f.LatText), this);
    TxtLat->setObjectName("TxtLat");
    TxtLon = new QLineEdit(Q(f.LonText), this);
    TxtLon->setObjectName("TxtLon");
    connect(TxtLat, &QLineEdit::textEdited, this, [this] { positionEdited_ = true; });
    connect(TxtLon, &QLineEdit::textEdited, this, [this] { positionEdited_ = true; });

    PicIcon = new QLabel(this);
    PicIcon->setObjectName("PicIcon");
    PicIcon->setFixedSize(20, 20);
    ListIcons = new QListWidget(this);
    ListIcons->setObjectName("ListIcons");
    ListIcons->setIconSize(QSize(16, 16));
    for (int i = 0; i < kSymbolCount; ++i) {
        auto* item = new QListWidgetItem(QIcon(SymbolPixmap(symbols, i)), kSymbolNames[i]);
        item->setSizeHint(QSize(160, 20));  // rows of 20 pixels, the symbol at x = 2
        ListIcons->addItem(item);
    }
    ListIcons->setFixedHeight(20 * 6 + 4);
    ListIcons->setCurrentRow(f.Icon >= 0 && f.Icon < kSymbolCount ? f.Icon : 0);
    ShowIcon(ListIcons->currentRow());
    connect(ListIcons, &QListWidget::currentRowChanged, this, [this](int row) { ShowIcon(row); });

    ComboLabel = new QComboBox(this);
    ComboLabel->setObjectName("ComboLabel");
    for (const char* m : kWaypointLabelModes) ComboLabel->addItem(m);
    ComboLabel->setCurrentIndex(f.LabelMode >= 0 && f.LabelMode < 4 ? f.LabelMode : 0);

    LabRange = new QLabel("Trigger arrival alarm at ", this);
    TxtRange = new QLineEdit(Q(f.RangeText), this);
    TxtRange->setObjectName("TxtRange");
    LabRangeUnits = new QLabel(Q(units.UnitText(UnitKind::Distance)), this);
    ChkShowRange = NamedCheck(this, nullptr, "ChkShowRange", "Show Alarm Range", f.ShowRange);

    LayOut();
}

// The database, name and position above, the symbol picker, the label and
// the arrival range under them, OK and Cancel at the foot.
void FrmWayPoint::LayOut() {
    auto* form = new QFormLayout;
    form->addRow(LabDatabase, LabDbName);
    form->addRow("Name", TxtName);
    form->addRow("Description", TxtDescription);
    form->addRow(LabDatum);
    form->addRow("Latitude", TxtLat);
    form->addRow("Longitude", TxtLon);
    auto* icon = new QHBoxLayout;
    icon->addWidget(PicIcon);
    icon->addWidget(ListIcons, 1);
    form->addRow("Symbol", icon);
    form->addRow("Label", ComboLabel);
    auto* range = new QHBoxLayout;
    range->addWidget(LabRange);
    range->addWidget(TxtRange);
    range->addWidget(LabRangeUnits);
    form->addRow(range);
    form->addRow(ChkShowRange);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    OkCancel buttons = AddOkCancel(this, layout);
    ComOK = buttons.ok;
    ComOK->setDefault(true);
    ComCancel = buttons.cancel;
    connect(ComOK, &QPushButton::clicked, this, [this] { ComOK_Click(); });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void FrmWayPoint::ShowIcon(int icon) { PicIcon->setPixmap(SymbolPixmap(symbols_, icon < 0 ? 0 : icon)); }

void FrmWayPoint::ComOK_Click() {
    WaypointFields f;
    f.Name = S(TxtName->text());
    f.Description = S(TxtDescription->text());
    f.LatText = S(TxtLat->text());
    f.LonText = S(TxtLon->text());
    f.PositionEdited = positionEdited_;
    f.Icon = int16_t(ListIcons->currentRow() < 0 ? 0 : ListIcons->currentRow());
    f.LabelMode = int16_t(ComboLabel->currentIndex());
    f.RangeText = S(TxtRange->text());
    f.ShowRange = ChkShowRange->isChecked();
    Waypoint rec = request_.Record;
    if (!AcceptFields(f, rec, units_, dialogs_, productName_)) return;
    request_.Record = rec;
    accept();
}

}  // namespace ombra
