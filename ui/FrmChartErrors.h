// FrmChartErrors: the list of chart problems the catalogue found (charts
// it has no entry for, missing catalogue information), kept open beside
// the chart so the navigator can read them while working.
#pragma once
#include <QDialog>
#include <QListWidget>
#include <string>
#include <vector>

namespace ombra {

class FrmChartErrors : public QDialog {
    Q_OBJECT
public:
    explicit FrmChartErrors(QWidget* owner);
    void SetErrors(const std::vector<std::string>& errors);
    QListWidget* LstErrors = nullptr;
};

}  // namespace ombra
