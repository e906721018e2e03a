// Tiled rasters: what is written is read back pixel for pixel at every
// size around the tile edges; damage is found by the checksums; the
// low-resolution reduction keeps the commonest colour.
#include <gtest/gtest.h>
#include <zlib.h>

#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/chartlib/TiledRaster.h"
#include "tests/platform/chartlib/KapWriter.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

using namespace chartlib;

uint8_t Value(uint32_t x, uint32_t y) { return uint8_t((x * 7 + y * 13 + (x / 17) * (y / 11)) % 251); }

void WriteRaster(const TempDir& dir, uint32_t w, uint32_t h, uint32_t tile) {
    RasterWriter wr(w, h, false, 1, 1, tile);
    std::vector<uint8_t> row(w);
    for (uint32_t y = 0; y < h; ++y) {
        for (uint32_t x = 0; x < w; ++x) row[x] = Value(x, y);
        wr.AddRow(row.data());
    }
    std::string r, i;
    ASSERT_TRUE(wr.Finish(r, i));
    WriteFile(dir / "R.CHR", r);
    WriteFile(dir / "R.CHI", i);
}

TEST(TiledRaster, RoundTripAtTileEdges) {
    struct Case {
        uint32_t w, h, tile;
    } cases[] = {{1, 1, 256}, {255, 257, 256}, {256, 256, 256}, {257, 1, 256}, {600, 300, 64}, {33, 700, 16}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.w) + "x" + std::to_string(c.h));
        TempDir dir;
        WriteRaster(dir, c.w, c.h, c.tile);
        TiledRaster t;
        std::string why;
        ASSERT_TRUE(t.Open(dir / "R.CHI", dir / "R.CHR", why)) << why;
        EXPECT_EQ(t.Header().Width, c.w);
        EXPECT_EQ(t.Header().TilesAcross, (c.w + c.tile - 1) / c.tile);
        t.SetCacheCapacity(3);  // the cache evicts and decodes again
        for (uint32_t y = 0; y < c.h; y += std::max(1u, c.h / 37))
            for (uint32_t x = 0; x < c.w; ++x) ASSERT_EQ(t.Pixel(x, y), Value(x, y)) << x << "," << y;
        EXPECT_LE(t.CachedTiles(), 3u);
        EXPECT_EQ(t.DamagedTiles(), 0);
        EXPECT_TRUE(TiledRaster::Verify(dir / "R.CHI", dir / "R.CHR", why)) << why;
    }
}

TEST(TiledRaster, DamageIsFoundAndDrawnAsZero) {
    TempDir dir;
    WriteRaster(dir, 600, 300, 256);
    std::string why;
    // A flipped byte inside a tile: the index opens, that tile reads as zeros.
    std::string r = ReadFile(dir / "R.CHR");
    r[40] = char(r[40] ^ 0x55);
    WriteFile(dir / "R.CHR", r);
    TiledRaster t;
    ASSERT_TRUE(t.Open(dir / "R.CHI", dir / "R.CHR", why));
    EXPECT_EQ(t.Pixel(5, 5), 0);
    EXPECT_EQ(t.DamagedTiles(), 1);
    EXPECT_EQ(t.Pixel(300, 5), Value(300, 5));  // the next tile is sound
    EXPECT_FALSE(TiledRaster::Verify(dir / "R.CHI", dir / "R.CHR", why));
    EXPECT_NE(why.find("tile 0"), std::string::npos) << why;

    // Index damage: refused outright, with the reason.
    WriteRaster(dir, 600, 300, 256);
    std::string idx = ReadFile(dir / "R.CHI");
    struct Bad {
        std::string bytes, message;
    } bad[] = {
        {idx.substr(0, 30), "truncated"},
        {"XXXXXXXX" + idx.substr(8), "not an Ombra raster index"},
        {idx.substr(0, 20) + "\xff" + idx.substr(21), "checksum"},
        {idx + "1234", "checksum"},
    };
    for (const Bad& b : bad) {
        WriteFile(dir / "R.CHI", b.bytes);
        TiledRaster t2;
        EXPECT_FALSE(t2.Open(dir / "R.CHI", dir / "R.CHR", why));
        EXPECT_NE(why.find(b.message), std::string::npos) << why;
    }
    // A raster file of the wrong length for its index.
    WriteFile(dir / "R.CHI", idx);
    WriteFile(dir / "R.CHR", r.substr(0, r.size() - 1));
    TiledRaster t3;
    EXPECT_FALSE(t3.Open(dir / "R.CHI", dir / "R.CHR", why));
}

TEST(TiledRaster, ParseIndexRejectsImpossibleHeaders) {
    RasterWriter wr(20, 20, false, 1, 1, 16);
    std::vector<uint8_t> row(20, 1);
    for (int y = 0; y < 20; ++y) wr.AddRow(row.data());
    std::string r, i;
    ASSERT_TRUE(wr.Finish(r, i));
    RasterHeader h;
    std::vector<TileEntry> tiles;
    uint64_t size;
    std::string why;
    ASSERT_TRUE(ParseRasterIndex(i, h, tiles, size, why)) << why;
    EXPECT_EQ(tiles.size(), 4u);
    EXPECT_EQ(size, r.size());
    // Fields changed under a correct checksum: each is caught by its own test.
    auto patched = [&](size_t at, uint32_t v) {
        std::string b = i;
        for (int k = 0; k < 4; ++k) b[at + size_t(k)] = char((v >> (8 * k)) & 0xff);
        uint32_t crc = uint32_t(::crc32(0L, reinterpret_cast<const Bytef*>(b.data()), uInt(b.size() - 4)));
        for (int k = 0; k < 4; ++k) b[b.size() - 4 + size_t(k)] = char((crc >> (8 * k)) & 0xff);
        return b;
    };
    struct Case {
        size_t at;
        uint32_t value;
        const char* message;
    } cases[] = {{12, 0, "size is impossible"},     {20, 8, "tile size"},        {24, 3, "tile grid"},
                 {32, 0, "resolution numbers"},     {40, 2, "compression"},      {8, 9, "version"},
                 {52, 0xFFFFFFF0u, "outside the raster file"}};
    for (const Case& c : cases) {
        EXPECT_FALSE(ParseRasterIndex(patched(c.at, c.value), h, tiles, size, why)) << c.message;
        EXPECT_NE(why.find(c.message), std::string::npos) << why;
    }
}

TEST(RasterReducer, CommonestColourOfEachBlock) {
    // 4 x 4 blocks, factor 2: each block takes its commonest index, ties to the lower.
    RasterReducer red(5, 4, 2);
    const uint8_t rows[4][5] = {{1, 1, 2, 3, 9}, {1, 2, 3, 3, 9}, {4, 4, 5, 5, 7}, {6, 4, 6, 5, 8}};
    std::vector<uint8_t> out;
    std::vector<std::vector<uint8_t>> got;
    for (auto& r : rows)
        if (red.AddRow(r, out)) got.push_back(out);
    EXPECT_FALSE(red.Flush(out));
    ASSERT_EQ(got.size(), 2u);
    EXPECT_EQ(got[0], (std::vector<uint8_t>{1, 3, 9}));
    EXPECT_EQ(got[1], (std::vector<uint8_t>{4, 5, 7}));
    EXPECT_EQ(red.OutWidth(), 3u);
}

}  // namespace
}  // namespace ombra::test

namespace ombra::test {
namespace {

// The commonest index of each block, counted the plain way.
std::vector<std::vector<uint8_t>> ReduceByHand(const std::vector<std::vector<uint8_t>>& rows, uint32_t f) {
    const uint32_t w = uint32_t(rows[0].size()), h = uint32_t(rows.size());
    std::vector<std::vector<uint8_t>> out;
    for (uint32_t y0 = 0; y0 < h; y0 += f) {
        std::vector<uint8_t> line;
        for (uint32_t x0 = 0; x0 < w; x0 += f) {
            std::vector<int> count(256, 0);
            for (uint32_t y = y0; y < std::min(h, y0 + f); ++y)
                for (uint32_t x = x0; x < std::min(w, x0 + f); ++x) ++count[rows[y][x]];
            line.push_back(uint8_t(std::max_element(count.begin(), count.end()) - count.begin()));
        }
        out.push_back(line);
    }
    return out;
}

TEST(RasterReducer, AgreesWithCountingEveryBlock) {
    // Few indices (many ties), all 256, blocks cut by the edges, and blocks
    // larger than the reducer's list of indices seen.
    struct Case {
        uint32_t w, h, f, colours;
    } cases[] = {{37, 29, 2, 3}, {64, 64, 4, 2}, {101, 77, 4, 256}, {50, 41, 3, 5}, {161, 170, 80, 256}, {9, 9, 1, 7}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.w) + "x" + std::to_string(c.h) + " by " + std::to_string(c.f));
        std::vector<std::vector<uint8_t>> rows(c.h, std::vector<uint8_t>(c.w));
        uint32_t s = 12345;
        for (auto& r : rows)
            for (auto& v : r) {
                s = s * 1103515245u + 12345u;
                v = uint8_t((s >> 16) % c.colours);
            }
        chartlib::RasterReducer red(c.w, c.h, c.f);
        std::vector<std::vector<uint8_t>> got;
        std::vector<uint8_t> out;
        for (auto& r : rows)
            if (red.AddRow(r.data(), out)) got.push_back(out);
        if (red.Flush(out)) got.push_back(out);
        EXPECT_EQ(got, ReduceByHand(rows, c.f));
    }
}

}  // namespace
}  // namespace ombra::test

namespace ombra::test {
namespace {

// Level k of a raster by hand: level k - 1 halved, each pixel the
// commonest of the 2 x 2 (fewer at the right and bottom edges) it covers.
std::vector<std::vector<uint8_t>> HalveByHand(const std::vector<std::vector<uint8_t>>& rows) {
    const size_t h = rows.size(), w = rows[0].size();
    std::vector<std::vector<uint8_t>> out((h + 1) / 2, std::vector<uint8_t>((w + 1) / 2));
    for (size_t y = 0; y < out.size(); ++y)
        for (size_t x = 0; x < out[y].size(); ++x) {
            std::vector<int> count(256, 0);
            for (size_t yy = 2 * y; yy < std::min(h, 2 * y + 2); ++yy)
                for (size_t xx = 2 * x; xx < std::min(w, 2 * x + 2); ++xx) ++count[rows[yy][xx]];
            out[y][x] = uint8_t(std::max_element(count.begin(), count.end()) - count.begin());
        }
    return out;
}

TEST(TiledRaster, ReducedLevelsHalveTheLevelBelow) {
    // Sizes that end inside a tile, at a tile edge, and one pixel past it;
    // a small cache, so that levels are made again from evicted tiles.
    struct Case {
        uint32_t w, h, tile, colours;
        size_t cache;
    } cases[] = {{300, 170, 16, 3, 8}, {256, 64, 16, 2, 4}, {257, 33, 16, 256, 512}, {1000, 700, 64, 6, 6}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.w) + "x" + std::to_string(c.h) + " tiles of " + std::to_string(c.tile));
        std::vector<std::vector<uint8_t>> rows(c.h, std::vector<uint8_t>(c.w));
        uint32_t s = 99;
        for (uint32_t y = 0; y < c.h; ++y)
            for (uint32_t x = 0; x < c.w; ++x) {
                s = s * 1103515245u + 12345u;
                // Patches with noise, so that ties and clear majorities both occur.
                rows[y][x] = uint8_t(((s >> 16) % 4 == 0 ? (s >> 8) : (x / 5 + y / 3)) % c.colours);
            }
        TempDir dir;
        RasterWriter wr(c.w, c.h, false, 1, 1, c.tile);
        for (auto& r : rows) wr.AddRow(r.data());
        std::string rb, ib, why;
        ASSERT_TRUE(wr.Finish(rb, ib));
        WriteFile(dir / "R.CHR", rb);
        WriteFile(dir / "R.CHI", ib);
        TiledRaster t;
        ASSERT_TRUE(t.Open(dir / "R.CHI", dir / "R.CHR", why)) << why;
        t.SetCacheCapacity(c.cache);
        ASSERT_GE(t.MaxLevel(), 1);
        auto expected = rows;
        for (int level = 1; level <= t.MaxLevel(); ++level) {
            SCOPED_TRACE("level " + std::to_string(level));
            expected = HalveByHand(expected);
            const RasterHeader lh = t.LevelHeader(level);
            ASSERT_EQ(lh.Width, expected[0].size());
            ASSERT_EQ(lh.Height, expected.size());
            EXPECT_EQ(lh.ResolutionSecond, 1u << level);
            for (uint32_t ty = 0; ty < lh.TilesDown; ++ty)
                for (uint32_t tx = 0; tx < lh.TilesAcross; ++tx) {
                    auto tile = t.GetLevelTile(level, tx, ty);
                    for (uint32_t y = ty * c.tile; y < std::min(lh.Height, (ty + 1) * c.tile); ++y)
                        for (uint32_t x = tx * c.tile; x < std::min(lh.Width, (tx + 1) * c.tile); ++x)
                            ASSERT_EQ((*tile)[size_t(y % c.tile) * c.tile + x % c.tile], expected[y][x]) << x << "," << y;
                }
            EXPECT_LE(t.CachedLevelTiles(level), std::max<size_t>(c.cache / 2, 4));
        }
        // The last level is one pixel on its longer side.
        EXPECT_EQ(std::max(t.LevelHeader(t.MaxLevel()).Width, t.LevelHeader(t.MaxLevel()).Height), 1u);
        EXPECT_EQ(t.DamagedTiles(), 0);
    }
}


TEST(OmbraChartLibrary, ZoomedOutViewsDrawTheReducedLevel) {
    // A view of f chart pixels a screen pixel (f a power of two) shows each
    // screen pixel in the colour of the reduced level's pixel under it, on
    // both rasters and at both qualities; 1:1 shows the raster itself.
    TempDir dir;
    KapShape shape;
    shape.Width = 300;
    shape.Height = 200;
    WriteFile(dir / "C.KAP", WriteKap(shape));
    OmbraChartLibrary lib;
    ImportedChart chart;
    chart.Number = "C";
    std::string why, tag;
    ASSERT_TRUE(lib.ImportKap(dir / "C.KAP", dir / "C", chart, why, {})) << why;
    WriteFile(dir / "C.P00", "PLN  C       20240101\r\n0" + std::string(250, ' ') + "\r\n" + chart.Plans[0].GeorefText);
    int16_t layout[5] = {0, 1, 0, 0, 0};
    ASSERT_EQ(lib.OpenChart(dir / "C.HDR", layout, "", tag), 0) << lib.LastError();
    ASSERT_TRUE(lib.ReadChart(dir / "C.CHR", 0));
    std::vector<uint8_t> idx;
    int w = 0, h = 0;
    ASSERT_TRUE(lib.FullRasterIndices(idx, w, h));
    std::vector<std::vector<uint8_t>> full{size_t(h), std::vector<uint8_t>(size_t(w))};
    for (int y = 0; y < h; ++y) std::copy(idx.begin() + y * w, idx.begin() + (y + 1) * w, full[size_t(y)].begin());
    // The low-resolution raster is the full one reduced by 2 (under 2048
    // pixels), its own levels reduced from it.
    std::vector<uint8_t> lowIdx;
    {
        RasterReducer red(uint32_t(w), uint32_t(h), 2);
        std::vector<uint8_t> out;
        for (auto& r : full) {
            if (red.AddRow(r.data(), out)) lowIdx.insert(lowIdx.end(), out.begin(), out.end());
        }
        if (red.Flush(out)) lowIdx.insert(lowIdx.end(), out.begin(), out.end());
    }
    std::vector<std::vector<uint8_t>> low{size_t((h + 1) / 2), std::vector<uint8_t>(size_t((w + 1) / 2))};
    for (size_t y = 0; y < low.size(); ++y)
        std::copy(lowIdx.begin() + long(y * low[0].size()), lowIdx.begin() + long((y + 1) * low[0].size()), low[y].begin());

    struct Case {
        const char* raster;
        int level;  // of the raster shown
        int16_t quality;
    } cases[] = {{"CHR", 0, 1}, {"CHR", 1, 1}, {"CHR", 1, 3}, {"CHR", 2, 1}, {"CHR", 3, 3}, {"LOR", 1, 3}, {"LOR", 2, 1}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.raster) + " level " + std::to_string(c.level) + " quality " + std::to_string(c.quality));
        const bool isLow = std::string(c.raster) == "LOR";
        ASSERT_TRUE(lib.ReadChart(dir / (std::string("C.") + c.raster), 0));
        auto expected = isLow ? low : full;
        for (int k = 0; k < c.level; ++k) expected = HalveByHand(expected);
        const int f = (isLow ? 2 : 1) << c.level;  // full-resolution pixels a screen pixel
        ChartViewState v;
        v.Width = int(expected[0].size()) + 3;  // a margin past the raster's edge
        v.Height = int(expected.size()) + 2;
        v.ViewFactor = f;
        Image store;
        lib.RedrawChart(store, v, c.quality);
        const uint32_t background = store.pixels[size_t(v.Height - 1) * size_t(v.Width) + size_t(v.Width - 1)];
        for (int y = 0; y < v.Height; ++y)
            for (int x = 0; x < v.Width; ++x) {
                const uint32_t got = store.pixels[size_t(y) * size_t(v.Width) + size_t(x)];
                if (size_t(y) < expected.size() && size_t(x) < expected[0].size())
                    ASSERT_EQ(got & 0xFFFFFFu, lib.PaletteColourOf(expected[size_t(y)][size_t(x)])) << x << "," << y;
                else
                    ASSERT_EQ(got, background) << x << "," << y;
            }
    }
}

}  // namespace
}  // namespace ombra::test
