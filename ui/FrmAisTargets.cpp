#include "ui/FrmAisTargets.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <cstdio>

#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"

namespace ombra {

namespace {
QString Number(double v, int places, const char* unit) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.*f%s", places, v, unit);
    return QString::fromLatin1(buf);
}
}  // namespace

FrmAisTargets::FrmAisTargets(QWidget* owner, Plotter& plotter) : QDialog(owner), p_(plotter) {
    setObjectName("FrmAisTargets");
    setWindowTitle("AIS Targets");
    setModal(false);
    auto* top = new QVBoxLayout(this);
    LstTargets = new QTableWidget(this);
    LstTargets->setObjectName("LstTargets");
    LstTargets->setColumnCount(Columns);
    LstTargets->setHorizontalHeaderLabels({"Name", "MMSI", "Call Sign", "Type", "Status", "Size", "Destination", "ETA",
                                           "Range", "CPA", "TCPA"});
    LstTargets->setSelectionBehavior(QAbstractItemView::SelectRows);
    LstTargets->setSelectionMode(QAbstractItemView::SingleSelection);
    LstTargets->setEditTriggers(QAbstractItemView::NoEditTriggers);
    LstTargets->verticalHeader()->hide();
    LstTargets->horizontalHeader()->setSectionsClickable(true);
    top->addWidget(LstTargets);
    auto* row = new QHBoxLayout;
    ComCentre = new QPushButton("&Centre", this);
    ComCentre->setObjectName("ComCentre");
    ComClose = new QPushButton("Close", this);
    ComClose->setObjectName("ComClose");
    row->addWidget(ComCentre);
    row->addStretch(1);
    row->addWidget(ComClose);
    top->addLayout(row);
    connect(LstTargets->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int c) { SortBy(c); });
    connect(LstTargets, &QTableWidget::cellDoubleClicked, this, [this](int, int) { CentreOnSelected(); });
    connect(ComCentre, &QPushButton::clicked, this, [this] { CentreOnSelected(); });
    connect(ComClose, &QPushButton::clicked, this, [this] { hide(); });
    connect(&timer_, &QTimer::timeout, this, [this] {
        if (isVisible()) Refresh();
    });
    timer_.start(1000);
    resize(980, 360);
    Refresh();
}

void FrmAisTargets::SortBy(int column) {
    switch (column) {
        case Name: sort_ = AisSort::Name; break;
        case Range: sort_ = AisSort::Range; break;
        case CPA: sort_ = AisSort::Cpa; break;
        case TCPA: sort_ = AisSort::Tcpa; break;
        default: sort_ = AisSort::Slot; break;
    }
    Refresh();
}

void FrmAisTargets::Refresh() {
    int16_t selected = -1;
    int current = LstTargets->currentRow();
    if (current >= 0 && size_t(current) < slots_.size()) selected = slots_[size_t(current)];
    std::vector<AisRow> rows = p_.aisTargets().Rows(sort_);
    slots_.clear();
    LstTargets->setRowCount(int(rows.size()));
    for (size_t i = 0; i < rows.size(); ++i) {
        const AisRow& r = rows[i];
        slots_.push_back(r.Index);
        const Cpa& a = r.Approach;
        QString size = r.Length.empty() && r.Width.empty() ? QString() : Q(r.Length + " x " + r.Width);
        QString texts[Columns] = {Q(r.Name),
                                  Q(r.MMSI),
                                  Q(r.CallSign),
                                  Q(r.Type),
                                  Q(r.Status),
                                  size,
                                  Q(r.Destination),
                                  Q(r.ETA),
                                  a.Known ? Number(a.Range, 2, " NM") : QString("N/A"),
                                  a.Known ? Number(a.Distance, 2, " NM") : QString("N/A"),
                                  !a.Known ? QString("N/A") : a.Closing() ? Number(a.Minutes, 1, " min") : QString("Opening")};
        for (int c = 0; c < Columns; ++c) {
            auto* item = LstTargets->item(int(i), c);
            if (!item) {
                item = new QTableWidgetItem;
                LstTargets->setItem(int(i), c, item);
            }
            item->setText(texts[c]);
        }
        if (r.Index == selected) LstTargets->selectRow(int(i));
    }
}

void FrmAisTargets::CentreOnSelected() {
    int row = LstTargets->currentRow();
    if (row < 0 || size_t(row) >= slots_.size()) return;
    p_.CentreOnAisTarget(slots_[size_t(row)]);
}

}  // namespace ombra
