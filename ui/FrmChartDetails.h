// FrmChartDetails: "Chart Details" of the chart in view, plan by plan:
// number, titles, country, edition, scale, datums, the WGS84 shift and its
// source, and the chart's special warnings.
#pragma once
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>

#include "charts/ChartModule.h"

namespace ombra {

class FrmChartDetails : public QDialog {
    Q_OBJECT
public:
    FrmChartDetails(ChartModule& charts, QWidget* parent = nullptr);
    void ShowPlan(int16_t plan);

    QComboBox* CboPlan;
    QLabel *LabNumber, *LabTitle, *LabPlanTitle, *LabCountry, *LabEdition, *LabScale, *LabDatum, *LabDepthUnits,
        *LabDepthDatum, *LabShiftLat, *LabShiftLong, *LabShiftSource;
    QPlainTextEdit* TxtWarnings;

private:
    ChartModule& charts_;
};

}  // namespace ombra
