// NavHost: what the navigation objects ask of the program around them.
//
// The stores, the activation and the mouse tools are plain logic. Where
// they need a window (the list dialog, the waypoint dialog, a file
// chooser with a prompt, the attachment viewer), a line of the status bar,
// a refreshed menu caption, or a fact from another module (the vessel,
// the magnetic variation), they ask this interface. The program implements
// it with its Qt windows and the Plotter's modules; tests implement the
// parts they watch. Every call has a harmless default, so a host that
// lacks a window simply does without it.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/Types.h"
#include "navobjects/Waypoint.h"

namespace ombra {

// What FrmWayPoint is opened with, and what it hands back on OK.
struct WaypointDialogRequest {
    std::string Caption;   // "New Waypoint", "Edit Way Point", "New Routepoint", "Boundary Mark 3"
    std::string DbLabel;   // "Database:", "Route:", "Boundary:"
    std::string DbName;    // shown beside the label
    Waypoint Record;       // in: the record shown; out: the record accepted
};

class NavHost {
public:
    virtual ~NavHost() = default;

    // ---- Windows ----
    // A dialog with a text and two buttons: 1 for the first, 2 for the
    // second, 0 when it was closed.
    virtual int TwoChoice(const std::string& /*title*/, const std::string& /*text*/, const std::string& /*first*/,
                          const std::string& /*second*/) {
        return 0;
    }
    // The list form FrmList: the chosen row, or -1 on cancel or with no row
    // chosen. `button` is the caption of its action button.
    virtual int ListPick(const std::string& /*title*/, const std::vector<std::string>& /*items*/,
                         const std::string& /*button*/) {
        return -1;
    }
    // FrmWayPoint, modal; true on OK with request.Record filled.
    virtual bool WaypointDialog(WaypointDialogRequest& /*request*/) { return false; }
    // Choosers with a window title and a prompt; "" when cancelled.
    // `pattern` is "*.way"; `filterName` names it ("BMP").
    virtual std::string ChooseFolder(const std::string& /*title*/, const std::string& /*prompt*/) { return ""; }
    virtual std::string ChooseFile(const std::string& /*title*/, const std::string& /*prompt*/,
                                   const std::string& /*filterName*/, const std::string& /*pattern*/) {
        return "";
    }
    // FrmRoute and FrmBoundary for one record (the pop-up's "&Properties").
    virtual void ShowRouteProperties(int16_t /*route*/) {}
    virtual void ShowBoundaryProperties(int16_t /*boundary*/) {}
    // FrmAttachment; false when the bitmap could not be loaded.
    virtual bool ShowAttachment(const std::string& /*path*/) { return false; }

    // ---- Main window ----
    // The first panel of the status line (messages and tool prompts).
    virtual void SetStatus(const std::string& /*text*/) {}
    // A store's database changed name or opened or closed: the "&View '...'
    // Database" captions and enabled entries are to be refreshed.
    virtual void MenuCaptionsChanged() {}
    // The lists of the open store windows are to be refilled.
    virtual void ListsChanged() {}
    // Places the mouse cursor on a view pixel (the move tools start there).
    virtual void SetCursorAt(ChartPoint /*screen*/) {}

    // ---- Other modules ----
    // Magnetic variation at a position, degrees east positive.
    virtual float Variation(const LatLong& /*pos*/) { return 0.0f; }
    // The compass deviation for a magnetic course (the deviation card).
    virtual double Deviation(double /*magneticCourse*/) { return 0.0; }
    virtual bool VesselActive() { return false; }
    // Asked before the vessel is set to steer to a new destination (a
    // waypoint, a route, a route point chosen by hand); false when the
    // navigator declines. The program asks while the autopilot output is
    // on, since the new leg may turn the vessel hard.
    virtual bool ConfirmActivation() { return true; }
    virtual LatLong VesselPos() { return {}; }
    // The vessel's position mode (0 None, 1 DR, 2 GPS, 3 connecting, 4 GPS
    // lost, 5 FILE DR).
    virtual int16_t VesselMode() { return 0; }
    // Puts the vessel at a position and dead reckons on from there (the
    // vessel tool); false where the mode does not allow it (a GPS mode).
    virtual bool PlaceVessel(const LatLong& /*pos*/) { return false; }
    // The console's active-leg rows are to be refreshed from ActiveLeg.
    virtual void ActiveLegChanged() {}
};

}  // namespace ombra
