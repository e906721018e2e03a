#include "navobjects/CommonWP.h"

#include <cmath>

#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Units.h"
#include "core/Val.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "navobjects/Symbols.h"
#include "platform/api/Dialogs.h"

namespace ombra {

const char* const kColourNames[kColourCount] = {"Black",      "Blue",        "Green",      "Cyan",
                                                "Red",        "Magenta",     "Brown",      "White",
                                                "Grey",       "Light Blue",  "Light Green", "Light Cyan",
                                                "Light Red",  "Light Magenta", "Yellow",   "Bright White"};

Rgb TableColour(int16_t index) {
    static const Rgb table[kColourCount] = {
        MakeRgb(0, 0, 0),       MakeRgb(0, 0, 128),   MakeRgb(0, 128, 0),   MakeRgb(0, 128, 128),
        MakeRgb(128, 0, 0),     MakeRgb(128, 0, 128), MakeRgb(128, 128, 0), MakeRgb(192, 192, 192),
        MakeRgb(128, 128, 128), MakeRgb(0, 0, 255),   MakeRgb(0, 255, 0),   MakeRgb(0, 255, 255),
        MakeRgb(255, 0, 0),     MakeRgb(255, 0, 255), MakeRgb(255, 255, 0), MakeRgb(255, 255, 255)};
    return (index < 0 || index >= kColourCount) ? table[0] : table[index];
}

const char* const kHatchNames[kHatchCount] = {"Horizontal", "Vertical", "Up Diagonal", "Down Diagonal",
                                              "Horizontal Cross", "Diagonal Cross"};

BrushStyle HatchStyle(int16_t pattern) {
    // "Up" rises from left to right (/), "Down" falls (\).
    static const BrushStyle styles[kHatchCount] = {BrushStyle::Horizontal, BrushStyle::Vertical, BrushStyle::BDiagonal,
                                                   BrushStyle::FDiagonal,  BrushStyle::Cross,    BrushStyle::DiagCross};
    return (pattern < 0 || pattern >= kHatchCount) ? styles[0] : styles[pattern];
}

std::vector<std::string> PointLabel(const Waypoint& wp, int16_t labelOverride) {
    int16_t mode = wp.LabelMode;
    if (labelOverride == 2) mode = 0;
    else if (labelOverride == 1 && mode == 0) mode = 1;
    std::vector<std::string> lines;
    if (mode == 1 || mode == 3) lines.push_back(wp.Name);
    if (mode == 2 || mode == 3) {
        std::string lat, lon;
        LatLongText(lat, lon, &wp.Position.Wgs84, 1, 1);
        lines.push_back(lat);
        lines.push_back(lon);
    }
    return lines;
}

void DrawPoint(Canvas& c, NavChart& chart, const SymbolStrips& symbols, const Waypoint& wp, const PointStyle& style) {
    const NavPoint& np = wp.Position;
    size_t panels = std::min(np.InPlan.size(), np.Pixel.size());
    std::vector<std::string> label = PointLabel(wp, chart.LabelOverride());
    for (size_t p = 0; p < panels; ++p) {
        if (!np.InPlan[p]) continue;
        ChartPoint at = chart.ToScreen(np.Pixel[p]);
        if (wp.AlarmRange < 0.0f) {
            double r = std::fabs(double(wp.AlarmRange)) * chart.ScreenPixelsPerNM(int16_t(p));
            if (r >= 0.5 && r < 1e6) {
                int ri = int(std::lround(r));
                c.SetPen({TableColour(12), 1, PenStyle::Solid});
                c.SetBrush({0, BrushStyle::Null});
                c.Ellipse({at.x - ri, at.y - ri, at.x + ri, at.y + ri});
            }
        }
        if (style.icon) c.Blit({at.x - kSymbolCentre, at.y - kSymbolCentre}, symbols.Cell(wp.Icon, style.active));
        if (style.selected) {
            c.SetPen({chart.LabelColour(), 1, PenStyle::Dot});
            c.SetBrush({0, BrushStyle::Null});
            c.Rectangle({at.x - 10, at.y - 10, at.x + 10, at.y + 10});
        }
        if (!label.empty()) {
            c.SetTextColour(chart.LabelColour());
            int y = at.y - kSymbolCentre;
            for (const std::string& l : label) {
                c.Text({at.x + kSymbolSize - kSymbolCentre + 2, y}, l);
                y += c.TextHeight();
            }
        }
    }
}

std::string LegLabel(double course, double distance, int16_t courseMode, double variation, double deviation,
                     const Units& units, const char* rangeFormat, const char* suffix) {
    static const char* const marks[3] = {"°T", "°M", "°C"};
    int16_t m = (courseMode < 0 || courseMode > 2) ? 0 : courseMode;
    return Format(ShownCourse(course, m, variation, deviation), "000") + " " + marks[m] + " " +
           units.ToDisplay(UnitKind::Distance, float(distance), rangeFormat) + " " + units.UnitText(UnitKind::Distance) +
           suffix;
}

WaypointFields FieldsOf(const Waypoint& wp, const Units& units) {
    WaypointFields f;
    f.Name = wp.Name;
    f.Description = wp.Description;
    LatLongText(f.LatText, f.LonText, &wp.Position.Wgs84, 1, 1);
    f.Icon = wp.Icon;
    f.LabelMode = wp.LabelMode;
    f.RangeText = units.ToDisplay(UnitKind::Distance, std::fabs(wp.AlarmRange), "0.000");
    f.ShowRange = wp.AlarmRange < 0.0f;
    return f;
}

bool AcceptFields(const WaypointFields& f, Waypoint& wp, const Units& units, Dialogs& dialogs,
                  const std::string& productName) {
    LatLong pos = wp.Position.Wgs84;
    if (f.PositionEdited) {
        std::string lat = f.LatText, lon = f.LonText;
        if (!ParseLatLong(lat, lon, dialogs, productName)) return false;
        pos = LatLong{Val(lon), Val(lat)};
    }
    wp.Name = f.Name;
    wp.Description = f.Description;
    wp.Position.Wgs84 = pos;
    wp.Icon = f.Icon;
    wp.LabelMode = f.LabelMode;
    std::string range = Replace(Trim(f.RangeText), ",", ".");
    if (IsNumeric(range) && Val(range) >= 0.0) {
        float nm = float(Val(range));
        units.FromDisplay(UnitKind::Distance, nm);
        wp.AlarmRange = f.ShowRange ? -nm : nm;
    }
    return true;
}

std::string PickAttachment(NavHost& host, const std::string& current) {
    std::string chosen = host.ChooseFile("Select attachment file", "Select attachment file", "BMP", "*.bmp");
    return chosen.empty() ? current : chosen;
}

void ShowAttachment(NavHost& host, Dialogs& dialogs, const std::string& productName, const std::string& path) {
    if (path.empty() || !host.ShowAttachment(path))
        dialogs.MsgBox("An error occurred trying to load the attachment", mb::Exclamation, productName);
}

}  // namespace ombra
