// OmbraChartLibrary: Ombra's own chart engine behind the ChartLibrary
// interface, over the files of platform/chartlib:
//
//   NUMBER.Pnn     plan files: the plan record, then the georeferencing (Georef.h)
//   NUMBER.PAL     palette in three lights (PaletteFile.h)
//   NUMBER.CHR/CHI full-resolution tiles and their index (TiledRaster.h)
//   NUMBER.LOR/LOI low-resolution tiles and their index
//
// One chart is open at a time. OpenChart reads every plan's georeferencing
// and the palette and opens the full-resolution index; ReadChart chooses
// the raster shown (".CHR" or ".LOR"). RedrawChart paints only the tiles in
// view, and keeps decoded tiles in a cache (512 tiles, 32 MB, by default),
// so that panning and redrawing cost a copy through the palette. A
// zoomed-out view draws from a reduced level of the raster (see
// TiledRaster::GetLevelTile), so it costs no more than one at 1:1.
//
// Datums. Each plan may carry a shift (chart datum = WGS84 + shift, in
// seconds of arc); the datum flag of the mapping calls chooses whether the
// position given or wanted is WGS84 (1) or the plan's own (0).
//
// Open codes: 0 open; 1 the plan files give no georeferenced plan; 2 the
// palette is missing or damaged; 3 the raster index is missing or damaged.
#pragma once
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/api/ChartLibrary.h"
#include "platform/chartlib/BoatShape.h"
#include "platform/chartlib/Georef.h"
#include "platform/chartlib/KapReader.h"
#include "platform/chartlib/TiledRaster.h"

namespace ombra::chartlib {

class OmbraChartLibrary : public ChartLibrary {
public:
    OmbraChartLibrary();
    ~OmbraChartLibrary() override;

    int16_t OpenChart(const std::string& headerPath, const int16_t layout[5], const std::string& reference3,
                      std::string& libraryTag) override;
    bool ReadChart(const std::string& rasterPath, int16_t paletteMode) override;
    ChartRasterInfo RasterInfo() const override;
    void SetPixelSize(ChartViewState& view, int16_t pixelSize) override;
    void RedrawChart(Image& store, const ChartViewState& view, int16_t quality) override;
    void CloseChart() override;

    bool GetLatLong(int16_t datumFlag, int16_t plan, LatLong& pos, const ChartPoint& pt) override;
    bool GetPixelPt(int16_t datumFlag, int16_t plan, const LatLong& pos, ChartPoint& pt) override;
    bool PixelToPosition(int16_t datumFlag, int16_t plan, double x, double y, LatLong& pos) override;
    bool PositionToPixel(int16_t datumFlag, int16_t plan, const LatLong& pos, double& x, double& y) override;
    float GetPixelsPerNM(int16_t plan) override;
    bool IsPointSea(const LatLong& pos) override;
    bool IsLatLongInPlan(int16_t datumFlag, int16_t plan, const LatLong& pos) override;
    bool IsChartPtInPlan(int16_t plan, const ChartPoint& pt) override;

    void SaveSystemPalette() override {}
    void RestoreSystemPalette() override {}
    void ModifySystemPalette(int16_t paletteMode) override;
    Rgb PaletteColourOf(int index) const override;

    bool ReadBoatOutline(const std::string& path) override;
    void DrawBoat(Canvas& canvas, ChartPoint at, double screenAngle, double pixelsPerMetre, Rgb colour) override;
    void DrawTarget(Canvas& canvas, ChartPoint at, double screenAngle, int16_t kind, Rgb colour) override;

    void CourseDistanceRL(const LatLong& from, const LatLong& to, double& course, double& distance) override;
    void CourseDistanceGC(const LatLong& from, const LatLong& to, double& course, double& distance) override;

    std::string DecryptPlanFile(const std::string& planPath) override;
    bool CheckCRC(const std::string& path) override;

    bool InspectKap(const std::string& kapPath, ImportedChart& chart, std::string& message) override;
    bool ImportKap(const std::string& kapPath, const std::string& basePath, ImportedChart& chart, std::string& message,
                   const ImportProgress& progress) override;
    bool ImportImage(const IndexedChartImage& image, const std::string& basePath, ImportedChart& chart,
                     std::string& message) override;

    // --- Beyond the interface: tools and tests ---------------------------
    // The whole full-resolution raster of the open chart as indices, or
    // painted in a palette mode.
    bool FullRasterIndices(std::vector<uint8_t>& indices, int& width, int& height);
    bool ExportFullRaster(Image& out, int16_t paletteMode);
    void SetTileCacheCapacity(size_t tiles);
    size_t CachedTiles() const;
    // Why the last OpenChart, ReadChart or ReadBoatOutline failed.
    const std::string& LastError() const { return error_; }
    int16_t PaletteMode() const { return paletteMode_; }
    // The plan's georeferencing (nullptr when the plan has none).
    const PlanGeoref* Georef(int16_t plan) const;
    // Limits for KAP files (the fuzz target lowers them).
    void SetKapLimits(const KapLimits& limits) { kapLimits_ = limits; }

private:
    struct PlanState {
        bool Valid = false;
        PlanGeoref Geo;
        std::vector<std::pair<double, double>> PixelOutline;
    };
    const PlanState* Plan(int16_t plan) const;
    void ToLocal(int16_t datumFlag, const PlanState& p, const LatLong& in, double& lat, double& lon) const;
    void BuildLut();
    bool WriteSet(const std::string& basePath, const std::vector<std::pair<std::string, std::string>>& files,
                  std::string& message);

    std::string base_;
    std::vector<PlanState> plans_;
    std::vector<PaletteColour> palette_;
    std::array<uint32_t, 256> lut_{};
    uint32_t background_ = 0xFFE0E0E0u;
    int16_t paletteMode_ = 0;
    std::unique_ptr<TiledRaster> full_, low_;
    TiledRaster* shown_ = nullptr;
    size_t cacheTiles_ = 512;
    BoatShape boat_;
    std::string error_;
    KapLimits kapLimits_;
};

// Minutes of shift as the plan record's 7 characters: "+0.0500".
std::string ShiftText(double seconds);

}  // namespace ombra::chartlib
