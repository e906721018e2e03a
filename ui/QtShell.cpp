#include "ui/QtShell.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>

#include "plotter/Plotter.h"
#include "platform/qt/QtServices.h"
#include "ui/FrmDeviation.h"
#include "ui/FrmDisclaimer.h"
#include "ui/FrmMain.h"
#include "ui/FrmOptions.h"
#include "ui/InstrumentCommands.h"
#include "ui/ChartCommands.h"
#include "ui/ChartArea.h"
#include "ui/NavObjectCommands.h"
#include "ui/RoutePassage.h"
#include "ui/AlarmCommands.h"
#include "ui/AisCommands.h"
#include "ui/DdeCommands.h"
#include "ui/LogCommands.h"
#include "ui/TideCommands.h"
#include "ui/TargetCommands.h"
#include "ui/WindowPalette.h"

namespace ombra {

QtShell::QtShell(QtDialogs& dialogs, bool unattended) : dialogs_(dialogs), unattended_(unattended) {}

QtShell::~QtShell() {
    // The commands hold the window; they go first.
    tides_.reset();
    ais_.reset();
    targets_.reset();
    dde_.reset();
    alarms_.reset();
    logs_.reset();
    nav_.reset();
    instruments_.reset();
    charts_.reset();
}

bool QtShell::ShowSplash() {
    if (unattended_) return false;
    splash_ = std::make_unique<FrmSplash>(Q(plotter_->globals().ProductName), Q(plotter_->globals().VersionText));
    if (QScreen* s = QGuiApplication::primaryScreen()) splash_->move(s->geometry().center() - splash_->rect().center());
    splash_->show();
    splash_->repaint();
    QCoreApplication::processEvents();
    return true;
}

void QtShell::CloseSplash() {
    if (splash_) splash_->hide();
    splash_.reset();
}

void QtShell::CreateMainWindow(const std::string& caption) {
    tides_.reset();
    ais_.reset();
    targets_.reset();
    dde_.reset();
    alarms_.reset();
    logs_.reset();
    nav_.reset();
    instruments_.reset();
    charts_.reset();
    main_ = std::make_unique<FrmMain>(*plotter_);
    main_->setWindowTitle(Q(caption));
    charts_ = std::make_unique<ChartCommands>(*main_, *plotter_);
    instruments_ = std::make_unique<InstrumentCommands>(*main_, *plotter_);
    nav_ = std::make_unique<NavObjectCommands>(*main_, plotter_->nav(), plotter_->navHost(), plotter_->registry(),
                                               plotter_->services().dialogs, plotter_->services().clock,
                                               plotter_->services().events, &plotter_->gpsLink());
    alarms_ = std::make_unique<AlarmCommands>(*main_, *plotter_);
    nav_->PreparePassage = [this](FrmRoute& f) { AttachPlotterPassage(f, *plotter_); };
    ais_ = std::make_unique<AisCommands>(*main_, *plotter_);
    dde_ = std::make_unique<DdeCommands>(*main_, *plotter_);
    logs_ = std::make_unique<LogCommands>(*main_, *plotter_);
    tides_ = std::make_unique<TideCommands>(*main_, *plotter_);
    nav_->ExtendPopup = [this](QMenu& popup) {
        alarms_->AddAnchorEntries(popup);
        tides_->AddPopupEntries(popup);
        ais_->AddPopupEntries(popup, lastClick_);
        // The link's targets under the click that opened the pop-up.
        if (ChartArea* area = charts_->Area()) {
            const QPoint at = area->mapFromGlobal(QCursor::pos());
            dde_->AddTargetEntries(popup, {at.x(), at.y()});
        }
    };
    targets_ = std::make_unique<TargetCommands>(*main_, *plotter_);
    // The chart's mouse goes to the tools first; the cursor read-out follows it too.
    if (ChartArea* area = charts_->Area()) {
        auto readout = area->OnMouseMove;
        area->OnMouseMove = [this, readout](ChartPoint s, bool onPlan, const LatLong& pos) {
            if (readout) readout(s, onPlan, pos);
            nav_->ChartMove(s);
            alarms_->ChartMove(onPlan, pos);
        };
        area->OnClick = [this](ChartPoint s, bool onPlan, const LatLong& pos, int button, bool dbl) {
            if (button == 2) tides_->NoteClick(onPlan, pos);
            lastClick_ = s;
            if (alarms_->ChartClick(onPlan, pos, button)) return true;
            return nav_->ChartClick(s, button, dbl);
        };
        area->DragAllowed = [this] { return nav_->DragAllowed(); };
        area->OnRelease = [this](ChartPoint s) { nav_->ChartRelease(s); };
    }
    dialogs_.SetParent(main_.get());
}

void QtShell::ApplyWindowState(int state) { windowState_ = state; }

void QtShell::ApplyWindowRect(double left, double top, double width, double height) {
    if (!main_ || width < 100 || height < 100) return;
    main_->setGeometry(int(left), int(top), int(width), int(height));
    hasRect_ = true;
}

void QtShell::BuildMenus() {
    if (!main_) return;
    main_->BuildMenus();
    main_->Bind("MOptions", [this] { RunOptions(); });
    if (instruments_) instruments_->Bind();
    if (charts_) charts_->Bind();
    if (nav_) nav_->Bind();
    if (alarms_) alarms_->Bind();
    if (ais_) ais_->Bind();
    if (logs_) logs_->Bind();
    if (tides_) tides_->Bind();
    if (targets_) targets_->Bind();
    if (dde_) dde_->Bind();
    main_->Bind("MDeviation", [this] {
        FrmDeviation card(main_.get(), plotter_->deviation());
        card.exec();
    });
}

void QtShell::InitRunMenu(bool ebbline, bool galeline) {
    if (main_) main_->InitRunMenu(ebbline, galeline);
}

void QtShell::LoadCommsForms() {}

void QtShell::ShowMainWindow() {
    if (!main_) return;
    if (unattended_) {
        // An unattended run shows a fixed, known window for its picture.
        main_->resize(1280, 800);
        main_->showNormal();
        return;
    }
    if (windowState_ == 2) main_->showMaximized();
    else if (windowState_ == 1) main_->showMinimized();
    else main_->showNormal();
}

int QtShell::DisplayColours() {
    QScreen* s = QGuiApplication::primaryScreen();
    int depth = s ? s->depth() : 32;
    return depth > 8 ? -1 : (1 << depth);
}

void QtShell::ShowColourWarning() {
    if (unattended_) return;
    FrmWarning w(main_.get(), Q(plotter_->globals().ProductName));
    w.exec();
}

std::string QtShell::ShowDisclaimer(const std::string& title, const std::string& text) {
    if (unattended_) return "Accept";
    FrmDisclaimer d(main_.get(), Q(title), Q(text));
    d.exec();
    return S(d.Reply());
}

void QtShell::EnableMainTimer() {
    if (main_) main_->MainTimer.start();
}

void QtShell::EndProcess() {
    ended_ = true;
    if (main_) main_->MainTimer.stop();
    QCoreApplication::quit();
}

void QtShell::SetInfoPanel(int panel, const std::string& text) {
    if (main_) main_->SetInfoPanel(panel, Q(text));
}

void QtShell::RunOptions() {
    plotter_->EndCurrentTool();
    OptionsValues v = LoadOptions(plotter_->registry(), plotter_->units());
    FrmOptions dlg(main_.get(), v);
    dlg.exec();
    if (dlg.Result() != "Cancel") plotter_->ApplyOptions(dlg.Values());
}

}  // namespace ombra

namespace ombra {

void QtShell::ShowCommDialog(int which) {
    if (unattended_) return;
    if (which == int(CommDialog::AIS) && ais_) ais_->Settings();
    else if (which == int(CommDialog::ARPA) && targets_) targets_->ArpaSettings();
    else if (instruments_) instruments_->ShowCommDialog(which);
}
void QtShell::ShowLostGPS(bool up) {
    if (instruments_ && !unattended_) instruments_->ShowLostGPS(up);
}
void QtShell::RefreshSatInfo() {
    if (instruments_) instruments_->RefreshSatInfo();
}
void QtShell::ConsoleChanged() {
    if (instruments_) instruments_->ConsoleChanged();
    if (targets_) targets_->ConsoleChanged();
}
void QtShell::SetGPSMenuState(bool on) {
    if (instruments_) instruments_->SetGPSMenuState(on);
}
void QtShell::ChartRedrawRequested() {
    if (charts_ && charts_->Area()) charts_->Area()->RequestRedraw();
}
void QtShell::ChartPainted() {
    if (charts_ && charts_->Area()) charts_->Area()->update();
}
void QtShell::ChartWarningsChanged() {
    if (charts_) charts_->WarningsChanged();
}
void QtShell::ChartStatusChanged() {
    if (charts_) charts_->StatusChanged();
}
void QtShell::ChartErrorsChanged() {
    if (charts_) charts_->ChartErrorsChanged();
}
NavHost* QtShell::NavWindows() { return nav_.get(); }
std::string QtShell::ShowAlarm(AlarmForm form, const std::string& caption, const std::string& text, bool beep) {
    if (alarms_) alarms_->Show(form, caption, text, beep);
    return "";
}
void QtShell::HideAlarm(AlarmForm form) {
    if (alarms_) alarms_->Hide(form);
}
void QtShell::PaletteChanged(int mode) { ApplyWindowPalette(mode); }

void QtShell::SetBusyCursor(bool busy) {
    if (busy == busyCursor_) return;
    busyCursor_ = busy;
    if (busy) QApplication::setOverrideCursor(Qt::WaitCursor);
    else QApplication::restoreOverrideCursor();
}

}  // namespace ombra

namespace ombra {

void QtShell::LogEntryAdded(LogEntryKind, const LogEntry&) {
    if (logs_) logs_->EntryAdded();
}
bool QtShell::ShowLogEntry(LogEntry& entry, const DateTime& when) {
    return logs_ && logs_->ShowLogEntry(entry, when);
}
void QtShell::LogChanged() {
    if (logs_) logs_->LogChanged();
}

}  // namespace ombra
