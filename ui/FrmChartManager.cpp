#include "ui/FrmChartManager.h"

#include <QApplication>
#include <QDate>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include "charts/ChartHeader.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "platform/api/Dialogs.h"
#include "platform/qt/QtServices.h"

namespace ombra {

FrmChartManager::FrmChartManager(ChartModule& charts, Dialogs& dialogs, const std::string& productName, QWidget* parent)
    : QDialog(parent), charts_(charts), dialogs_(dialogs), productName_(productName) {
    setWindowTitle("Chart Manager");
    setObjectName("FrmChartManager");
    LstCharts = new QTableWidget(0, 6, this);
    LstCharts->setObjectName("LstCharts");
    LstCharts->setHorizontalHeaderLabels({"Chart", "Title", "Scale", "Plans", "Edition", "Files"});
    LstCharts->setSelectionBehavior(QAbstractItemView::SelectRows);
    LstCharts->setSelectionMode(QAbstractItemView::SingleSelection);
    LstCharts->setEditTriggers(QAbstractItemView::NoEditTriggers);
    LstCharts->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    LstCharts->verticalHeader()->hide();
    ComInstall = new QPushButton("&Install...", this);
    ComRemove = new QPushButton("&Remove", this);
    ComOpen = new QPushButton("&Open", this);
    ComClose = new QPushButton("&Close", this);
    ComQuickCheck = new QPushButton("&Quick Check", this);
    ComQuickCheck->setToolTip("Check the files and issue dates of the chart in view");
    ComValidate = new QPushButton("&Validate", this);
    ComValidate->setToolTip("Validate the file checksums of the selected chart, or of every chart when none is selected");
    PrgInstall = new QProgressBar(this);
    PrgInstall->setRange(0, 100);
    PrgInstall->hide();
    LabStatus = new QLabel(this);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {ComInstall, ComRemove, ComOpen, ComQuickCheck, ComValidate}) buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(ComClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(LstCharts, 1);
    layout->addWidget(PrgInstall);
    layout->addWidget(LabStatus);
    layout->addLayout(buttons);
    resize(720, 420);

    OpenChart = [this](const std::string& n) { charts_.Charts.OpenKeepingView(n); };
    connect(ComClose, &QPushButton::clicked, this, &QDialog::accept);
    connect(ComOpen, &QPushButton::clicked, this, [this] { OpenSelected(); });
    connect(ComRemove, &QPushButton::clicked, this, [this] { RemoveSelected(); });
    connect(ComQuickCheck, &QPushButton::clicked, this, [this] { QuickCheck(); });
    connect(ComValidate, &QPushButton::clicked, this, [this] { Validate(); });
    connect(LstCharts, &QTableWidget::cellDoubleClicked, this, [this] { OpenSelected(); });
    connect(ComInstall, &QPushButton::clicked, this, [this] {
        QStringList files = QFileDialog::getOpenFileNames(this, "Install Charts", QString(), "BSB/KAP charts (*.kap *.KAP)");
        std::vector<std::string> list;
        for (const QString& f : files) list.push_back(S(f));
        if (!list.empty()) InstallFiles(list);
    });
    Refresh();
}

void FrmChartManager::Refresh() {
    auto charts = charts_.Installer.ListCharts(charts_.Root());
    LstCharts->setRowCount(int(charts.size()));
    for (int r = 0; r < int(charts.size()); ++r) {
        const InstalledChart& c = charts[size_t(r)];
        QString cells[] = {Q(c.Number), Q(c.Title), Q("1:" + c.Scale), QString::number(c.PlanCount + 1),
                           Q(EditionDateText(c.EditionDate)), c.FilesPresent ? "Present" : "Missing"};
        for (int k = 0; k < 6; ++k) LstCharts->setItem(r, k, new QTableWidgetItem(cells[k]));
    }
    LabStatus->setText(QString::number(charts.size()) + (charts.size() == 1 ? " chart installed" : " charts installed"));
}

std::vector<std::string> FrmChartManager::InstallFiles(const std::vector<std::string>& files) {
    std::vector<std::string> done;
    std::string date = S(QDate::currentDate().toString("yyyyMMdd"));
    PrgInstall->show();
    ComInstall->setEnabled(false);
    for (size_t i = 0; i < files.size(); ++i) {
        LabStatus->setText(Q("Installing " + files[i]));
        auto progress = [&](double f) {
            PrgInstall->setValue(int((double(i) + f) / double(files.size()) * 100.0));
            QApplication::processEvents();
            return true;
        };
        InstallResult r = charts_.Installer.InstallKap(charts_.Root(), files[i], date, progress);
        if (r.Ok) done.push_back(r.Number);
        else dialogs_.MsgBox(r.Message, mb::Exclamation, productName_);
    }
    PrgInstall->setValue(100);
    PrgInstall->hide();
    ComInstall->setEnabled(true);
    Refresh();
    if (!done.empty()) {
        std::string list;
        for (auto& n : done) list += (list.empty() ? "" : ", ") + n;
        LabStatus->setText(Q("Installed chart" + std::string(done.size() > 1 ? "s " : " ") + list));
    }
    return done;
}

std::string FrmChartManager::SelectedNumber() const {
    int row = LstCharts->currentRow();
    if (row < 0 || !LstCharts->item(row, 0)) return "";
    return S(LstCharts->item(row, 0)->text());
}

bool FrmChartManager::RemoveSelected() {
    std::string n = SelectedNumber();
    if (n.empty()) return false;
    if (dialogs_.MsgBox("Remove chart " + n + " from this system?", mb::YesNo | mb::Question | mb::DefaultButton2,
                        productName_) != mb::Yes)
        return false;
    if (charts_.Charts.ChartIsOpen() && Trim(charts_.State.Header.ChartNumber) == n) charts_.Charts.CloseChart();
    std::string why;
    bool ok = charts_.Installer.RemoveChart(charts_.Root(), n, why);
    if (!ok) dialogs_.MsgBox(why, mb::Exclamation, productName_);
    Refresh();
    return ok;
}

void FrmChartManager::QuickCheck() {
    if (!charts_.Charts.ChartIsOpen()) {
        dialogs_.MsgBox("Please select a Chart using the &Chart menu", mb::OKOnly | mb::Information, "No Chart Selected");
        return;
    }
    charts_.Charts.QuickCheck();
}

void FrmChartManager::Validate() {
    std::string status;
    std::string n = SelectedNumber();
    LabStatus->setText("Validating file checksums.");
    QApplication::processEvents();
    if (!n.empty()) {
        std::string header = WithTrailingSlash(charts_.Root()) + ChartHeaderPath(n);
        charts_.Checks.ValidateChecksums(charts_.Library, header, n, status);
    } else {
        std::vector<std::pair<std::string, std::string>> all;
        for (const InstalledChart& c : charts_.Installer.ListCharts(charts_.Root()))
            all.emplace_back(c.Number, WithTrailingSlash(charts_.Root()) + ChartHeaderPath(c.Number));
        charts_.Checks.ValidateAll(charts_.Library, all, status);
    }
    LabStatus->setText(Q(status));
}

void FrmChartManager::OpenSelected() {
    std::string n = SelectedNumber();
    if (n.empty() || !OpenChart) return;
    OpenChart(n);
}

}  // namespace ombra
