// FrmChartManager: "Chart Manager", the charts on this system.
//
// The list shows every chart of the catalogue (number, title, scale, plans,
// edition, and whether its files are present). "Install..." takes one or
// more BSB/KAP files and installs each, with a progress bar; a file that
// cannot be installed says why and changes nothing. "Remove" takes the
// chosen chart out of the catalogue and deletes its files, after asking.
// "Open" opens the chosen chart (also a double click).
#pragma once
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <functional>
#include <string>

#include "charts/ChartModule.h"

namespace ombra {

class Dialogs;

class FrmChartManager : public QDialog {
    Q_OBJECT
public:
    FrmChartManager(ChartModule& charts, Dialogs& dialogs, const std::string& productName, QWidget* parent = nullptr);

    void Refresh();
    // Installs the files; the numbers installed, in order.
    std::vector<std::string> InstallFiles(const std::vector<std::string>& files);
    bool RemoveSelected();
    void OpenSelected();
    // The quick check of the chart in view ("No Chart Selected" when none).
    void QuickCheck();
    // The checksums of the selected chart, or of every installed one.
    void Validate();
    std::string SelectedNumber() const;

    // Opens a chart; by default the chart module's NewChart.
    std::function<void(const std::string&)> OpenChart;

    QTableWidget* LstCharts;
    QPushButton *ComInstall, *ComRemove, *ComOpen, *ComClose;
    QPushButton* ComQuickCheck = nullptr;
    QPushButton* ComValidate = nullptr;
    QProgressBar* PrgInstall;
    QLabel* LabStatus;

private:
    ChartModule& charts_;
    Dialogs& dialogs_;
    const std::string& productName_;
};

}  // namespace ombra
