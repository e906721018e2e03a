#include "ui/FrmLog.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "core/Format.h"
#include "core/Val.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "ui/DialogParts.h"

namespace ombra {

namespace {
// Where each column starts, in pixels, and the width of the last.
constexpr int kEntryColumns[] = {0, 60, 140, 220, 280, 340, 440, 530, 600, 700, 790, 890, 970};
constexpr const char* kEntryHeadings[] = {"Time",        "Latitude",   "Longitude",     "Course",   "Speed",
                                          "Next Waypoint", "Range",    "Bearing",       "Log Reading",
                                          "Wind Speed",  "Wind Direction", "Barometer", "Narrative"};
constexpr int kForecastColumns[] = {0, 40, 110, 190, 260, 330};
constexpr const char* kForecastHeadings[] = {"Time", "Sea Area", "Wind Now", "Wind Later", "Weather", "Visibility"};

template <size_t N>
QTableWidget* Grid(QWidget* parent, const char* name, const int (&starts)[N], const char* const (&headings)[N],
                   int lastWidth) {
    auto* g = new QTableWidget(0, int(N), parent);
    g->setObjectName(name);
    QStringList h;
    for (const char* s : headings) h << s;
    g->setHorizontalHeaderLabels(h);
    g->horizontalHeader()->setObjectName(QString(name) + "Header");
    g->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    g->horizontalHeader()->setMinimumSectionSize(16);
    // The columns keep their proportions and grow with the font, so a time
    // "00:00:00" always fits the 60 pixels the log's first column was made for.
    const double scale = std::max(1.0, (g->fontMetrics().horizontalAdvance("00:00:00") + 12) / 60.0);
    for (size_t i = 0; i < N; ++i)
        g->setColumnWidth(int(i), int(std::lround((i + 1 < N ? starts[i + 1] - starts[i] : lastWidth) * scale)));
    g->verticalHeader()->hide();
    g->setWordWrap(false);
    g->verticalHeader()->setDefaultSectionSize(g->fontMetrics().height() + 6);
    g->setSelectionBehavior(QAbstractItemView::SelectRows);
    g->setSelectionMode(QAbstractItemView::SingleSelection);
    g->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    g->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    g->setMinimumHeight(160);
    return g;
}

QLineEdit* Field(QWidget* parent, const char* name) {
    auto* t = new QLineEdit(parent);
    t->setObjectName(name);
    return t;
}

QPushButton* Button(QWidget* parent, const char* name, const char* caption) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
}

std::string* ForecastField(Forecast& f, int column) {
    std::string* fields[] = {&f.Time, &f.SeaArea, &f.WindNow, &f.WindLater, &f.Weather, &f.Visibility};
    return column >= 0 && column < 6 ? fields[column] : nullptr;
}
}  // namespace

FrmLog::FrmLog(QWidget* owner, Plotter& plotter) : QDialog(owner), p_(plotter) {
    setObjectName("FrmLog");
    setSizeGripEnabled(true);

    TxtCurrPort = Field(this, "TxtCurrPort");
    TxtDestPort = Field(this, "TxtDestPort");
    TxtNumCrew = Field(this, "TxtNumCrew");
    TxtEngineHours = Field(this, "TxtEngineHours");
    TxtETD = Field(this, "TxtETD");
    TxtFuel = Field(this, "TxtFuel");
    TxtWater = Field(this, "TxtWater");

    FrameAutoLog = new QGroupBox(this);
    FrameAutoLog->setObjectName("FrameAutoLog");
    auto* autoRow = new QHBoxLayout(FrameAutoLog);
    ChkAutoLog = NamedCheck(this, autoRow, "ChkAutoLog", "AutoLog");
    autoRow->addWidget(new QLabel("AutoLog Interval", FrameAutoLog));
    TxtAutoInterval = Field(FrameAutoLog, "TxtAutoInterval");
    TxtAutoInterval->setMaximumWidth(60);
    autoRow->addWidget(TxtAutoInterval);
    autoRow->addWidget(new QLabel("Mins", FrameAutoLog));
    autoRow->addStretch(1);
    ChkSaveTrack = NamedCheck(this, nullptr, "ChkSaveTrack", "Save track  file to disk");
    connect(ChkAutoLog, &QCheckBox::toggled, this, [this](bool on) { TxtAutoInterval->setEnabled(on); });

    auto* top = new QVBoxLayout(this);
    auto* header = new QHBoxLayout;
    auto* left = new QFormLayout;
    left->addRow("Current Port", TxtCurrPort);
    left->addRow("Destination Port", TxtDestPort);
    left->addRow("No. of crew", TxtNumCrew);
    left->addRow("ETD", TxtETD);
    auto* right = new QFormLayout;
    right->addRow("Engine Hours", TxtEngineHours);
    right->addRow("Fuel on Board L/G", TxtFuel);
    right->addRow("Water On Board L/G", TxtWater);
    header->addLayout(left, 1);
    header->addLayout(right, 1);
    top->addLayout(header);
    auto* switches = new QHBoxLayout;
    switches->addWidget(FrameAutoLog, 1);
    switches->addWidget(ChkSaveTrack);
    top->addLayout(switches);

    auto* tabs = new QTabWidget(this);
    tabs->setObjectName("TabLog");
    // Entries.
    auto* entries = new QWidget(tabs);
    auto* ev = new QVBoxLayout(entries);
    PicLogEntry = Grid(entries, "PicLogEntry", kEntryColumns, kEntryHeadings, 300);
    PicLogEntry->setEditTriggers(QAbstractItemView::NoEditTriggers);
    ev->addWidget(PicLogEntry, 1);
    auto* eb = new QHBoxLayout;
    ComNewLogEntry = Button(entries, "ComNewLogEntry", "&New Entry");
    ComEditLogEntry = Button(entries, "ComEditLogEntry", "&Edit Entry");
    ComDeleteLogEntry = Button(entries, "ComDeleteLogEntry", "&Delete Entry");
    eb->addWidget(ComNewLogEntry);
    eb->addWidget(ComEditLogEntry);
    eb->addWidget(ComDeleteLogEntry);
    eb->addStretch(1);
    ev->addLayout(eb);
    tabs->addTab(entries, "Log Entries");
    // Tides.
    auto* tides = new QWidget(tabs);
    auto* tv = new QHBoxLayout(tides);
    const char* rows[5] = {"Port", "High Water", "Low Water", "High Water", "Low Water"};
    for (int port = 0; port < 2; ++port) {
        auto* frame = new QGroupBox(port == 0 ? "Local Port" : "Constant Port", tides);
        frame->setObjectName(port == 0 ? "FrameLocalPort" : "FrameConstantPort");
        auto* form = new QFormLayout(frame);
        for (int i = 0; i < 5; ++i) {
            QLineEdit*& t = TxtPortTide[size_t(port * 5 + i)];
            t = Field(frame, "TxtPortTide");
            t->setProperty("index", port * 5 + i);
            form->addRow(rows[i], t);
        }
        tv->addWidget(frame);
    }
    tabs->addTab(tides, "Tides");
    // Forecasts.
    auto* forecasts = new QWidget(tabs);
    auto* fv = new QVBoxLayout(forecasts);
    PicForecast = Grid(forecasts, "PicForecast", kForecastColumns, kForecastHeadings, 120);
    // The cell's own editor is laid over the cell that is clicked.
    PicForecast->setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::DoubleClicked |
                                 QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    fv->addWidget(PicForecast, 1);
    auto* fb = new QHBoxLayout;
    ComNewForecast = Button(forecasts, "ComNewForecast", "New &Forecast");
    ComDeleteForecast = Button(forecasts, "ComDeleteForecast", "Delete Fo&recast");
    fb->addWidget(ComNewForecast);
    fb->addWidget(ComDeleteForecast);
    fb->addStretch(1);
    fv->addLayout(fb);
    tabs->addTab(forecasts, "Forecasts");
    top->addWidget(tabs, 1);

    OkCancel b = AddOkCancel(this, top);
    ComOK = b.ok;
    ComCancel = b.cancel;
    connect(ComOK, &QPushButton::clicked, this, [this] { ComOK_Click(); });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);

    Logs& logs = p_.logs();
    connect(ComNewLogEntry, &QPushButton::clicked, this, [this] { p_.AddLogEntry(LogEntryKind::LogWindow); });
    connect(ComEditLogEntry, &QPushButton::clicked, this, [this, &logs] {
        if (logs.EditEntry(SelectedEntry())) RedrawEntries();
    });
    connect(ComDeleteLogEntry, &QPushButton::clicked, this, [this, &logs] {
        logs.DeleteEntry(SelectedEntry());
        RedrawEntries();
    });
    connect(PicLogEntry, &QTableWidget::itemSelectionChanged, this, [this, &logs] {
        if (!filling_) logs.Selected = SelectedEntry();
    });
    connect(PicLogEntry, &QTableWidget::cellDoubleClicked, this, [this, &logs](int row, int) {
        if (logs.EditEntry(row)) RedrawEntries();
    });
    connect(ComNewForecast, &QPushButton::clicked, this, [this, &logs] {
        int row = logs.NewForecast();
        RedrawForecasts();
        if (row >= 0) {
            PicForecast->setCurrentCell(row, 1);
            PicForecast->editItem(PicForecast->item(row, 1));
        }
    });
    connect(ComDeleteForecast, &QPushButton::clicked, this, [this, &logs] {
        logs.DeleteForecast(PicForecast->currentRow());
        RedrawForecasts();
    });
    connect(PicForecast, &QTableWidget::cellChanged, this, [this](int r, int c) { ForecastEdited(r, c); });

    resize(900, 600);
    Load();
}

void FrmLog::Load() {
    const Logs& logs = p_.logs();
    const LogHeader& h = logs.Day.Header;
    setWindowTitle(Q("Log: " + FormatDate(h.LogDate, "Long Date") + " - Day Log"));
    TxtCurrPort->setText(Q(h.CurrentPort));
    TxtDestPort->setText(Q(h.DestinationPort));
    TxtNumCrew->setText(Q(h.NumCrew));
    TxtEngineHours->setText(Q(h.EngineHours));
    TxtETD->setText(Q(h.ETD));
    TxtFuel->setText(Q(h.Fuel));
    TxtWater->setText(Q(h.Water));
    ChkAutoLog->setChecked(h.AutoLog != 0);
    TxtAutoInterval->setText(QString::number(h.AutoInterval));
    TxtAutoInterval->setEnabled(h.AutoLog != 0);
    ChkSaveTrack->setChecked(logs.SaveTrack);
    for (size_t i = 0; i < TxtPortTide.size(); ++i) TxtPortTide[i]->setText(Q(h.PortTide[i]));
    RedrawEntries();
    RedrawForecasts();
}

void FrmLog::RedrawEntries() {
    const Logs& logs = p_.logs();
    filling_ = true;
    PicLogEntry->setRowCount(int(logs.Day.Entries.size()));
    for (size_t r = 0; r < logs.Day.Entries.size(); ++r)
        for (int c = 0; c < LogEntry::kFieldCount; ++c)
            PicLogEntry->setItem(int(r), c, new QTableWidgetItem(Q(logs.Day.Entries[r].Field(c))));
    if (logs.Selected >= 0 && logs.Selected < PicLogEntry->rowCount()) {
        PicLogEntry->selectRow(logs.Selected);
        PicLogEntry->scrollToItem(PicLogEntry->item(logs.Selected, 0));
    }
    filling_ = false;
}

void FrmLog::RedrawForecasts() {
    const Logs& logs = p_.logs();
    filling_ = true;
    PicForecast->setRowCount(int(logs.Day.Forecasts.size()));
    for (size_t r = 0; r < logs.Day.Forecasts.size(); ++r) {
        Forecast f = logs.Day.Forecasts[r];
        for (int c = 0; c < 6; ++c) PicForecast->setItem(int(r), c, new QTableWidgetItem(Q(*ForecastField(f, c))));
    }
    filling_ = false;
}

void FrmLog::ForecastEdited(int row, int column) {
    if (filling_) return;
    Logs& logs = p_.logs();
    if (row < 0 || size_t(row) >= logs.Day.Forecasts.size()) return;
    if (std::string* f = ForecastField(logs.Day.Forecasts[size_t(row)], column))
        *f = S(PicForecast->item(row, column)->text());
}

int FrmLog::SelectedEntry() const {
    const auto rows = PicLogEntry->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void FrmLog::ComOK_Click() {
    Logs& logs = p_.logs();
    LogHeader& h = logs.Day.Header;
    h.CurrentPort = S(TxtCurrPort->text());
    h.DestinationPort = S(TxtDestPort->text());
    h.NumCrew = S(TxtNumCrew->text());
    h.EngineHours = S(TxtEngineHours->text());
    h.ETD = S(TxtETD->text());
    h.Fuel = S(TxtFuel->text());
    h.Water = S(TxtWater->text());
    h.AutoLog = ChkAutoLog->isChecked() ? 1 : 0;
    const double interval = Val(S(TxtAutoInterval->text()));
    h.AutoInterval = interval > 0 && interval < 2147483647.0 ? int32_t(interval) : 0;
    for (size_t i = 0; i < TxtPortTide.size(); ++i) h.PortTide[i] = S(TxtPortTide[i]->text());
    logs.SetSaveTrack(ChkSaveTrack->isChecked());
    logs.SaveLog();
    result_ = "OK";
    accept();
}

}  // namespace ombra
