#include "ui/FrmChartDetails.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"

namespace ombra {

FrmChartDetails::FrmChartDetails(ChartModule& charts, QWidget* parent) : QDialog(parent), charts_(charts) {
    setWindowTitle("Chart Details");
    setObjectName("FrmChartDetails");
    CboPlan = new QComboBox(this);
    auto label = [this] {
        auto* l = new QLabel(this);
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);
        l->setWordWrap(true);
        return l;
    };
    LabNumber = label();
    LabTitle = label();
    LabPlanTitle = label();
    LabCountry = label();
    LabEdition = label();
    LabScale = label();
    LabDatum = label();
    LabDepthUnits = label();
    LabDepthDatum = label();
    LabShiftLat = label();
    LabShiftLong = label();
    LabShiftSource = label();
    TxtWarnings = new QPlainTextEdit(this);
    TxtWarnings->setReadOnly(true);
    TxtWarnings->setMaximumHeight(80);
    auto* form = new QFormLayout;
    form->addRow("Plan", CboPlan);
    form->addRow("Chart number", LabNumber);
    form->addRow("Chart title", LabTitle);
    form->addRow("Plan title", LabPlanTitle);
    form->addRow("Country", LabCountry);
    form->addRow("Edition date", LabEdition);
    form->addRow("Scale", LabScale);
    form->addRow("Horizontal datum", LabDatum);
    form->addRow("Depth units", LabDepthUnits);
    form->addRow("Depth datum", LabDepthDatum);
    form->addRow("Latitude shift", LabShiftLat);
    form->addRow("Longitude shift", LabShiftLong);
    form->addRow("Shift source", LabShiftSource);
    form->addRow("Special Warnings", TxtWarnings);
    auto* box = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(box);

    const ChartHeader& h = charts_.State.Header;
    for (int p = h.FirstPlan; p <= h.PlanCount && charts_.Charts.ChartIsOpen(); ++p)
        CboPlan->addItem(p == 0 ? "Main chart" : "Plan " + QString::number(p), p);
    connect(CboPlan, &QComboBox::currentIndexChanged, this, [this](int i) { ShowPlan(int16_t(CboPlan->itemData(i).toInt())); });
    int16_t current = charts_.View.DisplayedPlan >= 0 ? charts_.View.DisplayedPlan : h.FirstPlan;
    int index = CboPlan->findData(int(current));
    if (index >= 0) CboPlan->setCurrentIndex(index);
    ShowPlan(current);
}

void FrmChartDetails::ShowPlan(int16_t plan) {
    ChartDetails d = charts_.Charts.Details(plan);
    LabNumber->setText(Q(d.ChartNumber));
    LabTitle->setText(Q(d.Title));
    LabPlanTitle->setText(Q(d.PlanTitle));
    LabCountry->setText(Q(d.Country));
    LabEdition->setText(Q(d.EditionDate));
    LabScale->setText(Q(d.Scale));
    LabDatum->setText(Q(d.Datum));
    LabDepthUnits->setText(Q(d.DepthUnits));
    LabDepthDatum->setText(Q(d.DepthDatum));
    LabShiftLat->setText(Q(d.ShiftLat));
    LabShiftLong->setText(Q(d.ShiftLong));
    LabShiftSource->setText(Q(d.ShiftSource));
    TxtWarnings->setPlainText(Q(d.SpecialWarnings));
}

}  // namespace ombra
