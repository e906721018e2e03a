// FrmMain: the one window of the plotter. The chart view fills it, the
// console panel stands at its right, SBarWarnings shows the chart's safety
// warnings above the information line InfoLine, and the menu tree runs
// along the top. It owns MainTimer, the 100 ms heartbeat, which it enables
// when start-up says so and which calls the plotter's tick.
#pragma once
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <map>
#include <string>

class QHBoxLayout;
class QToolBar;

namespace ombra {

class Plotter;

class FrmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit FrmMain(Plotter& plotter);

    void BuildMenus();
    void InitRunMenu(bool ebbline, bool galeline);
    // Makes a menu command live; entries without a command stay disabled.
    void Bind(const std::string& control, std::function<void()> command);
    QAction* Action(const std::string& control) const;
    // The "Nav Toolbar": the commands a navigator wants at one click (man
    // overboard, a log entry). Made on first use; View > Toolbar shows and
    // hides it.
    QToolBar* NavToolbar();

    void SetInfoPanel(int panel, const QString& text);
    QString InfoPanelText(int panel) const;
    // Shows or hides the warnings bar with its text.
    void SetWarnings(const QString& text);

    // The chart view and the console panel, placed by their modules.
    void SetChartWidget(QWidget* chart);
    void SetConsoleWidget(QWidget* console);
    QWidget* ChartWidget() const { return chart_; }

    QTimer MainTimer;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    Plotter& plotter_;
    QWidget* central_ = nullptr;
    QHBoxLayout* layout_ = nullptr;
    QWidget* chart_ = nullptr;
    QWidget* console_ = nullptr;
    QLabel* SBarWarnings = nullptr;
    QLabel* InfoLine[5] = {};
    std::map<std::string, QAction*> actions_;
    QToolBar* navToolbar_ = nullptr;
};

}  // namespace ombra
