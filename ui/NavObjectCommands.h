// NavObjectCommands: the navigation objects' side of the main window.
//
// It is the window half of NavHost (the list dialog FrmList, FrmWayPoint,
// the choosers, the attachment viewer, FrmRoute and FrmBoundary, the
// status line, the menu captions), which the plotter reaches through the
// shell's NavWindows, and binds the menu commands of the three
// database menus and of "&General" ("&RBL", "&Dividers") to the stores and
// the mouse tools. The chart area hands it its mouse (ChartClick,
// ChartMove); a right click opens the pop-up of the object under the
// cursor.
//
//   NavObjectCommands nav(main, plotter.nav(), plotter.navHost(), reg, dialogs, clock, events, &plotter.gpsLink());
//   nav.Bind();
//   chartArea->OnClick = [&](ChartPoint s, bool, const LatLong&, int b, bool dbl) { return nav.ChartClick(s, b, dbl); };
#pragma once
#include <QPointer>
#include <functional>
#include <string>

#include "navobjects/NavHost.h"

class QMenu;

namespace ombra {

class FrmMain;
class NavObjects;
class Registry;
class Dialogs;
class Clock;
class Events;
class GpsLink;
class FrmWayPointDB;
class FrmRoutesDB;
class FrmRoute;
class FrmBoundaryDB;

class NavObjectCommands : public NavHost {
public:
    NavObjectCommands(FrmMain& main, NavObjects& nav, NavHost& host, Registry& reg, Dialogs& dialogs,
                      Clock& clock, Events& events, GpsLink* gps);
    ~NavObjectCommands() override;

    // The menu commands, and the GPX entries when the menu has them
    // (MWayPtsImportGPX, MWayPtsExportGPX, MRoutesImportGPX, MRoutesExportGPX).
    void Bind();
    // The chart's mouse, in view pixels; button 1 left, 2 right. True when
    // a tool or the pop-up took the click (the chart is then not dragged).
    bool ChartClick(ChartPoint screen, int button, bool doubleClick);
    void ChartMove(ChartPoint screen);
    void ChartRelease(ChartPoint screen);
    bool DragAllowed() const;
    // Entries other modules add at the end of the chart pop-up (the anchor).
    std::function<void(QMenu&)> ExtendPopup;
    // Wires a route window's passage tab to the planner before it shows.
    std::function<void(FrmRoute&)> PreparePassage;

    // The three list windows.
    void ViewWaypoints();
    void ViewRoutes();
    void ViewBoundaries();
    // GPX from and to the menus.
    void ImportGpx();
    void ExportWaypointsGpx();
    void ExportRoutesGpx();
    // GPS transfers.
    void ExportWaypointToGps(int16_t slot);  // 0: every used slot
    void ExportRouteToGps(int16_t route);

    // NavHost, the window side.
    int TwoChoice(const std::string& title, const std::string& text, const std::string& first,
                  const std::string& second) override;
    int ListPick(const std::string& title, const std::vector<std::string>& items, const std::string& button) override;
    bool WaypointDialog(WaypointDialogRequest& request) override;
    std::string ChooseFolder(const std::string& title, const std::string& prompt) override;
    std::string ChooseFile(const std::string& title, const std::string& prompt, const std::string& filterName,
                           const std::string& pattern) override;
    void ShowRouteProperties(int16_t route) override;
    void ShowBoundaryProperties(int16_t boundary) override;
    bool ShowAttachment(const std::string& path) override;
    void SetStatus(const std::string& text) override;
    void MenuCaptionsChanged() override;
    void ListsChanged() override;
    void SetCursorAt(ChartPoint screen) override;

private:
    bool NeedsDatabase(bool open, const char* title, const char* text);
    int16_t WPMode() const;
    FrmMain& main_;
    NavObjects& nav_;
    NavHost& host_;
    Registry& reg_;
    Dialogs& dialogs_;
    Clock& clock_;
    Events& events_;
    GpsLink* gps_;
    QPointer<FrmWayPointDB> waypointList_;
    QPointer<FrmRoutesDB> routeList_;
    QPointer<FrmBoundaryDB> boundaryList_;
};

}  // namespace ombra
