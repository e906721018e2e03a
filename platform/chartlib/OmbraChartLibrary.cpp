#include "platform/chartlib/OmbraChartLibrary.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/Angles.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "platform/api/Canvas.h"
#include "platform/chartlib/PaletteFile.h"

namespace ombra::chartlib {

namespace {

constexpr size_t kMaxPlanFileBytes = 8 << 20;
constexpr int kMaxPlans = 100;

std::string Ext(const std::string& base, const std::string& ext) { return base + "." + ext; }

std::string Plan2(int p) {
    char b[8];
    std::snprintf(b, sizeof b, "%02d", p);
    return b;
}

bool InPolygon(double x, double y, const std::vector<std::pair<double, double>>& ring) {
    bool in = false;
    for (size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        double xi = ring[i].first, yi = ring[i].second, xj = ring[j].first, yj = ring[j].second;
        if ((yi > y) != (yj > y) && x < (xj - xi) * (y - yi) / (yj - yi) + xi) in = !in;
    }
    return in;
}

double NormalLongSeconds(double s) {
    while (s > 648000.0) s -= 1296000.0;
    while (s <= -648000.0) s += 1296000.0;
    return s;
}

std::string Upper(const std::string& s) { return UCase(Trim(s)); }

// Datum words of a KAP to the datum codes of the tables.
std::string DatumCode(const std::string& gd) {
    std::string u = Upper(gd);
    auto has = [&](const char* w) { return u.find(w) != std::string::npos; };
    if (has("WGS84") || has("WGS 84") || has("WORLD GEODETIC SYSTEM 1984")) return "WGD";
    if (has("WGS72") || has("WGS 72")) return "WGC";
    if (has("NAD83") || has("NAD 83") || has("NORTH AMERICAN 1983") || has("NORTH AMERICAN DATUM 1983")) return "NAR";
    if (has("NAD27") || has("NAD 27") || has("NORTH AMERICAN 1927") || has("NORTH AMERICAN DATUM 1927")) return "NAS";
    if (has("EUROPEAN 1950") || has("ED50")) return "EUR";
    if (has("OSGB") || has("ORDNANCE SURVEY")) return "OGB";
    return "";
}

std::string DepthUnitsCode(const std::string& un) {
    std::string u = Upper(un);
    if (u.rfind("MET", 0) == 0) return "1";
    if (u.find("FATHOMS") != std::string::npos && u.find("FEET") != std::string::npos) return "2";
    if (u.rfind("FATHOM", 0) == 0) return "4";
    if (u.rfind("FEET", 0) == 0 || u.rfind("FOOT", 0) == 0) return "5";
    return u.empty() ? "" : "6";
}

std::string DepthDatumCode(const std::string& sd) {
    std::string u = Upper(sd);
    struct {
        const char* words;
        const char* code;
    } table[] = {{"LOWEST ASTRONOMICAL TIDE", "11"}, {"MEAN LOWER LOW WATER", "27"}, {"MEAN LOW WATER SPRINGS", "25"},
                 {"MEAN LOW WATER NEAPS", "24"},      {"MEAN LOW WATER", "23"},       {"LOWEST LOW WATER SPRINGS", "13"},
                 {"LOWEST LOW WATER", "12"},          {"LOW WATER SPRINGS", "15"},    {"LOW WATER", "14"},
                 {"MEAN SEA LEVEL", "29"},            {"MEAN HIGH WATER", "16"},      {"INDIAN SPRING LOW WATER", "10"}};
    for (auto& t : table)
        if (u.find(t.words) != std::string::npos) return t.code;
    return "00";
}

std::string ScaleDigits(const std::string& sc) {
    double v = Val(sc);
    if (!(v >= 1 && v < 1e10)) return "";
    char b[32];
    std::snprintf(b, sizeof b, "%.0f", v);
    return b;
}

PlanGeorefSource SourceFromKap(const KapHeader& h) {
    PlanGeorefSource s;
    std::string pr = Upper(h.Projection);
    double pp = IsNumeric(h.ProjectionParameter) ? Val(h.ProjectionParameter) : NAN;
    double meanLon = 0;
    for (auto& r : h.Refs) meanLon += r.lon;
    if (!h.Refs.empty()) meanLon /= double(h.Refs.size());
    double cm = std::isfinite(pp) ? pp : meanLon;
    if (pr.rfind("MERCATOR", 0) == 0) {
        s.Projection = ProjectionKind::Mercator;
    } else if (pr.rfind("TRANSVERSE MERCATOR", 0) == 0 || pr.rfind("UNIVERSAL TRANSVERSE MERCATOR", 0) == 0) {
        s.Projection = ProjectionKind::TransverseMercator;
        s.CentralMeridian = cm;
    } else if (pr.rfind("LAMBERT CONFORMAL CONIC", 0) == 0 && IsNumeric(h.P2) && IsNumeric(h.P3)) {
        s.Projection = ProjectionKind::LambertConformalConic;
        s.CentralMeridian = cm;
        s.StandardParallel1 = Val(h.P2);
        s.StandardParallel2 = Val(h.P3);
    } else if (pr.rfind("POLYCONIC", 0) == 0) {
        s.Projection = ProjectionKind::Polyconic;
        s.CentralMeridian = cm;
    } else {
        s.Projection = ProjectionKind::Polynomial;
    }
    for (auto& r : h.Refs) s.Refs.push_back({r.x, r.y, r.lat, r.lon});
    s.Outline = h.Outline;
    if (h.HasDtm) {
        s.HasShift = true;
        s.ShiftLatSeconds = -h.DtmLat;
        s.ShiftLonSeconds = -h.DtmLon;
    } else {
        std::string code = DatumCode(h.Datum);
        s.HasShift = code == "WGD" || code == "NAR";
    }
    s.Wpx = h.Wpx;
    s.Wpy = h.Wpy;
    s.Pwx = h.Pwx;
    s.Pwy = h.Pwy;
    return s;
}

// The plan's border from the corners of the raster when the chart has none.
bool FitWithOutline(const PlanGeorefSource& src, int width, int height, PlanGeoref& geo, std::string& message) {
    if (!geo.Fit(src, message)) return false;
    if (geo.Outline().size() < 3) {
        std::vector<std::pair<double, double>> ring;
        double corners[4][2] = {{0, 0}, {double(width - 1), 0}, {double(width - 1), double(height - 1)}, {0, double(height - 1)}};
        for (auto& c : corners) {
            double lat, lon;
            if (!geo.ToPosition(c[0], c[1], lat, lon)) {
                message = "the corners of the chart lie off its projection";
                return false;
            }
            ring.emplace_back(lat, lon);
        }
        geo.SetOutline(ring);
    }
    return true;
}

void FillPlan(ImportedPlan& ip, const PlanGeoref& geo) {
    ip.Outline.clear();
    for (auto& q : geo.Outline()) ip.Outline.push_back({NormalLongSeconds(q.second * 3600.0), q.first * 3600.0});
    ip.ShiftLat = geo.HasShift() ? ShiftText(geo.ShiftLatSeconds()) : "9999999";
    ip.ShiftLong = geo.HasShift() ? ShiftText(geo.ShiftLonSeconds()) : "9999999";
    ip.GeorefText = geo.ToText();
}

}  // namespace

std::string ShiftText(double seconds) {
    double minutes = seconds / 60.0;
    char b[32];
    const char* sign = minutes < 0 ? "-" : "+";
    double a = std::fabs(minutes);
    if (a < 9.99995) std::snprintf(b, sizeof b, "%s%.4f", sign, a);
    else if (a < 99.9995) std::snprintf(b, sizeof b, "%s%.3f", sign, a);
    else std::snprintf(b, sizeof b, "%s%06.1f", sign, std::min(a, 9999.9));
    return std::string(b).substr(0, 7);
}

OmbraChartLibrary::OmbraChartLibrary() : boat_(DefaultBoat()) { BuildLut(); }
OmbraChartLibrary::~OmbraChartLibrary() = default;

// ---------------------------------------------------------------------
// Opening

int16_t OmbraChartLibrary::OpenChart(const std::string& headerPath, const int16_t layout[5], const std::string&,
                                     std::string& libraryTag) {
    error_.clear();
    if (headerPath.size() < 4) {
        error_ = "no chart path";
        return 1;
    }
    std::string base = headerPath.substr(0, headerPath.size() - 4);
    int count = std::clamp(int(layout[0]), 0, kMaxPlans);
    std::vector<PlanState> plans(size_t(count) + 1);
    int valid = 0;
    for (int p = 0; p <= count; ++p) {
        std::string text = DecryptPlanFile(base + ".P" + Plan2(p));
        if (text.empty()) continue;
        size_t nl = text.find('\n');
        std::string why;
        if (nl == std::string::npos || !plans[size_t(p)].Geo.FromText(std::string_view(text).substr(nl + 1), why)) {
            error_ = "plan " + std::to_string(p) + ": " + (why.empty() ? "no georeferencing" : why);
            continue;
        }
        plans[size_t(p)].Valid = true;
        ++valid;
    }
    if (valid == 0) {
        if (error_.empty()) error_ = "the chart has no plan files";
        return 1;
    }
    std::vector<PaletteColour> palette;
    std::string why;
    struct stat st;
    std::string palPath = ResolvePath(Ext(base, "PAL"));
    if (::stat(palPath.c_str(), &st) != 0 || st.st_size > (1 << 20)) {
        error_ = "the palette is missing";
        return 2;
    }
    auto pal = ReadWholeFile(palPath, &why);
    if (!pal || !ParsePalette(*pal, palette, why)) {
        error_ = "the palette: " + why;
        return 2;
    }
    auto full = std::make_unique<TiledRaster>();
    if (!full->Open(Ext(base, "CHI"), Ext(base, "CHR"), why)) {
        error_ = "the raster: " + why;
        return 3;
    }
    full->SetCacheCapacity(cacheTiles_);
    for (auto& ps : plans) {
        if (!ps.Valid) continue;
        for (auto& q : ps.Geo.Outline()) {
            double x, y;
            if (ps.Geo.ToPixel(q.first, q.second, x, y)) ps.PixelOutline.emplace_back(x, y);
        }
    }
    base_ = base;
    plans_ = std::move(plans);
    palette_ = std::move(palette);
    full_ = std::move(full);
    low_.reset();
    shown_ = nullptr;
    BuildLut();
    libraryTag = "OMB";
    return 0;
}

bool OmbraChartLibrary::ReadChart(const std::string& rasterPath, int16_t paletteMode) {
    error_.clear();
    if (!full_ || rasterPath.size() < 4) {
        error_ = "no chart is open";
        return false;
    }
    paletteMode_ = paletteMode >= 0 && paletteMode <= 2 ? paletteMode : 0;
    BuildLut();
    std::string ext = UCase(rasterPath.substr(rasterPath.size() - 3));
    if (ext == "LOR") {
        if (!low_) {
            auto low = std::make_unique<TiledRaster>();
            std::string why;
            std::string base = rasterPath.substr(0, rasterPath.size() - 4);
            if (!low->Open(Ext(base, "LOI"), Ext(base, "LOR"), why) || !low->Header().LowRes) {
                error_ = "the low-resolution raster: " + why;
                return false;
            }
            low->SetCacheCapacity(cacheTiles_);
            low_ = std::move(low);
        }
        shown_ = low_.get();
    } else {
        shown_ = full_.get();
    }
    return true;
}

ChartRasterInfo OmbraChartLibrary::RasterInfo() const {
    ChartRasterInfo i;
    if (!full_) return i;
    i.Width = int(full_->Header().Width);
    i.Height = int(full_->Header().Height);
    i.Loaded = shown_ != nullptr;
    i.LowRes = shown_ && shown_ == low_.get();
    if (i.LowRes) {
        i.ResolutionFirst = int(low_->Header().ResolutionFirst);
        i.ResolutionSecond = int(low_->Header().ResolutionSecond);
    }
    return i;
}

void OmbraChartLibrary::CloseChart() {
    base_.clear();
    plans_.clear();
    full_.reset();
    low_.reset();
    shown_ = nullptr;
}

const OmbraChartLibrary::PlanState* OmbraChartLibrary::Plan(int16_t plan) const {
    if (plan < 0 || size_t(plan) >= plans_.size() || !plans_[size_t(plan)].Valid) return nullptr;
    return &plans_[size_t(plan)];
}

const PlanGeoref* OmbraChartLibrary::Georef(int16_t plan) const {
    const PlanState* p = Plan(plan);
    return p ? &p->Geo : nullptr;
}

// ---------------------------------------------------------------------
// Mapping

void OmbraChartLibrary::ToLocal(int16_t datumFlag, const PlanState& p, const LatLong& in, double& lat, double& lon) const {
    double la = in.Lat, lo = in.Long;
    if (datumFlag == 1 && p.Geo.HasShift()) {
        la += p.Geo.ShiftLatSeconds();
        lo += p.Geo.ShiftLonSeconds();
    }
    lat = la / 3600.0;
    lon = lo / 3600.0;
}

bool OmbraChartLibrary::PositionToPixel(int16_t datumFlag, int16_t plan, const LatLong& pos, double& x, double& y) {
    const PlanState* p = Plan(plan);
    if (!p || !std::isfinite(pos.Lat) || !std::isfinite(pos.Long)) return false;
    double lat, lon;
    ToLocal(datumFlag, *p, pos, lat, lon);
    return p->Geo.ToPixel(lat, lon, x, y);
}

bool OmbraChartLibrary::PixelToPosition(int16_t datumFlag, int16_t plan, double x, double y, LatLong& pos) {
    const PlanState* p = Plan(plan);
    if (!p) return false;
    double lat, lon;
    if (!p->Geo.ToPosition(x, y, lat, lon)) return false;
    LatLong r{lon * 3600.0, lat * 3600.0};
    if (datumFlag == 1 && p->Geo.HasShift()) {
        r.Lat -= p->Geo.ShiftLatSeconds();
        r.Long -= p->Geo.ShiftLonSeconds();
    }
    r.Long = NormalLongSeconds(r.Long);
    pos = r;
    return true;
}

bool OmbraChartLibrary::GetPixelPt(int16_t datumFlag, int16_t plan, const LatLong& pos, ChartPoint& pt) {
    double x, y;
    if (!PositionToPixel(datumFlag, plan, pos, x, y)) return false;
    if (std::fabs(x) > 2e9 || std::fabs(y) > 2e9) return false;
    pt = {int32_t(std::lround(x)), int32_t(std::lround(y))};
    return true;
}

bool OmbraChartLibrary::GetLatLong(int16_t datumFlag, int16_t plan, LatLong& pos, const ChartPoint& pt) {
    return PixelToPosition(datumFlag, plan, pt.x, pt.y, pos);
}

float OmbraChartLibrary::GetPixelsPerNM(int16_t plan) {
    const PlanState* p = Plan(plan);
    return p ? float(p->Geo.PixelsPerNM()) : 0.0f;
}

bool OmbraChartLibrary::IsLatLongInPlan(int16_t datumFlag, int16_t plan, const LatLong& pos) {
    const PlanState* p = Plan(plan);
    if (!p || p->Geo.Outline().size() < 3 || !std::isfinite(pos.Lat) || !std::isfinite(pos.Long)) return false;
    double lat, lon;
    ToLocal(datumFlag, *p, pos, lat, lon);
    double ref = p->Geo.ReferenceLongitude();
    std::vector<std::pair<double, double>> ring;
    ring.reserve(p->Geo.Outline().size());
    for (auto& q : p->Geo.Outline()) ring.emplace_back(UnwrapLongitude(q.second, ref), q.first);
    return InPolygon(UnwrapLongitude(lon, ref), lat, ring);
}

bool OmbraChartLibrary::IsChartPtInPlan(int16_t plan, const ChartPoint& pt) {
    const PlanState* p = Plan(plan);
    if (!p || p->PixelOutline.size() < 3) return false;
    return InPolygon(pt.x, pt.y, p->PixelOutline);
}

bool OmbraChartLibrary::IsPointSea(const LatLong& pos) {
    if (!full_) return false;
    for (int p = int(plans_.size()) - 1; p >= 0; --p) {
        if (!IsLatLongInPlan(1, int16_t(p), pos)) continue;
        ChartPoint pt;
        if (!GetPixelPt(1, int16_t(p), pos, pt)) continue;
        bool covered = false;
        for (size_t k = size_t(p) + 1; k < plans_.size() && !covered; ++k) covered = IsChartPtInPlan(int16_t(k), pt);
        if (covered) continue;
        if (pt.x < 0 || pt.y < 0 || uint32_t(pt.x) >= full_->Header().Width || uint32_t(pt.y) >= full_->Header().Height)
            return false;
        uint8_t idx = full_->Pixel(uint32_t(pt.x), uint32_t(pt.y));
        return idx < palette_.size() && palette_[idx].Kind == 'S';
    }
    return false;
}

// ---------------------------------------------------------------------
// Drawing

void OmbraChartLibrary::BuildLut() {
    for (size_t i = 0; i < lut_.size(); ++i)
        lut_[i] = 0xFF000000u | (i < palette_.size() ? (ColourIn(palette_[i], paletteMode_) & 0xFFFFFFu) : 0u);
    background_ = paletteMode_ == 2 ? 0xFF101010u : paletteMode_ == 1 ? 0xFF505050u : 0xFFD8D8D8u;
}

void OmbraChartLibrary::ModifySystemPalette(int16_t paletteMode) {
    paletteMode_ = paletteMode >= 0 && paletteMode <= 2 ? paletteMode : 0;
    BuildLut();
}

Rgb OmbraChartLibrary::PaletteColourOf(int index) const {
    return index >= 0 && index < 256 ? lut_[size_t(index)] & 0xFFFFFFu : 0;
}

void OmbraChartLibrary::SetPixelSize(ChartViewState& v, int16_t pixelSize) {
    if (pixelSize <= 0) pixelSize = 128;
    double cx = v.OriginX + v.Width / 2.0 * v.ViewFactor, cy = v.OriginY + v.Height / 2.0 * v.ViewFactor;
    ChartRasterInfo info = RasterInfo();
    double vf = 128.0 / pixelSize;
    if (info.LowRes) vf = (double(info.ResolutionSecond) / info.ResolutionFirst) / (pixelSize / 128.0);
    v.PixelSize = pixelSize;
    v.ViewFactor = vf;
    v.OriginX = cx - v.Width / 2.0 * vf;
    v.OriginY = cy - v.Height / 2.0 * vf;
}

namespace {

// Where the screen's columns sample the raster, for one sample column of a
// screen pixel: the tile column and the offset within the tile of each
// screen column, -1 outside the raster.
struct ColumnMap {
    std::vector<int> tile, offset;
};

// `rs` is raster pixels a full-resolution pixel; `samples` sample columns
// a screen pixel, each in the middle of its share.
std::vector<ColumnMap> MapColumns(const ChartViewState& v, double rs, int samples, int width, int rasterWidth, int tileSize) {
    std::vector<ColumnMap> maps(static_cast<size_t>(samples));
    for (int s = 0; s < samples; ++s) {
        ColumnMap& m = maps[size_t(s)];
        m.tile.resize(size_t(width));
        m.offset.resize(size_t(width));
        for (int x = 0; x < width; ++x) {
            double cx = (v.OriginX + (x + (s + 0.5) / samples) * v.ViewFactor) * rs;
            long rx = std::isfinite(cx) ? long(std::floor(cx)) : -1;
            if (rx < 0 || rx >= rasterWidth) {
                m.tile[size_t(x)] = m.offset[size_t(x)] = -1;
            } else {
                m.tile[size_t(x)] = int(rx / tileSize);
                m.offset[size_t(x)] = int(rx % tileSize);
            }
        }
    }
    return maps;
}

// The raster row under a sample row, -1 when the position is no number.
long RasterRow(const ChartViewState& v, double rs, int y, double within) {
    double cy = (v.OriginY + (y + within) * v.ViewFactor) * rs;
    return std::isfinite(cy) ? long(std::floor(cy)) : -1;
}

// Paints rows of samples in screen colours through one band of tiles, the
// band kept while its rows are painted.
class RowSampler {
public:
    // Samples `level` of the raster (0 the raster itself, see TiledRaster).
    RowSampler(TiledRaster& raster, int level, const std::array<uint32_t, 256>& lut, uint32_t background, int width)
        : raster_(raster),
          level_(level),
          lut_(lut),
          background_(background),
          width_(width),
          rows_(long(raster.LevelHeader(level).Height)),
          tileSize_(int(raster.Header().TileSize)),
          tiles_(raster.LevelHeader(level).TilesAcross) {}

    // Raster row `ry` sampled at the columns of `cols`, into `out` (width pixels).
    void Paint(long ry, const ColumnMap& cols, uint32_t* out) {
        // Locals, so that the stores to `out` need not reload them.
        const int width = width_;
        const uint32_t background = background_;
        const uint32_t* lut = lut_.data();
        if (ry < 0 || ry >= rows_) {
            std::fill(out, out + width, background);
            return;
        }
        const int ts = tileSize_;
        int ty = int(ry / ts), yoff = int(ry % ts);
        if (ty != bandRow_) {
            for (auto& t : tiles_) t.reset();
            bandRow_ = ty;
        }
        const int* ct = cols.tile.data();
        const int* co = cols.offset.data();
        int x = 0;
        while (x < width) {
            int t = ct[x];
            if (t < 0) {
                out[x++] = background;
                continue;
            }
            auto& tile = tiles_[size_t(t)];
            if (!tile) tile = raster_.GetLevelTile(level_, uint32_t(t), uint32_t(ty));
            const uint8_t* row = tile->data() + size_t(yoff) * size_t(ts);
            int x0 = x;
            while (x < width && ct[x] == t) ++x;
            for (int k = x0; k < x; ++k) out[k] = lut[row[co[k]]];
        }
    }

private:
    TiledRaster& raster_;
    int level_;
    const std::array<uint32_t, 256>& lut_;
    uint32_t background_;
    int width_;
    long rows_;
    int tileSize_;
    int bandRow_ = -1;
    std::vector<TiledRaster::Tile> tiles_;
};

// Adds a row of colours into per-channel sums (three a pixel).
void AddColours(const std::vector<uint32_t>& row, std::vector<uint32_t>& sum) {
    for (size_t x = 0; x < row.size(); ++x) {
        uint32_t c = row[x];
        sum[x * 3] += (c >> 16) & 255;
        sum[x * 3 + 1] += (c >> 8) & 255;
        sum[x * 3 + 2] += c & 255;
    }
}

}  // namespace

void OmbraChartLibrary::RedrawChart(Image& store, const ChartViewState& v, int16_t quality) {
    int w = std::max(0, v.Width), h = std::max(0, v.Height);
    if (store.width != w || store.height != h) store = Image(w, h);
    if (!shown_ || w == 0 || h == 0 || !(v.ViewFactor > 0) || !std::isfinite(v.OriginX) || !std::isfinite(v.OriginY)) {
        std::fill(store.pixels.begin(), store.pixels.end(), background_);
        return;
    }
    const RasterHeader& base = shown_->Header();
    double rs = base.LowRes ? double(base.ResolutionFirst) / base.ResolutionSecond : 1.0;
    double step = v.ViewFactor * rs;  // raster pixels a screen pixel
    // A view showing two or more raster pixels a screen pixel draws from the
    // reduced level nearest to one pixel a screen pixel, so that a zoomed-out
    // redraw touches no more tiles than one at full size.
    int level = 0;
    const int maxLevel = shown_->MaxLevel();
    while (level < maxLevel && step >= 2 * (1 - 1e-9)) {
        step /= 2;
        rs /= 2;
        ++level;
    }
    const RasterHeader rh = shown_->LevelHeader(level);
    const int samples = quality == 3 && step > 1.01 ? 2 : 1;
    const std::vector<ColumnMap> cols = MapColumns(v, rs, samples, w, int(rh.Width), int(rh.TileSize));
    // One band of tiles a sample row.
    std::vector<RowSampler> bands;
    for (int s = 0; s < samples; ++s) bands.emplace_back(*shown_, level, lut_, background_, w);

    if (samples == 1) {
        for (int y = 0; y < h; ++y)
            bands[0].Paint(RasterRow(v, rs, y, 0.5), cols[0], store.pixels.data() + size_t(y) * size_t(w));
        return;
    }
    // Reducing: the mean of samples x samples colours of the chart pixels covered.
    std::vector<uint32_t> sample(static_cast<size_t>(w));
    std::vector<uint32_t> sum(size_t(w) * 3);
    const uint32_t n = uint32_t(samples * samples);
    for (int y = 0; y < h; ++y) {
        std::fill(sum.begin(), sum.end(), 0u);
        for (int sy = 0; sy < samples; ++sy) {
            long ry = RasterRow(v, rs, y, (sy + 0.5) / samples);
            for (int sx = 0; sx < samples; ++sx) {
                bands[size_t(sy)].Paint(ry, cols[size_t(sx)], sample.data());
                AddColours(sample, sum);
            }
        }
        uint32_t* out = store.pixels.data() + size_t(y) * size_t(w);
        for (int x = 0; x < w; ++x)
            out[x] = 0xFF000000u | ((sum[size_t(x) * 3] / n) << 16) | ((sum[size_t(x) * 3 + 1] / n) << 8) | (sum[size_t(x) * 3 + 2] / n);
    }
}

bool OmbraChartLibrary::FullRasterIndices(std::vector<uint8_t>& indices, int& width, int& height) {
    if (!full_) return false;
    const RasterHeader& h = full_->Header();
    width = int(h.Width);
    height = int(h.Height);
    indices.assign(size_t(width) * size_t(height), 0);
    const uint32_t ts = h.TileSize;
    for (uint32_t ty = 0; ty < h.TilesDown; ++ty)
        for (uint32_t tx = 0; tx < h.TilesAcross; ++tx) {
            auto t = full_->GetTile(tx, ty);
            for (uint32_t r = 0; r < ts && ty * ts + r < h.Height; ++r) {
                uint32_t n = std::min(ts, h.Width - tx * ts);
                std::copy(t->data() + size_t(r) * ts, t->data() + size_t(r) * ts + n,
                          indices.data() + size_t(ty * ts + r) * size_t(width) + tx * ts);
            }
        }
    return full_->DamagedTiles() == 0;
}

bool OmbraChartLibrary::ExportFullRaster(Image& out, int16_t paletteMode) {
    std::vector<uint8_t> idx;
    int w, h;
    int16_t keep = paletteMode_;
    ModifySystemPalette(paletteMode);
    bool ok = FullRasterIndices(idx, w, h);
    if (full_) {
        out = Image(w, h);
        for (size_t i = 0; i < idx.size(); ++i) out.pixels[i] = lut_[idx[i]];
    }
    ModifySystemPalette(keep);
    return ok && full_;
}

void OmbraChartLibrary::SetTileCacheCapacity(size_t tiles) {
    cacheTiles_ = tiles ? tiles : 1;
    if (full_) full_->SetCacheCapacity(cacheTiles_);
    if (low_) low_->SetCacheCapacity(cacheTiles_);
}

size_t OmbraChartLibrary::CachedTiles() const { return shown_ ? shown_->CachedTiles() : 0; }

// ---------------------------------------------------------------------
// Symbols

bool OmbraChartLibrary::ReadBoatOutline(const std::string& path) {
    error_.clear();
    struct stat st;
    std::string p = ResolvePath(path);
    if (::stat(p.c_str(), &st) != 0 || st.st_size > (1 << 20)) {
        error_ = "the vessel outline is missing";
        return false;
    }
    auto text = ReadWholeFile(p, &error_);
    BoatShape shape;
    if (!text || !ParseBoatOutline(*text, shape, error_)) return false;
    boat_ = std::move(shape);
    return true;
}

void OmbraChartLibrary::DrawBoat(Canvas& c, ChartPoint at, double screenAngle, double pixelsPerMetre, Rgb colour) {
    c.SetPen({0, 1, PenStyle::Solid});
    c.SetBrush({colour, BrushStyle::Solid});
    c.Polygon(BoatPolygon(boat_, at, screenAngle, pixelsPerMetre));
}

void OmbraChartLibrary::DrawTarget(Canvas& c, ChartPoint at, double screenAngle, int16_t kind, Rgb colour) {
    double a = screenAngle * kDegToRad, s = std::sin(a), co = std::cos(a);
    auto pt = [&](double x, double y) {  // x starboard, y forward
        return ChartPoint{int32_t(std::lround(at.x + x * co + y * s)), int32_t(std::lround(at.y + x * s - y * co))};
    };
    c.SetPen({colour, 2, PenStyle::Solid});
    c.SetBrush({0, BrushStyle::Null});
    if (kind == 0) {
        c.Polygon({pt(0, 10), pt(6, -6), pt(-6, -6)});
    } else if (kind == 1) {
        c.Ellipse({at.x - 6, at.y - 6, at.x + 7, at.y + 7});
        c.Line(pt(0, 6), pt(0, 16));
    } else {
        c.Rectangle({at.x - 5, at.y - 5, at.x + 6, at.y + 6});
        c.Line(pt(0, 5), pt(0, 15));
    }
}

void OmbraChartLibrary::CourseDistanceRL(const LatLong& from, const LatLong& to, double& course, double& distance) {
    ombra::CourseDistanceRL(from, to, course, distance);
}

void OmbraChartLibrary::CourseDistanceGC(const LatLong& from, const LatLong& to, double& course, double& distance) {
    ombra::CourseDistanceGC(from, to, course, distance);
}

// ---------------------------------------------------------------------
// Files

std::string OmbraChartLibrary::DecryptPlanFile(const std::string& planPath) {
    struct stat st;
    std::string p = ResolvePath(planPath);
    if (::stat(p.c_str(), &st) != 0 || !S_ISREG(st.st_mode) || size_t(st.st_size) > kMaxPlanFileBytes) return "";
    auto text = ReadWholeFile(p);
    if (!text || text->compare(0, 3, "PLN") != 0) return "";
    size_t nl = text->find('\n');
    if (nl == std::string::npos) return "";
    return text->substr(nl + 1);
}

bool OmbraChartLibrary::CheckCRC(const std::string& path) {
    if (path.size() < 4) return false;
    std::string base = path.substr(0, path.size() - 4);
    std::string ext = UCase(path.substr(path.size() - 3));
    std::string why;
    if (ext == "CHI" || ext == "CHR") return TiledRaster::Verify(Ext(base, "CHI"), Ext(base, "CHR"), why);
    if (ext == "LOI" || ext == "LOR") return TiledRaster::Verify(Ext(base, "LOI"), Ext(base, "LOR"), why);
    return false;
}

// ---------------------------------------------------------------------
// Chart maintenance

namespace {
void FillFromKap(const KapHeader& h, const std::string& kapPath, ImportedChart& chart) {
    if (chart.Number.empty()) chart.Number = h.Number;
    chart.Title = h.Name;
    chart.EditionDate = h.EditionDate;
    chart.Width = h.Width;
    chart.Height = h.Height;
    chart.ColourCount = h.ColourCount;
    chart.Plans.resize(1);
    ImportedPlan& p = chart.Plans[0];
    p.Title = h.Name;
    p.Scale = ScaleDigits(h.Scale);
    p.HorizDatum = DatumCode(h.Datum);
    p.DepthUnits = DepthUnitsCode(h.DepthUnits);
    p.DepthDatum = DepthDatumCode(h.SoundingDatum);
    chart.Notes.clear();
    size_t slash = kapPath.find_last_of("/\\");
    chart.Notes.push_back("Source: " + (slash == std::string::npos ? kapPath : kapPath.substr(slash + 1)));
    if (!h.Projection.empty()) chart.Notes.push_back("Projection: " + h.Projection);
    if (!h.Datum.empty()) chart.Notes.push_back("Horizontal datum: " + h.Datum);
    if (!h.DepthUnits.empty()) chart.Notes.push_back("Depths in " + h.DepthUnits);
    if (!h.SoundingDatum.empty()) chart.Notes.push_back("Sounding datum: " + h.SoundingDatum);
    for (auto& c : h.Comments)
        if (!c.empty()) chart.Notes.push_back(c);
}
}  // namespace

bool OmbraChartLibrary::InspectKap(const std::string& kapPath, ImportedChart& chart, std::string& message) {
    KapReader r;
    if (!r.OpenFile(kapPath, kapLimits_)) {
        message = r.Error();
        return false;
    }
    FillFromKap(r.Header(), kapPath, chart);
    return true;
}

bool OmbraChartLibrary::WriteSet(const std::string& basePath, const std::vector<std::pair<std::string, std::string>>& files,
                                 std::string& message) {
    std::vector<std::string> written;
    for (auto& f : files) {
        std::string why;
        std::string path = Ext(basePath, f.first);
        if (!SaveFileAtomic(path, f.second, &why)) {
            for (auto& w : written) ::unlink(ResolvePath(w).c_str());
            message = "Cannot write " + path + ": " + why;
            return false;
        }
        written.push_back(path);
    }
    return true;
}

bool OmbraChartLibrary::ImportKap(const std::string& kapPath, const std::string& basePath, ImportedChart& chart,
                                  std::string& message, const ImportProgress& progress) {
    KapReader r;
    if (!r.OpenFile(kapPath, kapLimits_)) {
        message = r.Error();
        return false;
    }
    const KapHeader& h = r.Header();
    FillFromKap(h, kapPath, chart);
    PlanGeoref geo;
    std::string why;
    if (!FitWithOutline(SourceFromKap(h), h.Width, h.Height, geo, why)) {
        message = "The chart's reference points cannot be used: " + why + ".";
        return false;
    }
    FillPlan(chart.Plans[0], geo);

    const uint32_t w = uint32_t(h.Width), hh = uint32_t(h.Height);
    const uint32_t f = LowResFactor(w, hh);
    RasterWriter full(w, hh, false);
    RasterReducer reducer(w, hh, f);
    RasterWriter low(reducer.OutWidth(), reducer.OutHeight(), true, 1, f);
    std::vector<uint8_t> row(w), lowRow;
    for (uint32_t y = 0; y < hh; ++y) {
        if (!r.NextRow(row.data())) {
            message = r.Error();
            return false;
        }
        full.AddRow(row.data());
        if (reducer.AddRow(row.data(), lowRow)) low.AddRow(lowRow.data());
        if (progress && (y % 64 == 0) && !progress(double(y) / hh)) {
            message = "The installation was cancelled.";
            return false;
        }
    }
    if (reducer.Flush(lowRow)) low.AddRow(lowRow.data());
    std::string chr, chi, lor, loi;
    if (!full.Finish(chr, chi) || !low.Finish(lor, loi)) {
        message = "The chart's raster could not be written.";
        return false;
    }
    // Palette: the file's colour n + 1 is index n (see KapReader.h).
    std::vector<PaletteColour> pal(size_t(std::max(h.ColourCount, 1)));
    auto pick = [](const std::vector<int64_t>& t, size_t i) -> int64_t { return i < t.size() ? t[i] : -1; };
    for (size_t i = 0; i < pal.size(); ++i) {
        int64_t rgb = pick(h.Rgb, i + 1), day = pick(h.Day, i + 1), dusk = pick(h.Dusk, i + 1), night = pick(h.Night, i + 1);
        Rgb d = Rgb(day >= 0 ? day : rgb >= 0 ? rgb : 0);
        pal[i].Day = Rgb(rgb >= 0 ? rgb : d);
        pal[i].Twilight = dusk >= 0 ? Rgb(dusk) : Dim(pal[i].Day, 0.55);
        pal[i].Night = night >= 0 ? Rgb(night) : Dim(pal[i].Day, 0.22);
        pal[i].Kind = GuessKind(pal[i].Day);
    }
    std::string palText = PaletteText(ChartFileLine("PAL", chart.Country, chart.Number, chart.IssueDate, "  Ombra palette"), pal);
    if (progress) progress(1.0);
    return WriteSet(basePath, {{"CHR", chr}, {"CHI", chi}, {"LOR", lor}, {"LOI", loi}, {"PAL", palText}}, message);
}

bool OmbraChartLibrary::ImportImage(const IndexedChartImage& image, const std::string& basePath, ImportedChart& chart,
                                    std::string& message) {
    if (image.Width <= 0 || image.Height <= 0 || image.Width > 65535 || image.Height > 65535 ||
        image.Pixels.size() != size_t(image.Width) * size_t(image.Height)) {
        message = "The chart image has an impossible size.";
        return false;
    }
    if (image.Palette.empty() || image.Palette.size() > 256 || image.Plans.empty()) {
        message = "The chart image has no palette or no plans.";
        return false;
    }
    if (chart.Plans.size() < image.Plans.size()) chart.Plans.resize(image.Plans.size());
    for (size_t p = 0; p < image.Plans.size(); ++p) {
        PlanGeoref geo;
        std::string why;
        if (!FitWithOutline(image.Plans[p], image.Width, image.Height, geo, why)) {
            message = "Plan " + std::to_string(p) + " cannot be georeferenced: " + why + ".";
            return false;
        }
        FillPlan(chart.Plans[p], geo);
    }
    chart.Width = image.Width;
    chart.Height = image.Height;
    chart.ColourCount = int(image.Palette.size());
    const uint32_t w = uint32_t(image.Width), hh = uint32_t(image.Height);
    const uint32_t f = LowResFactor(w, hh);
    RasterWriter full(w, hh, false);
    RasterReducer reducer(w, hh, f);
    RasterWriter low(reducer.OutWidth(), reducer.OutHeight(), true, 1, f);
    std::vector<uint8_t> lowRow;
    for (uint32_t y = 0; y < hh; ++y) {
        const uint8_t* row = image.Pixels.data() + size_t(y) * w;
        full.AddRow(row);
        if (reducer.AddRow(row, lowRow)) low.AddRow(lowRow.data());
    }
    if (reducer.Flush(lowRow)) low.AddRow(lowRow.data());
    std::string chr, chi, lor, loi;
    if (!full.Finish(chr, chi) || !low.Finish(lor, loi)) {
        message = "The chart's raster could not be written.";
        return false;
    }
    std::string palText =
        PaletteText(ChartFileLine("PAL", chart.Country, chart.Number, chart.IssueDate, "  Ombra palette"), image.Palette);
    return WriteSet(basePath, {{"CHR", chr}, {"CHI", chi}, {"LOR", lor}, {"LOI", loi}, {"PAL", palText}}, message);
}

}  // namespace ombra::chartlib
