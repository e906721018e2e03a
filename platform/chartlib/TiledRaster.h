// TiledRaster: Ombra's raster files, the full-resolution ".CHR" with its
// index ".CHI" and the low-resolution ".LOR" with ".LOI".
//
// A chart raster is a grid of palette indices (one byte a pixel). It is
// cut into square tiles (256 x 256 by default; the tiles of the last column
// and row are padded with index 0), each tile compressed on its own with
// zlib, and stored one after the other in the raster file. The index file
// tells, for each tile, where its bytes begin, how many there are and their
// CRC-32, so that a view decodes only the tiles it shows and a damaged tile
// is noticed rather than drawn. All numbers are little-endian.
//
//   index (".CHI" / ".LOI")
//     0   "OMBRACHI" or "OMBRALOI"        8 bytes
//     8   version (1)                     u32
//     12  width, height                   u32, u32   pixels of this raster
//     20  tile size                       u32        16 .. 1024
//     24  tiles across, tiles down        u32, u32
//     32  resolution first, second        u32, u32   first pixels of this raster
//                                                    span second full-resolution
//                                                    pixels (1, 1 at full resolution)
//     40  compression (1 zlib)            u32
//     44  raster file size                u64
//     52  per tile, row by row:  offset u64, length u32, CRC-32 u32
//     end CRC-32 of all bytes before it   u32
//   raster (".CHR" / ".LOR")
//     0   "OMBRACHR" or "OMBRALOR", then the tiles' zlib streams
//
// A low-resolution raster is the full one reduced by a whole factor: each
// of its pixels takes the commonest index of the block it stands for (ties
// to the lower index), so that sea stays sea and land stays land.
//
// Reading trusts nothing: the index must be whole and its CRC right, every
// tile must lie inside the raster file and inflate to exactly one tile. A
// tile that fails is drawn as index 0 and counted.
#pragma once
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace ombra::chartlib {

constexpr int kDefaultTileSize = 256;

struct RasterHeader {
    uint32_t Width = 0, Height = 0, TileSize = kDefaultTileSize;
    uint32_t TilesAcross = 0, TilesDown = 0;
    uint32_t ResolutionFirst = 1, ResolutionSecond = 1;
    bool LowRes = false;
};

struct TileEntry {
    uint64_t Offset = 0;
    uint32_t Length = 0;
    uint32_t Crc = 0;
};

// Builds one raster file and its index from rows given in order.
class RasterWriter {
public:
    RasterWriter(uint32_t width, uint32_t height, bool lowRes, uint32_t resFirst = 1, uint32_t resSecond = 1,
                 uint32_t tileSize = kDefaultTileSize);
    void AddRow(const uint8_t* row);
    // After the last row: the two files' bytes.
    bool Finish(std::string& rasterBytes, std::string& indexBytes);

private:
    void FlushBand();
    RasterHeader h_;
    std::vector<uint8_t> band_;  // tile-size rows
    uint32_t rowsInBand_ = 0, rowsDone_ = 0;
    bool failed_ = false;
    std::string raster_;
    std::vector<TileEntry> tiles_;
};

// Reduces full-resolution rows by `factor` into low-resolution rows.
class RasterReducer {
public:
    RasterReducer(uint32_t width, uint32_t height, uint32_t factor);
    // Feeds a full-resolution row; returns true when `out` holds a finished
    // low-resolution row (of OutWidth() pixels).
    bool AddRow(const uint8_t* row, std::vector<uint8_t>& out);
    // After the last full row: a last partial block, if any.
    bool Flush(std::vector<uint8_t>& out);
    uint32_t OutWidth() const { return outW_; }
    uint32_t OutHeight() const { return outH_; }

private:
    void Reduce(std::vector<uint8_t>& out);
    uint32_t w_, h_, f_, outW_, outH_;
    std::vector<uint8_t> block_;
    uint32_t rows_ = 0;
};

// The low-resolution factor chosen for a chart of this size.
uint32_t LowResFactor(uint32_t width, uint32_t height);

// One opened raster with a cache of decoded tiles.
class TiledRaster {
public:
    using Tile = std::shared_ptr<const std::vector<uint8_t>>;

    // Reads and checks the index; the raster file is opened for reading
    // tiles. False with `error` on any fault.
    bool Open(const std::string& indexPath, const std::string& rasterPath, std::string& error);
    bool IsOpen() const { return fd_ >= 0; }
    void Close();
    ~TiledRaster() { Close(); }

    const RasterHeader& Header() const { return h_; }
    // The decoded tile (TileSize x TileSize indices); a damaged or missing
    // tile comes back as zeros.
    Tile GetTile(uint32_t tx, uint32_t ty);
    // One pixel, through the cache.
    uint8_t Pixel(uint32_t x, uint32_t y);
    // Tiles kept decoded; the least recently used go first.
    void SetCacheCapacity(size_t tiles) { capacity_ = tiles ? tiles : 1; }
    size_t CachedTiles() const { return cache_.size(); }
    int DamagedTiles() const { return damaged_; }

    // Reduced levels, for views that show more than one raster pixel a
    // screen pixel. Level k (k >= 1) is this raster reduced by 2^k: each of
    // its pixels is the commonest index of the (up to) 2 x 2 pixels of level
    // k - 1 it stands for, ties to the lower index, as the low-resolution
    // raster is made. Level tiles are made from the tiles under them when
    // first asked for and kept in a cache for each level (each half the
    // tile cache's capacity), so that making one level's tiles never
    // evicts another's; level 0 is the raster itself.
    int MaxLevel() const;
    RasterHeader LevelHeader(int level) const;
    Tile GetLevelTile(int level, uint32_t tx, uint32_t ty);
    size_t CachedLevelTiles(int level) const;

    // Every tile's CRC and size, and the index's own CRC.
    static bool Verify(const std::string& indexPath, const std::string& rasterPath, std::string& error);

private:
    Tile Decode(uint32_t index);
    Tile ReduceLevelTile(int level, uint32_t tx, uint32_t ty);
    RasterHeader h_;
    std::vector<TileEntry> tiles_;
    int fd_ = -1;
    uint64_t rasterSize_ = 0;
    size_t capacity_ = 512;
    std::list<uint32_t> lru_;
    std::unordered_map<uint32_t, std::pair<Tile, std::list<uint32_t>::iterator>> cache_;
    struct LevelCache {
        std::list<uint32_t> lru;
        std::unordered_map<uint32_t, std::pair<Tile, std::list<uint32_t>::iterator>> tiles;
    };
    std::vector<LevelCache> levels_;
    Tile zeros_;
    int damaged_ = 0;
};

// Parses index bytes (shared by Open and Verify, and the fuzz target).
bool ParseRasterIndex(const std::string& bytes, RasterHeader& h, std::vector<TileEntry>& tiles, uint64_t& rasterSize,
                      std::string& error);

}  // namespace ombra::chartlib
