#include "ui/NavObjectCommands.h"

#include <QCursor>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

#include "core/Paths.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Val.h"
#include "navobjects/GpsExport.h"
#include "navobjects/NavChart.h"
#include "navobjects/GpxStores.h"
#include "navobjects/NavObjects.h"
#include "platform/api/Dialogs.h"
#include "platform/qt/QtServices.h"
#include "ui/FrmAttachment.h"
#include "ui/FrmBoundary.h"
#include "ui/FrmList.h"
#include "ui/FrmMain.h"
#include "ui/FrmRoute.h"
#include "ui/FrmRoutesDB.h"
#include "ui/FrmWayPoint.h"
#include "ui/FrmWayPointDB.h"

namespace ombra {

NavObjectCommands::NavObjectCommands(FrmMain& main, NavObjects& nav, NavHost& host, Registry& reg,
                                     Dialogs& dialogs, Clock& clock, Events& events, GpsLink* gps)
    : main_(main), nav_(nav), host_(host), reg_(reg), dialogs_(dialogs), clock_(clock), events_(events), gps_(gps) {}

NavObjectCommands::~NavObjectCommands() = default;

int16_t NavObjectCommands::WPMode() const { return int16_t(reg_.GetNumber(Key::WPMode)); }

bool NavObjectCommands::NeedsDatabase(bool open, const char* title, const char* text) {
    if (open) return true;
    dialogs_.MsgBox(text, mb::Exclamation, title);
    return false;
}

void NavObjectCommands::Bind() {
    Waypoints& w = nav_.waypoints;
    Routes& r = nav_.routes;
    Boundaries& b = nav_.boundaries;
    MouseTools& t = nav_.tools;
    main_.Bind("MWayPtsView", [this] { ViewWaypoints(); });
    main_.Bind("MWayPtsNew", [&w] { w.NewWaypointDB(); });
    main_.Bind("MWayPtsOpen", [&w] { w.SelectWaypointDB(); });
    main_.Bind("MWayPtsSave", [&w] { w.SaveWaypointDB(); });
    main_.Bind("MWayPtsClose", [&w] { w.CloseWaypointDB(); });
    main_.Bind("MWayPtsDelete", [&w] { w.DeleteWaypointDB(); });
    main_.Bind("MWayPtsAddMouse", [&t] { t.NewWaypointByMouse(); });
    main_.Bind("MWayPtsAddKeyboard", [&w] { w.AddWaypoint(AddBy::Keyboard); });
    main_.Bind("MWayPtsAddGPS", [&w] { w.AddWaypoint(AddBy::GPS); });
    main_.Bind("MWayPtsExportGPS", [this] {
        if (NeedsDatabase(nav_.waypoints.IsOpen(), "No Waypoint Database In Use",
                          "Please select a waypoint database using the &WayPoint menu"))
            ExportWaypointToGps(0);
    });
    main_.Bind("MWayPtsExport", [&w] { w.ExportWaypointDB(); });
    main_.Bind("MWayPtsImport", [&w] { w.ImportWaypointDB(); });
    main_.Bind("MRoutesView", [this] { ViewRoutes(); });
    main_.Bind("MRoutesNew", [&r] { r.NewRouteDB(); });
    main_.Bind("MRoutesOpen", [&r] { r.SelectRouteDB(); });
    main_.Bind("MRoutesSave", [&r] { r.SaveRouteDB(); });
    main_.Bind("MRoutesClose", [&r] { r.CloseRouteDB(); });
    main_.Bind("MRoutesDelete", [&r] { r.DeleteRouteDB(); });
    main_.Bind("MRoutesExport", [&r] { r.ExportRouteDB(); });
    main_.Bind("MRoutesImport", [&r] { r.ImportRouteDB(); });
    main_.Bind("MRoutesCreate", [&t] { t.CreateRoute(); });
    main_.Bind("MBoundariesView", [this] { ViewBoundaries(); });
    main_.Bind("MBoundariesNew", [&b] { b.NewBoundaryDB(); });
    main_.Bind("MBoundariesOpen", [&b] { b.SelectBoundaryDB(); });
    main_.Bind("MBoundariesSave", [&b] { b.SaveBoundaryDB(); });
    main_.Bind("MBoundariesClose", [&b] { b.CloseBoundaryDB(); });
    main_.Bind("MBoundariesDelete", [&b] { b.DeleteBoundaryDB(); });
    main_.Bind("MBoundariesExport", [&b] { b.ExportBoundaryDB(); });
    main_.Bind("MBoundariesImport", [&b] { b.ImportBoundaryDB(); });
    main_.Bind("MBoundariesCreate", [&t] { t.CreateBoundary(); });
    main_.Bind("MRBL", [&t] { t.StartRBL(); });
    main_.Bind("MDividers", [&t] { t.StartDividers(); });
    main_.Bind("MWayPtsImportGPX", [this] { ImportGpx(); });
    main_.Bind("MRoutesImportGPX", [this] { ImportGpx(); });
    main_.Bind("MWayPtsExportGPX", [this] { ExportWaypointsGpx(); });
    main_.Bind("MRoutesExportGPX", [this] { ExportRoutesGpx(); });
    MenuCaptionsChanged();
}

bool NavObjectCommands::DragAllowed() const { return nav_.tools.Current() == ToolPointer; }

bool NavObjectCommands::ChartClick(ChartPoint screen, int button, bool doubleClick) {
    if (button == 2) {
        if (nav_.tools.Current() != ToolPointer) {
            nav_.tools.End();
            return true;
        }
        Hit hit = nav_.tools.HitTest(screen);
        QMenu menu(&main_);
        std::vector<PopupEntry> entries = nav_.tools.Popup(hit);
        for (const PopupEntry& e : entries) menu.addAction(Q(e.Caption))->setData(Q(e.Command));
        if (ExtendPopup) {
            menu.addSeparator();
            ExtendPopup(menu);
        }
        QAction* chosen = menu.exec(QCursor::pos());
        // Added entries carry no command of the tools: they run their own.
        if (chosen && chosen->data().isValid()) nav_.tools.RunPopup(hit, S(chosen->data().toString()));
        return true;
    }
    return doubleClick ? nav_.tools.DoubleClick(screen) : nav_.tools.Click(screen);
}

void NavObjectCommands::ChartMove(ChartPoint screen) { nav_.tools.Move(screen); }
void NavObjectCommands::ChartRelease(ChartPoint screen) { nav_.tools.Release(screen); }

void NavObjectCommands::ViewWaypoints() {
    if (!NeedsDatabase(nav_.waypoints.IsOpen(), "No Waypoint Database In Use",
                       "Please select a waypoint database using the &WayPoint menu"))
        return;
    ShowListWindow(waypointList_, [this] {
        auto* w = new FrmWayPointDB(&main_, nav_.waypoints, nav_.activation, nav_.ctx.chart);
        w->ExportToGps = [this](int16_t slot) { ExportWaypointToGps(slot); };
        return w;
    });
}

void NavObjectCommands::ViewRoutes() {
    if (!NeedsDatabase(nav_.routes.IsOpen(), "No Route Database In Use",
                       "Please select a route database using the Route menu"))
        return;
    ShowListWindow(routeList_, [this] {
        auto* w = new FrmRoutesDB(&main_, nav_.routes, nav_.activation);
        w->ShowRoute = [this](int16_t r) { ShowRouteProperties(r); };
        return w;
    });
}

void NavObjectCommands::ViewBoundaries() {
    if (!NeedsDatabase(nav_.boundaries.IsOpen(), "No Boundary Database In Use",
                       "Please select a boundary database using the Boundaries menu"))
        return;
    ShowListWindow(boundaryList_, [this] { return new FrmBoundaryDB(&main_, nav_.boundaries, nav_.ctx.chart); });
}

void NavObjectCommands::ImportGpx() {
    std::string file = ChooseFile("Browse", "Select GPX file for import.", "GPX", "*.gpx");
    if (file.empty()) return;
    GpxImportResult r;
    std::string why;
    const std::string& product = nav_.ctx.globals.ProductName;
    if (!ImportGpxFile(file, nav_.ctx.globals.UserDataPath, nav_.ctx.globals.VersionText, r, why)) {
        dialogs_.MsgBox(why, mb::Exclamation, product);
        return;
    }
    std::string text = "GPX file imported:";
    if (!r.WaypointDb.empty()) text += "\n" + std::to_string(r.Waypoints) + " waypoints into \"" + r.WaypointDb + "\"";
    if (!r.RouteDb.empty()) text += "\n" + std::to_string(r.Routes) + " routes into \"" + r.RouteDb + "\"";
    if (!r.TrackFile.empty()) text += "\n" + std::to_string(r.TrackPoints) + " track points into " + r.TrackFile;
    if (r.Skipped) text += "\n" + std::to_string(r.Skipped) + " points without a usable position were skipped";
    if (!r.Warning.empty()) text += "\n" + r.Warning;
    if (r.WaypointDb.empty() && r.RouteDb.empty()) {
        dialogs_.MsgBox(text, mb::Information, product);
        return;
    }
    // The new databases are made; whether they replace the open ones is the
    // navigator's choice, and what is being steered to goes with its database.
    text += "\n\nOpen the imported databases now, in place of the open ones?";
    const bool waypointGoes = !r.WaypointDb.empty() && nav_.waypoints.ActiveIndex;
    const bool routeGoes = !r.RouteDb.empty() && nav_.routes.ActiveRoute;
    if (waypointGoes) text += "\nThe active waypoint will be de-activated.";
    if (routeGoes) text += "\nThe active route will be de-activated.";
    if (dialogs_.MsgBox(text, mb::YesNo | mb::Question, product) != mb::Yes) return;
    auto open = [](NavStore& store, const std::string& name) {
        if (name.empty()) return;
        store.SaveDB();
        for (const DBEntry& e : ReadIndex(store.IndexPath))
            if (e.Name == name) {
                store.ClearAll();
                store.CurrentName = e.Name;
                store.CurrentFile = e.File;
                store.OpenDB();
            }
    };
    open(nav_.waypoints, r.WaypointDb);
    open(nav_.routes, r.RouteDb);
    MenuCaptionsChanged();
    ListsChanged();
    nav_.ctx.chart.Redraw();
}

namespace {
void SaveGpx(NavObjectCommands& host, Dialogs& dialogs, const std::string& product, const GpxData& d,
             const std::string& suggested) {
    std::string file = host.ChooseFile("Save GPX", suggested, "GPX", "save:*.gpx");
    if (file.empty()) return;
    if (file.size() < 4 || LCase(file.substr(file.size() - 4)) != ".gpx") file += ".gpx";
    std::string why;
    if (!SaveFileAtomic(file, WriteGpx(d), &why)) dialogs.MsgBox(NativePath(file) + ": " + why, mb::Exclamation, product);
}
}  // namespace

void NavObjectCommands::ExportWaypointsGpx() {
    if (!NeedsDatabase(nav_.waypoints.IsOpen(), "No Waypoint Database In Use",
                       "Please select a waypoint database using the &WayPoint menu"))
        return;
    GpxData d;
    for (const Waypoint& w : nav_.waypoints.List)
        if (w.Used()) d.Waypoints.push_back(w);
    SaveGpx(*this, dialogs_, nav_.ctx.globals.ProductName, d, nav_.waypoints.CurrentName + ".gpx");
}

void NavObjectCommands::ExportRoutesGpx() {
    if (!NeedsDatabase(nav_.routes.IsOpen(), "No Route Database In Use",
                       "Please select a route database using the Route menu"))
        return;
    GpxData d;
    for (const Route& r : nav_.routes.List)
        if (r.Used()) d.Routes.push_back(r);
    SaveGpx(*this, dialogs_, nav_.ctx.globals.ProductName, d, nav_.routes.CurrentName + ".gpx");
}

void NavObjectCommands::ExportWaypointToGps(int16_t slot) {
    if (!gps_) return;
    GpsExport gps(*gps_, dialogs_, clock_, events_, host_, nav_.ctx.globals.ProductName);
    std::vector<const Waypoint*> points;
    if (slot) points.push_back(nav_.waypoints.At(slot));
    else
        for (const Waypoint& w : nav_.waypoints.List) points.push_back(&w);
    gps.ExportWaypointsToGPS(points, WPMode());
}

void NavObjectCommands::ExportRouteToGps(int16_t route) {
    const Route* r = nav_.routes.At(route);
    if (!gps_ || !r) return;
    GpsExport gps(*gps_, dialogs_, clock_, events_, host_, nav_.ctx.globals.ProductName);
    gps.ExportRouteToGPS(*r, WPMode());
}

int NavObjectCommands::TwoChoice(const std::string& title, const std::string& text, const std::string& first,
                                 const std::string& second) {
    QMessageBox box(QMessageBox::Question, Q(title), Q(text), QMessageBox::NoButton, &main_);
    QPushButton* a = box.addButton(Q(first), QMessageBox::AcceptRole);
    QPushButton* b = box.addButton(Q(second), QMessageBox::AcceptRole);
    box.addButton(QMessageBox::Cancel);
    box.exec();
    if (box.clickedButton() == a) return 1;
    if (box.clickedButton() == b) return 2;
    return 0;
}

int NavObjectCommands::ListPick(const std::string& title, const std::vector<std::string>& items,
                                const std::string& button) {
    FrmList f(&main_, title, items, button);
    return f.Choose();
}

bool NavObjectCommands::WaypointDialog(WaypointDialogRequest& request) {
    FrmWayPoint f(&main_, nav_.symbols, nav_.ctx.units, dialogs_, nav_.ctx.globals.ProductName, request);
    return f.exec() == QDialog::Accepted;
}

std::string NavObjectCommands::ChooseFolder(const std::string& title, const std::string& prompt) {
    QFileDialog d(&main_, Q(title + " - " + prompt));
    d.setFileMode(QFileDialog::Directory);
    d.setOption(QFileDialog::ShowDirsOnly, true);
    if (d.exec() != QDialog::Accepted || d.selectedFiles().isEmpty()) return "";
    return S(d.selectedFiles().first());
}

std::string NavObjectCommands::ChooseFile(const std::string& title, const std::string& prompt,
                                          const std::string& filterName, const std::string& pattern) {
    // A pattern "save:*.gpx" asks for a file to write, `prompt` its name.
    bool save = pattern.rfind("save:", 0) == 0;
    std::string glob = save ? pattern.substr(5) : pattern;
    QFileDialog d(&main_, Q(save ? title : title + " - " + prompt), QString(), Q(filterName + " (" + glob + ")"));
    d.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    d.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (save) d.selectFile(Q(prompt));
    if (d.exec() != QDialog::Accepted || d.selectedFiles().isEmpty()) return "";
    return S(d.selectedFiles().first());
}

void NavObjectCommands::ShowRouteProperties(int16_t route) {
    if (!nav_.routes.At(route)) return;
    FrmRoute f(&main_, nav_.routes, nav_.activation, nav_.ctx.chart, nav_.ctx.units, route);
    f.ExportToGps = [this](int16_t r) { ExportRouteToGps(r); };
    if (PreparePassage) PreparePassage(f);
    f.exec();
    ListsChanged();
}

void NavObjectCommands::ShowBoundaryProperties(int16_t boundary) {
    if (!nav_.boundaries.At(boundary)) return;
    FrmBoundary f(&main_, nav_.boundaries, nav_.ctx.chart, boundary);
    f.exec();
    ListsChanged();
}

bool NavObjectCommands::ShowAttachment(const std::string& path) {
    auto* f = new FrmAttachment(&main_);
    if (!f->Load(path)) {
        delete f;
        return false;
    }
    f->setAttribute(Qt::WA_DeleteOnClose);
    f->show();
    return true;
}

void NavObjectCommands::SetStatus(const std::string& text) { main_.SetInfoPanel(1, Q(text)); }

void NavObjectCommands::MenuCaptionsChanged() {
    if (QAction* a = main_.Action("MWayPtsView")) a->setText(Q(nav_.waypoints.ViewCaption()));
    if (QAction* a = main_.Action("MRoutesView")) a->setText(Q(nav_.routes.ViewCaption()));
    if (QAction* a = main_.Action("MBoundariesView")) a->setText(Q(nav_.boundaries.ViewCaption()));
}

void NavObjectCommands::ListsChanged() {
    if (waypointList_) waypointList_->Refill();
    if (routeList_) routeList_->Refill();
    if (boundaryList_) boundaryList_->Refill();
}

void NavObjectCommands::SetCursorAt(ChartPoint screen) {
    if (QWidget* chart = main_.ChartWidget()) QCursor::setPos(chart->mapToGlobal(QPoint(screen.x, screen.y)));
}

}  // namespace ombra
