#include "ui/MenuTree.h"

namespace ombra {

namespace {
// The six entries every database menu shares.
std::vector<MenuEntry> DatabaseEntries(const char* view, const char* nw, const char* open, const char* save,
                                       const char* close, const char* del) {
    return {{view, "&View Current Database", {}}, {nw, "&New Database", {}},     {open, "&Open Database", {}},
            {save, "&Save Database", {}},         {close, "&Close Database", {}}, {del, "&Delete Database", {}}};
}

std::vector<MenuEntry> Build() {
    std::vector<MenuEntry> tree;
    tree.push_back({"MChart", "&Chart",
                    {{"MChartManager", "Chart &Manager", {}},
                     {"MChart_Print", "&Print",
                      {{"MPrintSetup", "&Setup Printer", {}},
                       {"MPrintLog", "&Log", {}},
                       {"MPrintWaypoint", "&Waypoint", {}},
                       {"MPrintRoutesFromTo", "&Routes (From/To)", {}},
                       {"MPrintRoutesDescriptions", "Routes (&Descriptions)", {}},
                       {"MPrintVisibleChart", "&Visible Chart", {}},
                       {"MPrintCompleteChart", "&Complete Chart", {}},
                       {"MPrintTileCompleteChart", "&Tile Complete Chart", {}},
                       {"MPrintSaveBitmap", "Save Chart as &Bitmap", {}}}},
                     {"MExit", "E&xit", {}, true}}});
    tree.push_back({"MVessel", "Ve&ssel",
                    {{"MVesselProperties", "Vessel &Properties", {}},
                     {"MDeviation", "Compass &Deviation", {}},
                     {"MCentreVessel", "&Centre on Vessel", {}},
                     {"MPlaceVessel", "P&lace Vessel", {}},
                     {"MCentreArpaTarget", "Centre on A&RPA Target...", {}},
                     {"MCentreTrackedTarget", "Centre on &Tracked Target...", {}},
                     {"MAutoScroll", "&Auto-Scroll", {}},
                     {"MCourseToSteer", "Course to &Steer", {}},
                     {"MGPS", "&GPS ",
                      {{"MGPSOn", "GPS Mode &On", {}},
                       {"MGPSOff", "GPS Mode O&ff", {}},
                       {"MGPSSettings", "&GPS Settings", {}, true},
                       {"MGyroSettings", "G&yro Settings", {}},
                       {"MAISSettings", "&AIS Settings", {}},
                       {"MAISTargets", "AIS &Targets", {}},
                       {"MAISCentre", "Centre on AIS Tar&get...", {}},
                       {"MARPASettings", "A&RPA Settings", {}},
                       {"MAutopilotSettings", "Auto&pilot Settings", {}},
                       {"MSatInfo", "Satellite &Info", {}, true}}},
                     {"mnuDDE", "&DDE",
                      {{"mnuDDEOnline", "&Online", {}},
                       {"mnuDDEFind", "Find Target...", {}},
                       {"mnuDDEOptions", "Options...", {}}}},
                     {"MManOverboard", "Man &Overboard", {}, true}}});
    tree.push_back({"MView", "&View",
                    {{"MChartDetails", "Chart &Details", {}},
                     {"MHiRes", "&Hi Res Chart", {}},
                     {"MLoRes", "&Lo Res Chart", {}},
                     {"MZoomInChart", "Larger Scale Chart (Zoom &In)", {}},
                     {"MZoomOutChart", "Smaller Scale Chart (Zoom O&ut)", {}},
                     {"MNotes", "&Notes", {}},
                     {"MPlans", "&Plans", {}},
                     {"MPalette", "Pa&lette",
                      {{"MPaletteDay", "&Day", {}}, {"MPaletteTwilight", "&Twilight", {}}, {"MPaletteNight", "&Night", {}}}},
                     {"MToolbar", "&Toolbar", {{"MViewToolbar", "&View Toolbar", {}}, {"MNavToolbar", "&Nav Toolbar", {}}}},
                     {"MConsole", "&Console", {}},
                     {"MLabels", "&Labels",
                      {{"MLabelsDefault", "&Default", {}}, {"MLabelsOn", "&Force On", {}}, {"MLabelsOff", "Force &Off", {}}}},
                     {"MRtIcons", "Route &Icons", {{"MRtIconsDefault", "&Default", {}}, {"MRtIconsOff", "Force &Off", {}}}}}});
    tree.push_back({"MGeneral", "&General",
                    {{"MOptions", "Program &Options", {}},
                     {"MConsoleOptions", "&Console Options", {}},
                     {"MRBL", "&RBL", {}},
                     {"MDividers", "&Dividers", {}}}});
    tree.push_back({"MRun", "&Run", {{"MRunEbbline", "&Ebbline", {}}, {"MRunGaleline", "&Galeline", {}}}});

    auto wp = DatabaseEntries("MWayPtsView", "MWayPtsNew", "MWayPtsOpen", "MWayPtsSave", "MWayPtsClose", "MWayPtsDelete");
    wp.push_back({"MWayPtsCentre", "Centre &On Waypoint...", {}, true});
    wp.push_back({"MWayPtsAdd", "&Add Way Point",
                  {{"MWayPtsAddMouse", "By &Mouse", {}}, {"MWayPtsAddKeyboard", "By &Keyboard", {}}, {"MWayPtsAddGPS", "By &GPS", {}}},
                  true});
    wp.push_back({"MWayPtsExportGPS", "Export Database to &GPS", {}, true});
    wp.push_back({"MWayPtsExport", "&Export Database to Disk", {}});
    wp.push_back({"MWayPtsImport", "&Import Database from Disk", {}});
    wp.push_back({"MWayPtsImportGPX", "Import GP&X File...", {}, true});
    wp.push_back({"MWayPtsExportGPX", "Export to GPX &File...", {}});
    tree.push_back({"MWayPts", "&WayPoints", wp});

    auto rt = DatabaseEntries("MRoutesView", "MRoutesNew", "MRoutesOpen", "MRoutesSave", "MRoutesClose", "MRoutesDelete");
    rt.push_back({"MRoutesCentre", "Centre &On Route...", {}, true});
    rt.push_back({"MRoutesExport", "&Export Database to Disk", {}, true});
    rt.push_back({"MRoutesImport", "&Import Database from Disk", {}});
    rt.push_back({"MRoutesImportGPX", "Import GP&X File...", {}, true});
    rt.push_back({"MRoutesExportGPX", "Export to GPX &File...", {}});
    rt.push_back({"MRoutesCreate", "Create New &Route", {}, true});
    tree.push_back({"MRoutes", "&Routes", rt});

    auto bd = DatabaseEntries("MBoundariesView", "MBoundariesNew", "MBoundariesOpen", "MBoundariesSave",
                              "MBoundariesClose", "MBoundariesDelete");
    bd.push_back({"MBoundariesCentre", "Centre &On Boundary...", {}, true});
    bd.push_back({"MBoundariesExport", "&Export Database to Disk", {}, true});
    bd.push_back({"MBoundariesImport", "&Import Database from Disk", {}});
    bd.push_back({"MBoundariesCreate", "Create New &Boundary", {}, true});
    tree.push_back({"MBoundaries", "&Boundaries", bd});

    tree.push_back({"MLogs", "&Logs",
                    {{"MLogsView", "&View Current Log", {}},
                     {"MLogsNew", "&New Log", {}},
                     {"MLogsOpen", "&Open Log", {}},
                     {"MLogsEntry", "New Log &Entry", {}, true}}});
    tree.push_back({"MTides", "&Tides",
                    {{"MTidesOptions", "&Options", {}}, {"MTidesInstall", "&Install Tidal Data", {}}, {"MTidesView", "&View Tides", {}}}});
    tree.push_back({"MTools", "Tools",
                    {{"MCoast", "&Coast Data", {{"MCoastDisplay", "&Display", {}}, {"MCoastSetup", "&Setup...", {}}}},
                     {"mnuSeafishSetup", "Sea&fish",
                      {{"mnuSeafishDir", "&Select Directory", {}},
                       {"mnuSeafishZoom", "&Zoom to File", {}},
                       {"mnuSeafishDisplay", "&Display", {}},
                       {"mnuSeafishBold", "&Bold Lines", {}}}},
                     {"mnuGPSYSetup", "&GPSY Demonstration",
                      {{"mnuGPSYDir", "&Select Directory", {}},
                       {"mnuGPSYZoom", "&Zoom to File", {}},
                       {"mnuGPSYDisplay", "&Display", {}},
                       {"mnuGPSYBold", "&Bold Lines", {}}}}}});
    tree.push_back({"MHelp", "&Help",
                    {{"MHelpContents", "&Contents", {}},
                     {"MHelpSearch", "&Search", {}},
                     {"MHelpUsing", "&Help using help", {}},
                     {"MHelpAbout", "&About", {}, true}}});
    return tree;
}
}  // namespace

const std::vector<MenuEntry>& MainMenuTree() {
    static const std::vector<MenuEntry> tree = Build();
    return tree;
}

}  // namespace ombra
