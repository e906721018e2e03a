#include "ui/FrmMain.h"

#include <QToolBar>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QPainter>
#include <QStatusBar>
#include <QVBoxLayout>

#include "plotter/Plotter.h"
#include "platform/qt/QtServices.h"
#include "ui/MenuTree.h"

namespace ombra {

namespace {
// What the chart area shows before a chart is open.
class NoChartView : public QWidget {
public:
    explicit NoChartView(QWidget* parent) : QWidget(parent) { setObjectName("PicNavCanvas"); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        // Sea blue by day; the windows' own dark colours at twilight and night.
        bool dark = palette().color(QPalette::Window).lightness() < 100;
        p.fillRect(rect(), dark ? palette().color(QPalette::Base) : QColor(0x8f, 0xb8, 0xd6));
        p.setPen(dark ? palette().color(QPalette::WindowText) : QColor(0x1c, 0x3a, 0x5a));
        QFont f = font();
        f.setPointSize(14);
        p.setFont(f);
        p.drawText(rect(), Qt::AlignCenter, "No Chart Selected\nPlease select a Chart using the Chart menu");
    }
};

void AddEntries(QMenu* menu, const std::vector<MenuEntry>& entries, std::map<std::string, QAction*>& actions) {
    for (const MenuEntry& e : entries) {
        if (e.separatorBefore) menu->addSeparator();
        if (!e.children.empty()) {
            QMenu* sub = menu->addMenu(QString::fromUtf8(e.caption));
            sub->setObjectName(e.control);
            actions[e.control] = sub->menuAction();
            AddEntries(sub, e.children, actions);
        } else {
            QAction* a = menu->addAction(QString::fromUtf8(e.caption));
            a->setObjectName(e.control);
            a->setEnabled(false);
            actions[e.control] = a;
        }
    }
}
}  // namespace

FrmMain::FrmMain(Plotter& plotter) : plotter_(plotter) {
    setObjectName("FrmMain");
    resize(1280, 800);
    central_ = new QWidget(this);
    auto* v = new QVBoxLayout(central_);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(0);
    auto* row = new QWidget(central_);
    layout_ = new QHBoxLayout(row);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(0);
    chart_ = new NoChartView(row);
    layout_->addWidget(chart_, 1);
    v->addWidget(row, 1);
    SBarWarnings = new QLabel(central_);
    SBarWarnings->setObjectName("SBarWarnings");
    SBarWarnings->setStyleSheet("QLabel { background: #c00000; color: white; font-weight: bold; padding: 2px 6px; }");
    SBarWarnings->hide();
    v->addWidget(SBarWarnings);
    setCentralWidget(central_);

    QStatusBar* bar = statusBar();
    bar->setObjectName("InfoLine");
    const int widths[5] = {360, 260, 250, 160, 60};  // the third: the cursor's position
    for (int i = 0; i < 5; ++i) {
        InfoLine[i] = new QLabel(bar);
        InfoLine[i]->setObjectName(QString("InfoLinePanel%1").arg(i + 1));
        InfoLine[i]->setMinimumWidth(widths[i]);
        InfoLine[i]->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        bar->addWidget(InfoLine[i], i == 0 ? 1 : 0);
    }

    MainTimer.setInterval(100);
    connect(&MainTimer, &QTimer::timeout, this, [this] { plotter_.Tick(); });
}

void FrmMain::BuildMenus() {
    menuBar()->clear();
    actions_.clear();
    for (const MenuEntry& top : MainMenuTree()) {
        QMenu* m = menuBar()->addMenu(QString::fromUtf8(top.caption));
        m->setObjectName(top.control);
        actions_[top.control] = m->menuAction();
        AddEntries(m, top.children, actions_);
    }
    // Tile entries appear only where tiled complete-chart handling is wanted.
    bool tiles = plotter_.registry().GetNumber(Key::TileCompleteChart) != 0.0;
    if (QAction* a = Action("MPrintTileCompleteChart")) a->setVisible(tiles);
    Bind("MExit", [this] { close(); });
}

void FrmMain::InitRunMenu(bool ebbline, bool galeline) {
    if (QAction* a = Action("MRunEbbline")) a->setVisible(ebbline);
    if (QAction* a = Action("MRunGaleline")) a->setVisible(galeline);
}

void FrmMain::Bind(const std::string& control, std::function<void()> command) {
    QAction* a = Action(control);
    if (!a) return;
    a->disconnect(this);
    connect(a, &QAction::triggered, this, [command] { command(); });
    a->setEnabled(true);
}

QAction* FrmMain::Action(const std::string& control) const {
    auto it = actions_.find(control);
    return it == actions_.end() ? nullptr : it->second;
}

QToolBar* FrmMain::NavToolbar() {
    if (!navToolbar_) {
        navToolbar_ = addToolBar("Nav Toolbar");
        navToolbar_->setObjectName("NavToolbar");
        Bind("MNavToolbar", [this] { navToolbar_->setVisible(!navToolbar_->isVisible()); });
    }
    return navToolbar_;
}

void FrmMain::SetInfoPanel(int panel, const QString& text) {
    if (panel >= 1 && panel <= 5) InfoLine[panel - 1]->setText(text);
}

QString FrmMain::InfoPanelText(int panel) const {
    return (panel >= 1 && panel <= 5) ? InfoLine[panel - 1]->text() : QString();
}

void FrmMain::SetWarnings(const QString& text) {
    SBarWarnings->setText(text);
    SBarWarnings->setVisible(!text.isEmpty());
}

void FrmMain::SetChartWidget(QWidget* chart) {
    if (!chart || chart == chart_) return;
    layout_->replaceWidget(chart_, chart);
    chart_->deleteLater();
    chart_ = chart;
    layout_->setStretchFactor(chart_, 1);
}

void FrmMain::SetConsoleWidget(QWidget* console) {
    if (console_) {
        layout_->removeWidget(console_);
        console_->deleteLater();
    }
    console_ = console;
    if (console_) layout_->addWidget(console_, 0);
}

void FrmMain::closeEvent(QCloseEvent* event) {
    int state = isMaximized() ? 2 : isMinimized() ? 1 : 0;
    QRect g = geometry();
    plotter_.Close(state, g.x(), g.y(), g.width(), g.height());
    event->accept();
}

}  // namespace ombra
