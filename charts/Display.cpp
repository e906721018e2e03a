#include "charts/Display.h"

#include <algorithm>
#include <cmath>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Registry.h"
#include "core/Tables.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {
const char* const kWarning1 = "WGS84 positions cannot be accurately related to this chart";
const char* const kWarning2 = "Chart image is zoomed out: UNSAFE FOR NAVIGATION";
const char* const kWarning5 = " This chart is not up to date: UNSAFE FOR NAVIGATION.";
}  // namespace

Display::Display(ChartLibrary& library, Dialogs& dialogs, ErrorReporter& errors, Registry& registry,
                 const std::string& productName, ChartState& state, ChartHost& host)
    : lib_(library),
      dialogs_(dialogs),
      errors_(errors),
      registry_(registry),
      productName_(productName),
      state_(state),
      host_(host) {
    RegisterLayer(Layer::Vessel, [this](Canvas& c, const ChartViewState&) { DrawVessel(c); });
}

// ---------------------------------------------------------------------
// Window and drawing

void Display::SetViewSize(int width, int height) {
    width = std::max(0, width);
    height = std::max(0, height);
    // A view that had no size keeps its top-left corner (the starting view
    // of a chart opened before its window was shown); otherwise its centre.
    if (view_.Width == 0 || view_.Height == 0) {
        view_.Width = width;
        view_.Height = height;
        if (centrePending_ && width > 0 && height > 0) {
            // The origin holds the place asked for: move it to the middle.
            centrePending_ = false;
            view_.OriginX -= width / 2.0 * view_.ViewFactor;
            view_.OriginY -= height / 2.0 * view_.ViewFactor;
        }
        return;
    }
    double cx = view_.OriginX + view_.Width / 2.0 * view_.ViewFactor;
    double cy = view_.OriginY + view_.Height / 2.0 * view_.ViewFactor;
    view_.Width = width;
    view_.Height = height;
    if (state_.IsOpen()) {
        view_.OriginX = cx - width / 2.0 * view_.ViewFactor;
        view_.OriginY = cy - height / 2.0 * view_.ViewFactor;
    }
}

void Display::RedrawNavCanvas(Canvas& canvas) {
    if (RedrawBusy || !state_.IsOpen()) return;
    RedrawBusy = true;
    errors_.Guard("RedrawNavCanvas", [&] {
        lib_.RedrawChart(store_, view_, PixelSize > 32 ? 3 : 1);
        canvas.Blit({0, 0}, store_);
        for (int slot = 0; slot < int(Layer::Count_); ++slot)
            for (size_t i = 0; i < layers_.size(); ++i)
                if (int(layers_[i].slot) == slot) {
                    LayerDraw draw = layers_[i].draw;  // a layer may unregister itself
                    errors_.Guard("RedrawNavCanvas", [&] { draw(canvas, view_); });
                }
    });
    host_.ChartPainted();
    RedrawBusy = false;
}

int Display::RegisterLayer(Layer slot, LayerDraw draw) {
    layers_.push_back({nextId_, slot, std::move(draw)});
    return nextId_++;
}

void Display::UnregisterLayer(int id) {
    layers_.erase(std::remove_if(layers_.begin(), layers_.end(), [&](const LayerEntry& e) { return e.id == id; }), layers_.end());
}

int Display::RegisterPreparer(std::function<void()> prepare) {
    preparers_.emplace_back(nextId_, std::move(prepare));
    return nextId_++;
}

void Display::UnregisterPreparer(int id) {
    preparers_.erase(std::remove_if(preparers_.begin(), preparers_.end(), [&](auto& p) { return p.first == id; }),
                     preparers_.end());
}

void Display::PreparePoints() {
    for (auto& p : std::vector(preparers_)) errors_.Guard("PreparePoints", [&] { p.second(); });
}

// ---------------------------------------------------------------------
// Positions

NavPoint Display::LocatePosition(const LatLong& wgs84) {
    NavPoint np;
    np.Wgs84 = wgs84;
    np.Local = wgs84;
    if (!state_.IsOpen()) return np;
    const ChartHeader& h = state_.Header;
    int count = std::max<int>(0, h.PlanCount);
    np.InPlan.assign(size_t(count) + 1, 0);
    np.Pixel.assign(size_t(count) + 1, ChartPoint{});
    bool localSet = false;
    for (int p = h.FirstPlan; p <= count; ++p) {
        if (!lib_.IsLatLongInPlan(1, int16_t(p), wgs84)) continue;
        ChartPoint pt;
        if (!lib_.GetPixelPt(1, int16_t(p), wgs84, pt)) continue;
        bool covered = false;
        for (int k = p + 1; k <= count && !covered; ++k) covered = lib_.IsChartPtInPlan(int16_t(k), pt);
        if (covered) continue;
        np.InPlan[size_t(p)] = -1;
        np.Pixel[size_t(p)] = pt;
        if (!localSet) {
            LatLong local;
            if (lib_.GetLatLong(0, int16_t(p), local, pt)) np.Local = local;
            localSet = true;
        }
    }
    return np;
}

NavPoint Display::LocateChartPosition(const LatLong& local) {
    NavPoint np;
    np.Wgs84 = local;
    np.Local = local;
    if (!state_.IsOpen()) return np;
    const ChartHeader& h = state_.Header;
    int count = std::max<int>(0, h.PlanCount);
    np.InPlan.assign(size_t(count) + 1, 0);
    np.Pixel.assign(size_t(count) + 1, ChartPoint{});
    for (int p = h.FirstPlan; p <= count; ++p) {
        if (!lib_.IsLatLongInPlan(0, int16_t(p), local)) continue;
        ChartPoint pt;
        if (!lib_.GetPixelPt(0, int16_t(p), local, pt)) continue;
        bool covered = false;
        for (int k = p + 1; k <= count && !covered; ++k) covered = lib_.IsChartPtInPlan(int16_t(k), pt);
        if (covered) continue;
        np.InPlan[size_t(p)] = -1;
        np.Pixel[size_t(p)] = pt;
    }
    return np;
}

ChartPoint Display::ChartToScreen(ChartPoint c) const {
    return {int32_t(std::lround(std::clamp(ChartToScreenX(view_, c.x), -1e9, 1e9))),
            int32_t(std::lround(std::clamp(ChartToScreenY(view_, c.y), -1e9, 1e9)))};
}

ChartPoint Display::ScreenToChart(ChartPoint s) const {
    return {int32_t(std::lround(std::clamp(ScreenToChartX(view_, s.x + 0.5), -1e9, 1e9))),
            int32_t(std::lround(std::clamp(ScreenToChartY(view_, s.y + 0.5), -1e9, 1e9)))};
}

int16_t Display::PlanAtPixel(ChartPoint c) {
    if (!state_.IsOpen()) return -1;
    for (int p = state_.Header.PlanCount; p >= state_.Header.FirstPlan; --p)
        if (lib_.IsChartPtInPlan(int16_t(p), c)) return int16_t(p);
    return -1;
}

bool Display::ScreenToPosition(ChartPoint screen, LatLong& pos) {
    ChartPoint c = ScreenToChart(screen);
    int16_t p = PlanAtPixel(c);
    if (p < 0) return false;
    return lib_.PixelToPosition(1, p, ScreenToChartX(view_, screen.x + 0.5), ScreenToChartY(view_, screen.y + 0.5), pos);
}

LatLong Display::ViewCentre() {
    if (!state_.IsOpen()) return state_.ViewCentre;
    double cx = view_.OriginX + view_.Width / 2.0 * view_.ViewFactor;
    double cy = view_.OriginY + view_.Height / 2.0 * view_.ViewFactor;
    int16_t p = PlanAtPixel({int32_t(std::lround(cx)), int32_t(std::lround(cy))});
    if (p < 0) p = DisplayedPlan >= 0 ? DisplayedPlan : state_.Header.FirstPlan;
    LatLong pos;
    if (lib_.PixelToPosition(1, p, cx, cy, pos)) state_.ViewCentre = pos;
    return state_.ViewCentre;
}

void Display::CentreOnPixel(double cx, double cy) {
    view_.OriginX = cx - view_.Width / 2.0 * view_.ViewFactor;
    view_.OriginY = cy - view_.Height / 2.0 * view_.ViewFactor;
    centrePending_ = view_.Width == 0 || view_.Height == 0;
    AfterScroll();
}

bool Display::CentreOnPosition(const LatLong& wgs84) {
    NavPoint np = LocatePosition(wgs84);
    int p = np.FirstPlanShown();
    if (p < 0) return false;
    CentreOnPixel(np.Pixel[size_t(p)].x, np.Pixel[size_t(p)].y);
    return true;
}

// ---------------------------------------------------------------------
// Plans

void Display::StatusUpdate() {
    host_.ChartStatusChanged();
}

void Display::SelectPlan(int16_t plan) {
    if (plan == DisplayedPlan) return;
    const ChartHeader& h = state_.Header;
    if (plan < 0 || size_t(plan) >= h.Plans.size()) return;
    DisplayedPlan = plan;
    state_.CurrentPlan = plan;
    StatusUpdate();
    ChartWarning(0);
    if (h.OutOfDate) ChartWarning(5);
    if (!h.Plans[size_t(plan)].HasShift && !(plan == 0 && h.FirstPlan != 0)) ChartWarning(1);
    if (PixelSize != 128) ChartWarning(4);
}

void Display::ShowPlansList() {
    if (!state_.IsOpen()) return;
    const ChartHeader& h = state_.Header;
    if (h.PlanCount <= 0) {
        dialogs_.MsgBox("There are no plans on this chart.", mb::Information, "Plans");
        return;
    }
    std::vector<std::string> items;
    int current = 0;
    for (int p = h.FirstPlan; p <= h.PlanCount; ++p) {
        const ChartPlan& cp = h.Plans[size_t(p)];
        std::string title = Trim(cp.Title).empty() ? Trim(h.Title) : Trim(cp.Title);
        items.push_back((p == 0 ? std::string("Main chart") : "Plan " + std::to_string(p)) + ": " + title +
                        (PlanScale(cp) > 0 ? "  (" + ScaleText(cp) + ")" : ""));
        if (p == DisplayedPlan) current = p - h.FirstPlan;
    }
    int pick = dialogs_.PickFromList("Plans", items, current);
    if (pick < 0 || pick >= int(items.size())) return;
    int16_t plan = int16_t(h.FirstPlan + pick);
    SelectPlan(plan);
    MoveToPlan(plan);
}

void Display::MoveToPlan(int16_t plan) {
    const ChartHeader& h = state_.Header;
    if (plan < 0 || size_t(plan) >= h.Plans.size()) return;
    const auto& o = h.Plans[size_t(plan)].Outline;
    double sx = 0, sy = 0;
    int n = 0;
    for (size_t i = 1; i < o.size(); ++i) {
        sx += o[i].Pixel.x;
        sy += o[i].Pixel.y;
        ++n;
    }
    if (n == 0) return;
    CentreOnPixel(sx / n, sy / n);
}

// ---------------------------------------------------------------------
// Raster, zoom, palette

float Display::ViewFactor() const {
    ChartRasterInfo info = lib_.RasterInfo();
    if (info.LowRes)
        return float((double(info.ResolutionSecond) / info.ResolutionFirst) / (PixelSize / 128.0));
    return float(128.0 / PixelSize);
}

bool Display::ShowingLoRes() const { return lib_.RasterInfo().LowRes; }

void Display::ShowRaster() {
    if (!state_.IsOpen()) return;
    errors_.Guard("ShowRaster", [&] {
        lib_.ReadChart(state_.CurrentChartPath, PaletteMode);
        lib_.SetPixelSize(view_, PixelSize);
        AfterScroll();
        AfterRasterDisplay();
    });
}

void Display::ShowHiRes() {
    if (!state_.IsOpen()) return;
    state_.CurrentChartPath = ChartFilePath(state_.HeaderPath, "CHR");
    ShowRaster();
    // From a zoomed-out view whose centre lay in the margin beside the chart
    // (its starting view sits at the chart's top-left corner), bring the
    // chart back into view: as much of it as the view holds, edge to edge.
    ChartRasterInfo info = lib_.RasterInfo();
    if (!info.Loaded || info.Width <= 0 || info.Height <= 0) return;
    double cx = view_.OriginX + view_.Width / 2.0 * view_.ViewFactor;
    double cy = view_.OriginY + view_.Height / 2.0 * view_.ViewFactor;
    if (cx >= 0 && cx < info.Width && cy >= 0 && cy < info.Height) return;
    auto inside = [](double c, double half, double size) {
        return half * 2 >= size ? size / 2.0 : std::clamp(c, half, size - half);
    };
    CentreOnPixel(inside(cx, view_.Width / 2.0 * view_.ViewFactor, info.Width),
                  inside(cy, view_.Height / 2.0 * view_.ViewFactor, info.Height));
}

void Display::ShowLoRes() {
    if (!state_.IsOpen()) return;
    state_.CurrentChartPath = ChartFilePath(state_.HeaderPath, "LOR");
    ShowRaster();
    CentreSmallRaster();
}

// Along each side where the whole chart fits in the view, the chart sits
// in the middle, with equal margins, rather than at wherever the view was.
void Display::CentreSmallRaster() {
    ChartRasterInfo info = lib_.RasterInfo();
    if (!info.Loaded || info.Width <= 0 || info.Height <= 0 || view_.ViewFactor <= 0) return;
    bool moved = false;
    if (info.Width / view_.ViewFactor <= view_.Width) {
        view_.OriginX = info.Width / 2.0 - view_.Width / 2.0 * view_.ViewFactor;
        moved = true;
    }
    if (info.Height / view_.ViewFactor <= view_.Height) {
        view_.OriginY = info.Height / 2.0 - view_.Height / 2.0 * view_.ViewFactor;
        moved = true;
    }
    if (moved) AfterScroll();
}

void Display::SetPixelSize(int16_t pixelSize) {
    // 0 is "not set": the one-to-one view.
    PixelSize = pixelSize == 0 ? int16_t(128) : std::clamp<int16_t>(pixelSize, 16, 1024);
    if (!state_.IsOpen()) return;
    lib_.SetPixelSize(view_, PixelSize);
    AfterScroll();
    AfterRasterDisplay();
}

void Display::PixelZoomIn() { SetPixelSize(int16_t(std::min(1024, PixelSize * 2))); }
void Display::PixelZoomOut() { SetPixelSize(int16_t(std::max(16, PixelSize / 2))); }
void Display::ResetPixelZoom() { SetPixelSize(128); }

void Display::SetPaletteMode(int16_t mode) {
    if (mode < 0 || mode > 2) mode = 0;
    PaletteMode = mode;
    registry_.SaveSetting(Key::PaletteMode, std::to_string(mode));
    lib_.ModifySystemPalette(mode);
    if (state_.IsOpen()) lib_.ReadChart(state_.CurrentChartPath, mode);
    RequestRedraw();
}

Rgb Display::OverlayColour(int kind, int mode) {
    if (kind == 0) {
        if (mode == 0) return MakeRgb(0, 0, 0);
        if (mode == 1) return MakeRgb(255, 255, 255);
        if (mode == 2) return MakeRgb(57, 63, 57);
        return 0;
    }
    if (kind == 1 || kind == 2) {
        if (mode == 0) return MakeRgb(255, 255, 255);
        if (mode == 1) return MakeRgb(57, 63, 57);
        if (mode == 2) return MakeRgb(0, 0, 0);
    }
    return 0;
}

// ---------------------------------------------------------------------
// Mouse

void Display::RequestRedraw() {
    host_.ChartRedrawRequested();
}

void Display::AfterScroll() {
    if (!state_.IsOpen()) return;
    RequestRedraw();
    double cx = view_.OriginX + view_.Width / 2.0 * view_.ViewFactor;
    double cy = view_.OriginY + view_.Height / 2.0 * view_.ViewFactor;
    int16_t p = PlanAtPixel({int32_t(std::lround(cx)), int32_t(std::lround(cy))});
    if (p >= 0 && p != DisplayedPlan) {
        SelectPlan(p);
        AfterRasterDisplay();
    }
}

void Display::ScrollBy(int dx, int dy) {
    view_.OriginX += dx * view_.ViewFactor;
    view_.OriginY += dy * view_.ViewFactor;
    AfterScroll();
}

void Display::BeginDrag(ChartPoint screen) {
    dragging_ = true;
    dragFrom_ = screen;
    dragOriginX_ = view_.OriginX;
    dragOriginY_ = view_.OriginY;
}

void Display::DragTo(ChartPoint screen) {
    if (!dragging_) return;
    view_.OriginX = dragOriginX_ - (screen.x - dragFrom_.x) * view_.ViewFactor;
    view_.OriginY = dragOriginY_ - (screen.y - dragFrom_.y) * view_.ViewFactor;
    RequestRedraw();
}

void Display::EndDrag() {
    if (!dragging_) return;
    dragging_ = false;
    AfterScroll();
}

bool Display::ZoomArea(ChartPoint screen, PixelRect& area) const {
    if (!state_.IsOpen() || view_.Width <= 0 || view_.Height <= 0 || !(view_.ViewFactor > 1.0)) return false;
    const int w = int(view_.Width / view_.ViewFactor), h = int(view_.Height / view_.ViewFactor);
    area = {screen.x - w / 2, screen.y - h / 2, screen.x - w / 2 + w, screen.y - h / 2 + h};
    return true;
}

void Display::ZoomInAt(ChartPoint screen) {
    PixelRect area;
    LatLong pos;
    if (!ZoomArea(screen, area) || !ScreenToPosition(screen, pos)) return;
    if (ShowingLoRes()) {
        PixelSize = 128;
        ShowHiRes();
    } else {
        SetPixelSize(128);
    }
    CentreOnPosition(pos);
}

void Display::WheelZoom(int steps, ChartPoint screen) {
    if (!state_.IsOpen() || steps == 0) return;
    double cx = ScreenToChartX(view_, screen.x), cy = ScreenToChartY(view_, screen.y);
    int ps = PixelSize;
    for (int i = 0; i < std::abs(steps); ++i) ps = steps > 0 ? std::min(1024, ps * 2) : std::max(16, ps / 2);
    PixelSize = int16_t(ps);
    lib_.SetPixelSize(view_, PixelSize);
    view_.OriginX = cx - screen.x * view_.ViewFactor;
    view_.OriginY = cy - screen.y * view_.ViewFactor;
    AfterScroll();
    AfterRasterDisplay();
}

bool Display::ScaleBar(int maxPixels, double& nm, int& pixels) const {
    if (!state_.IsOpen() || maxPixels <= 0) return false;
    int16_t plan = DisplayedPlan >= 0 ? DisplayedPlan : state_.Header.FirstPlan;
    double perNm = lib_.GetPixelsPerNM(plan) / std::max(1e-9, double(ViewFactor()));
    if (!(perNm > 0) || !std::isfinite(perNm)) return false;
    double most = maxPixels / perNm;  // the longest length that fits, miles
    double decade = std::pow(10.0, std::floor(std::log10(most)));
    double best = decade;
    for (double m : {2.0, 5.0, 10.0})
        if (decade * m <= most * (1 + 1e-9)) best = decade * m;
    nm = best;
    pixels = std::min(maxPixels, int(std::lround(best * perNm)));
    return true;
}

// ---------------------------------------------------------------------
// Warnings

std::string Display::PixelZoomFactorText(int16_t pixelSize) {
    if (pixelSize <= 0) pixelSize = 128;
    double f = pixelSize >= 128 ? pixelSize / 128.0 : 128.0 / pixelSize;
    std::string n = f == std::floor(f) ? std::to_string(long(f)) : Format(f, "0.00");
    return (pixelSize >= 128 ? " X " : " / ") + n;
}

void Display::SetWarningText(int code) {
    switch (code) {
    case 1: texts_[1] = kWarning1; break;
    case 2: texts_[2] = kWarning2; break;
    case 4:
        texts_[4] = "Chart Image Has Been Pixel Zoomed (" + PixelZoomFactorText(PixelSize) + " )  :  IT IS UNSAFE FOR NAVIGATION";
        break;
    case 5: texts_[5] = kWarning5; break;
    default: break;
    }
}

void Display::ChartWarning(int16_t code) {
    bool changed = false;
    if (code == 0) {
        changed = warningCount_ != 0;
        for (bool& f : flags_) f = false;
        warningCount_ = 0;
    } else if (code == 1 || code == 2 || code == 4 || code == 5) {
        if (flags_[code]) {
            if (code == 4) {
                std::string before = texts_[4];
                SetWarningText(4);
                changed = before != texts_[4];
            }
        } else {
            flags_[code] = true;
            SetWarningText(code);
            ++warningCount_;
            changed = true;
        }
    } else if (code == -2 || code == -4) {
        if (flags_[-code]) {
            flags_[-code] = false;
            --warningCount_;
            changed = true;
        }
    }
    if (changed) host_.ChartWarningsChanged();
}

std::vector<std::string> Display::WarningTexts() const {
    std::vector<std::string> out;
    for (int c : {1, 2, 4, 5})
        if (flags_[c]) out.push_back(texts_[c]);
    return out;
}

std::string Display::WarningText() const {
    std::string s;
    for (const std::string& t : WarningTexts()) {
        if (!s.empty()) s += "     ";
        s += Trim(t);
    }
    return s;
}

void Display::AfterRasterDisplay() {
    if (PixelSize == 128) {
        ChartWarning(-4);
        if (ShowingLoRes()) ChartWarning(2);
        else ChartWarning(-2);
    } else {
        ChartWarning(-2);
        ChartWarning(4);
    }
}

// ---------------------------------------------------------------------
// Status texts

std::string Display::ScaleCaption() const {
    const ChartHeader& h = state_.Header;
    if (!state_.IsOpen() || DisplayedPlan < 0 || size_t(DisplayedPlan) >= h.Plans.size()) return "";
    return "Scale 1:" + Format(PlanScale(h.Plans[size_t(DisplayedPlan)]), "#########");
}

std::string Display::DatumCaption() const {
    const ChartHeader& h = state_.Header;
    if (!state_.IsOpen() || DisplayedPlan < 0 || size_t(DisplayedPlan) >= h.Plans.size()) return "";
    return "Datum: " + DatumText(Trim(h.Plans[size_t(DisplayedPlan)].HorizDatum));
}

std::string Display::DepthUnitsCaption() const {
    const ChartHeader& h = state_.Header;
    if (!state_.IsOpen() || DisplayedPlan < 0 || size_t(DisplayedPlan) >= h.Plans.size()) return "";
    return DepthUnitText(Trim(h.Plans[size_t(DisplayedPlan)].DepthUnits));
}

// ---------------------------------------------------------------------
// Vessel

bool Display::VesselView(ombra::VesselView& out) {
    return vessel_ && vessel_->GetVesselView(out) && out.Active;
}

void Display::DrawVessel(Canvas& canvas) {
    ombra::VesselView v;
    if (!VesselView(v)) return;
    NavPoint np = LocatePosition(v.Pos);
    int p = np.FirstPlanShown();
    if (p < 0) return;
    ChartPoint at = ChartToScreen(np.Pixel[size_t(p)]);
    // Where north lies on the screen at the vessel (charts are not all north up).
    double x0, y0, x1, y1, northAngle = 0;
    LatLong north{v.Pos.Long, v.Pos.Lat + 6.0};
    if (lib_.PositionToPixel(1, int16_t(p), v.Pos, x0, y0) && lib_.PositionToPixel(1, int16_t(p), north, x1, y1))
        northAngle = std::atan2(x1 - x0, -(y1 - y0)) * kRadToDeg;
    double heading = v.Heading >= 0 ? v.Heading : v.COG;
    double ppm = lib_.GetPixelsPerNM(int16_t(p)) / 1852.0 / std::max(1e-6, double(view_.ViewFactor));
    if (v.Predictor && v.SOG > 0 && v.PredictorTime > 0) {
        LatLong end = DeadReckon(v.Pos, v.COG, v.SOG * v.PredictorTime / 60.0);
        double ex, ey;
        if (lib_.PositionToPixel(1, int16_t(p), end, ex, ey)) {
            ChartPoint e{int32_t(std::lround(std::clamp(ChartToScreenX(view_, ex), -1e6, 1e6))),
                         int32_t(std::lround(std::clamp(ChartToScreenY(view_, ey), -1e6, 1e6)))};
            canvas.SetPen({v.Colour, 2, PenStyle::Solid});
            canvas.Line(at, e);
            canvas.SetBrush({v.Colour, BrushStyle::Solid});
            canvas.Ellipse({e.x - 3, e.y - 3, e.x + 4, e.y + 4});
        }
    }
    lib_.DrawBoat(canvas, at, heading + northAngle, ppm, v.Colour);
    if (v.NameDisplay && !v.Name.empty()) {
        canvas.SetTextColour(OverlayColour(0, PaletteMode));
        canvas.Text({at.x + 16, at.y - 20}, v.Name);
    }
}

// ---------------------------------------------------------------------
// Opening

void Display::StartView() {
    PixelSize = 128;
    DisplayedPlan = -1;
    lib_.ReadChart(state_.CurrentChartPath, PaletteMode);
    view_.OriginX = view_.OriginY = 0;
    lib_.SetPixelSize(view_, PixelSize);
    view_.OriginX = view_.OriginY = 0;
    centrePending_ = false;
    int16_t plan = state_.Header.FirstPlan;
    ombra::VesselView v;
    if (VesselView(v)) {
        NavPoint np = LocatePosition(v.Pos);
        int p = np.FirstPlanShown();
        if (p >= 0) {
            view_.OriginX = np.Pixel[size_t(p)].x - view_.Width / 2.0 * view_.ViewFactor;
            view_.OriginY = np.Pixel[size_t(p)].y - view_.Height / 2.0 * view_.ViewFactor;
            centrePending_ = view_.Width == 0 || view_.Height == 0;
            plan = int16_t(p);
        }
    }
    double cx = view_.OriginX + view_.Width / 2.0 * view_.ViewFactor;
    double cy = view_.OriginY + view_.Height / 2.0 * view_.ViewFactor;
    int16_t atCentre = PlanAtPixel({int32_t(std::lround(cx)), int32_t(std::lround(cy))});
    SelectPlan(atCentre >= 0 ? atCentre : plan);
    AfterRasterDisplay();
    PreparePoints();
    RequestRedraw();
}

void Display::ClearView() {
    ChartWarning(0);
    DisplayedPlan = -1;
    store_ = Image();
}

}  // namespace ombra
