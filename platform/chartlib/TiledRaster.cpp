#include "platform/chartlib/TiledRaster.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <thread>

#include "core/Paths.h"

namespace ombra::chartlib {

namespace {

constexpr uint32_t kVersion = 1;
constexpr size_t kIndexFixed = 52;
constexpr size_t kTileEntryBytes = 16;
constexpr uint32_t kMaxSide = 1u << 20;
// zlib's level for tiles: the fastest, which on chart rasters (long runs of
// few indices) costs little in size and inflates as fast as any.
constexpr int kTileLevel = 1;

// Threads that help this one compress a band's tiles: one a spare core.
uint32_t CompressionHelpers() {
    static const uint32_t n = [] {
        unsigned c = std::thread::hardware_concurrency();
        return c <= 1 ? 0u : std::min(c - 1, 3u);
    }();
    return n;
}

void Put32(std::string& s, uint32_t v) {
    for (int i = 0; i < 4; ++i) s.push_back(char((v >> (8 * i)) & 0xff));
}
void Put64(std::string& s, uint64_t v) {
    for (int i = 0; i < 8; ++i) s.push_back(char((v >> (8 * i)) & 0xff));
}
uint32_t Get32(const std::string& s, size_t at) {
    uint32_t v = 0;
    for (int i = 0; i < 4; ++i) v |= uint32_t(static_cast<unsigned char>(s[at + size_t(i)])) << (8 * i);
    return v;
}
uint64_t Get64(const std::string& s, size_t at) {
    uint64_t v = 0;
    for (int i = 0; i < 8; ++i) v |= uint64_t(static_cast<unsigned char>(s[at + size_t(i)])) << (8 * i);
    return v;
}
uint32_t Crc(const void* data, size_t n) {
    return uint32_t(::crc32(0L, static_cast<const Bytef*>(data), uInt(n)));
}

bool Inflate(const char* src, size_t srcLen, uint8_t* dst, size_t dstLen) {
    z_stream z{};
    if (::inflateInit(&z) != Z_OK) return false;
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(src));
    z.avail_in = uInt(srcLen);
    z.next_out = dst;
    z.avail_out = uInt(dstLen);
    int rc = ::inflate(&z, Z_FINISH);
    bool ok = rc == Z_STREAM_END && z.total_out == dstLen && z.avail_in == 0;
    ::inflateEnd(&z);
    return ok;
}

bool ReadAt(int fd, uint64_t offset, char* out, size_t n) {
    size_t done = 0;
    while (done < n) {
        ssize_t r = ::pread(fd, out + done, n - done, off_t(offset + done));
        if (r <= 0) return false;
        done += size_t(r);
    }
    return true;
}

}  // namespace

uint32_t LowResFactor(uint32_t width, uint32_t height) {
    uint32_t side = std::max(width, height);
    return side >= 2048 ? 4 : 2;
}

// ---------------------------------------------------------------------

RasterWriter::RasterWriter(uint32_t width, uint32_t height, bool lowRes, uint32_t resFirst, uint32_t resSecond,
                           uint32_t tileSize) {
    h_.Width = width;
    h_.Height = height;
    h_.TileSize = tileSize;
    h_.TilesAcross = (width + tileSize - 1) / tileSize;
    h_.TilesDown = (height + tileSize - 1) / tileSize;
    h_.ResolutionFirst = resFirst;
    h_.ResolutionSecond = resSecond;
    h_.LowRes = lowRes;
    band_.assign(size_t(h_.TilesAcross) * tileSize * tileSize, 0);
    raster_ = lowRes ? "OMBRALOR" : "OMBRACHR";
}

void RasterWriter::AddRow(const uint8_t* row) {
    if (rowsDone_ >= h_.Height) return;
    const uint32_t ts = h_.TileSize;
    // Rows are kept tile by tile, so each tile is one contiguous block.
    for (uint32_t tx = 0; tx < h_.TilesAcross; ++tx) {
        uint32_t x0 = tx * ts;
        uint32_t n = std::min(ts, h_.Width - x0);
        uint8_t* dst = band_.data() + (size_t(tx) * ts + rowsInBand_) * ts;
        std::memcpy(dst, row + x0, n);
        if (n < ts) std::memset(dst + n, 0, ts - n);
    }
    ++rowsInBand_;
    ++rowsDone_;
    if (rowsInBand_ == ts || rowsDone_ == h_.Height) FlushBand();
}

void RasterWriter::FlushBand() {
    const uint32_t ts = h_.TileSize;
    const size_t tileBytes = size_t(ts) * ts;
    if (rowsInBand_ < ts)
        for (uint32_t tx = 0; tx < h_.TilesAcross; ++tx)
            std::memset(band_.data() + (size_t(tx) * ts + rowsInBand_) * ts, 0, size_t(ts - rowsInBand_) * ts);
    // Tiles are compressed each on its own, so the band's tiles are shared
    // out between this thread and helpers; the file keeps them in order.
    const uint32_t across = h_.TilesAcross;
    std::vector<std::vector<Bytef>> packed(across);
    std::vector<uLongf> lengths(across, 0);
    std::atomic<uint32_t> next{0};
    auto work = [&] {
        for (uint32_t tx = next++; tx < across; tx = next++) {
            std::vector<Bytef>& out = packed[tx];
            out.resize(::compressBound(uLong(tileBytes)));
            uLongf len = uLongf(out.size());
            if (::compress2(out.data(), &len, band_.data() + size_t(tx) * tileBytes, uLong(tileBytes), kTileLevel) != Z_OK)
                len = 0;
            lengths[tx] = len;
        }
    };
    const uint32_t helpers = std::min<uint32_t>(across - 1, CompressionHelpers());
    std::vector<std::thread> threads;
    for (uint32_t i = 0; i < helpers; ++i) threads.emplace_back(work);
    work();
    for (auto& t : threads) t.join();
    for (uint32_t tx = 0; tx < across; ++tx) {
        if (lengths[tx] == 0) failed_ = true;
        TileEntry e;
        e.Offset = raster_.size();
        e.Length = uint32_t(lengths[tx]);
        e.Crc = Crc(packed[tx].data(), lengths[tx]);
        raster_.append(reinterpret_cast<const char*>(packed[tx].data()), lengths[tx]);
        tiles_.push_back(e);
    }
    rowsInBand_ = 0;
}

bool RasterWriter::Finish(std::string& rasterBytes, std::string& indexBytes) {
    if (rowsDone_ != h_.Height || failed_) return false;
    std::string idx = h_.LowRes ? "OMBRALOI" : "OMBRACHI";
    Put32(idx, kVersion);
    Put32(idx, h_.Width);
    Put32(idx, h_.Height);
    Put32(idx, h_.TileSize);
    Put32(idx, h_.TilesAcross);
    Put32(idx, h_.TilesDown);
    Put32(idx, h_.ResolutionFirst);
    Put32(idx, h_.ResolutionSecond);
    Put32(idx, 1);
    Put64(idx, raster_.size());
    for (const TileEntry& e : tiles_) {
        Put64(idx, e.Offset);
        Put32(idx, e.Length);
        Put32(idx, e.Crc);
    }
    Put32(idx, Crc(idx.data(), idx.size()));
    rasterBytes = std::move(raster_);
    indexBytes = std::move(idx);
    return true;
}

// ---------------------------------------------------------------------

RasterReducer::RasterReducer(uint32_t width, uint32_t height, uint32_t factor)
    : w_(width), h_(height), f_(factor ? factor : 1) {
    outW_ = (w_ + f_ - 1) / f_;
    outH_ = (h_ + f_ - 1) / f_;
    block_.assign(size_t(w_) * f_, 0);
}

bool RasterReducer::AddRow(const uint8_t* row, std::vector<uint8_t>& out) {
    std::memcpy(block_.data() + size_t(rows_) * w_, row, w_);
    if (++rows_ < f_) return false;
    Reduce(out);
    return true;
}

bool RasterReducer::Flush(std::vector<uint8_t>& out) {
    if (rows_ == 0) return false;
    Reduce(out);
    return true;
}

void RasterReducer::Reduce(std::vector<uint8_t>& out) {
    out.assign(outW_, 0);
    // Counts are kept only for the indices a block holds and cleared after
    // it, so a block costs its own pixels rather than a pass over all 256.
    std::array<uint16_t, 256> count{};
    std::array<uint8_t, 64 * 64> seen;
    const size_t cap = seen.size();
    for (uint32_t ox = 0; ox < outW_; ++ox) {
        uint32_t x0 = ox * f_, x1 = std::min(w_, x0 + f_);
        size_t n = 0;
        int best = 0;
        uint16_t bestCount = 0;
        for (uint32_t r = 0; r < rows_; ++r) {
            const uint8_t* src = block_.data() + size_t(r) * w_;
            for (uint32_t x = x0; x < x1; ++x) {
                uint8_t v = src[x];
                uint16_t c = ++count[v];
                if (c == 1 && n < cap) seen[n++] = v;
                if (c > bestCount || (c == bestCount && v < best)) {
                    bestCount = c;
                    best = v;
                }
            }
        }
        out[ox] = uint8_t(best);
        if (n < cap) {
            for (size_t i = 0; i < n; ++i) count[seen[i]] = 0;
        } else {
            count.fill(0);
        }
    }
    rows_ = 0;
}

// ---------------------------------------------------------------------

bool ParseRasterIndex(const std::string& b, RasterHeader& h, std::vector<TileEntry>& tiles, uint64_t& rasterSize,
                      std::string& error) {
    auto fail = [&](const char* why) {
        error = why;
        return false;
    };
    if (b.size() < kIndexFixed + 4) return fail("the raster index is truncated");
    bool low;
    if (b.compare(0, 8, "OMBRACHI") == 0) low = false;
    else if (b.compare(0, 8, "OMBRALOI") == 0) low = true;
    else return fail("not an Ombra raster index");
    if (Get32(b, 8) != kVersion) return fail("the raster index has an unknown version");
    if (Crc(b.data(), b.size() - 4) != Get32(b, b.size() - 4)) return fail("the raster index fails its checksum");
    RasterHeader r;
    r.LowRes = low;
    r.Width = Get32(b, 12);
    r.Height = Get32(b, 16);
    r.TileSize = Get32(b, 20);
    r.TilesAcross = Get32(b, 24);
    r.TilesDown = Get32(b, 28);
    r.ResolutionFirst = Get32(b, 32);
    r.ResolutionSecond = Get32(b, 36);
    if (Get32(b, 40) != 1) return fail("the raster index names an unknown compression");
    rasterSize = Get64(b, 44);
    if (r.Width == 0 || r.Height == 0 || r.Width > kMaxSide || r.Height > kMaxSide) return fail("the raster size is impossible");
    if (r.TileSize < 16 || r.TileSize > 1024) return fail("the tile size is impossible");
    if (r.TilesAcross != (r.Width + r.TileSize - 1) / r.TileSize || r.TilesDown != (r.Height + r.TileSize - 1) / r.TileSize)
        return fail("the tile grid does not fit the raster size");
    if (r.ResolutionFirst == 0 || r.ResolutionSecond == 0 || r.ResolutionFirst > 64 || r.ResolutionSecond > 64)
        return fail("the resolution numbers are impossible");
    uint64_t count = uint64_t(r.TilesAcross) * r.TilesDown;
    if (b.size() != kIndexFixed + count * kTileEntryBytes + 4) return fail("the raster index has the wrong length");
    std::vector<TileEntry> t(static_cast<size_t>(count));
    for (size_t i = 0; i < t.size(); ++i) {
        size_t at = kIndexFixed + i * kTileEntryBytes;
        t[i].Offset = Get64(b, at);
        t[i].Length = Get32(b, at + 8);
        t[i].Crc = Get32(b, at + 12);
        if (t[i].Offset < 8 || t[i].Length == 0 || t[i].Offset > rasterSize || t[i].Length > rasterSize - t[i].Offset)
            return fail("a tile lies outside the raster file");
    }
    h = r;
    tiles = std::move(t);
    return true;
}

bool TiledRaster::Open(const std::string& indexPath, const std::string& rasterPath, std::string& error) {
    Close();
    struct stat ist;
    if (::stat(ResolvePath(indexPath).c_str(), &ist) != 0) {
        error = "the raster index is missing";
        return false;
    }
    if (ist.st_size > (off_t(64) << 20)) {
        error = "the raster index is too large";
        return false;
    }
    auto idx = ReadWholeFile(indexPath, &error);
    if (!idx) return false;
    RasterHeader h;
    std::vector<TileEntry> tiles;
    uint64_t size = 0;
    if (!ParseRasterIndex(*idx, h, tiles, size, error)) return false;
    int fd = ::open(ResolvePath(rasterPath).c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = "the raster file cannot be opened";
        return false;
    }
    struct stat st;
    char magic[8];
    const char* want = h.LowRes ? "OMBRALOR" : "OMBRACHR";
    if (::fstat(fd, &st) != 0 || uint64_t(st.st_size) != size || !ReadAt(fd, 0, magic, 8) || std::memcmp(magic, want, 8) != 0) {
        ::close(fd);
        error = "the raster file does not match its index";
        return false;
    }
    h_ = h;
    tiles_ = std::move(tiles);
    fd_ = fd;
    rasterSize_ = size;
    zeros_ = std::make_shared<const std::vector<uint8_t>>(size_t(h_.TileSize) * h_.TileSize, 0);
    damaged_ = 0;
    return true;
}

void TiledRaster::Close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    tiles_.clear();
    cache_.clear();
    lru_.clear();
    levels_.clear();
    h_ = RasterHeader{};
}

TiledRaster::Tile TiledRaster::Decode(uint32_t index) {
    const TileEntry& e = tiles_[index];
    std::string buf(e.Length, '\0');
    auto tile = std::make_shared<std::vector<uint8_t>>(size_t(h_.TileSize) * h_.TileSize);
    if (!ReadAt(fd_, e.Offset, buf.data(), buf.size()) || Crc(buf.data(), buf.size()) != e.Crc ||
        !Inflate(buf.data(), buf.size(), tile->data(), tile->size())) {
        ++damaged_;
        return zeros_;
    }
    return tile;
}

TiledRaster::Tile TiledRaster::GetTile(uint32_t tx, uint32_t ty) {
    if (fd_ < 0 || tx >= h_.TilesAcross || ty >= h_.TilesDown) return zeros_;
    uint32_t index = ty * h_.TilesAcross + tx;
    auto it = cache_.find(index);
    if (it != cache_.end()) {
        lru_.splice(lru_.begin(), lru_, it->second.second);
        return it->second.first;
    }
    Tile t = Decode(index);
    while (cache_.size() >= capacity_ && !lru_.empty()) {
        cache_.erase(lru_.back());
        lru_.pop_back();
    }
    lru_.push_front(index);
    cache_.emplace(index, std::make_pair(t, lru_.begin()));
    return t;
}

uint8_t TiledRaster::Pixel(uint32_t x, uint32_t y) {
    if (x >= h_.Width || y >= h_.Height) return 0;
    Tile t = GetTile(x / h_.TileSize, y / h_.TileSize);
    return (*t)[size_t(y % h_.TileSize) * h_.TileSize + x % h_.TileSize];
}

int TiledRaster::MaxLevel() const {
    // Halving a tile needs an even tile size; levels go down to a raster of
    // one pixel, so that every zoom out draws the same way.
    if (fd_ < 0 || h_.TileSize % 2 != 0) return 0;
    int k = 0;
    uint32_t side = std::max(h_.Width, h_.Height);
    while (k < 24 && side > 1) {
        side = (side + 1) / 2;
        ++k;
    }
    return k;
}

RasterHeader TiledRaster::LevelHeader(int level) const {
    RasterHeader r = h_;
    if (level <= 0) return r;
    const uint32_t f = 1u << level;
    r.Width = (h_.Width + f - 1) / f;
    r.Height = (h_.Height + f - 1) / f;
    r.TilesAcross = (r.Width + r.TileSize - 1) / r.TileSize;
    r.TilesDown = (r.Height + r.TileSize - 1) / r.TileSize;
    r.ResolutionSecond = h_.ResolutionSecond * f;
    return r;
}

TiledRaster::Tile TiledRaster::GetLevelTile(int level, uint32_t tx, uint32_t ty) {
    if (level <= 0) return GetTile(tx, ty);
    if (fd_ < 0 || level > MaxLevel()) return zeros_;
    const RasterHeader lh = LevelHeader(level);
    if (tx >= lh.TilesAcross || ty >= lh.TilesDown) return zeros_;
    if (levels_.size() <= size_t(level)) levels_.resize(size_t(level) + 1);
    LevelCache& cache = levels_[size_t(level)];
    const uint32_t key = ty * lh.TilesAcross + tx;
    auto it = cache.tiles.find(key);
    if (it != cache.tiles.end()) {
        cache.lru.splice(cache.lru.begin(), cache.lru, it->second.second);
        return it->second.first;
    }
    Tile t = ReduceLevelTile(level, tx, ty);
    const size_t cap = std::max<size_t>(capacity_ / 2, 4);
    while (cache.tiles.size() >= cap && !cache.lru.empty()) {
        cache.tiles.erase(cache.lru.back());
        cache.lru.pop_back();
    }
    cache.lru.push_front(key);
    cache.tiles.emplace(key, std::make_pair(t, cache.lru.begin()));
    return t;
}

size_t TiledRaster::CachedLevelTiles(int level) const {
    if (level <= 0) return cache_.size();
    return size_t(level) < levels_.size() ? levels_[size_t(level)].tiles.size() : 0;
}

namespace {

// The commonest of n (1 to 4) indices, ties to the lower.
inline uint8_t CommonestOf(const uint8_t* v, int n) {
    uint8_t best = v[0];
    int bestCount = 0;
    for (int i = 0; i < n; ++i) {
        int c = 0;
        for (int j = 0; j < n; ++j) c += v[j] == v[i];
        if (c > bestCount || (c == bestCount && v[i] < best)) {
            bestCount = c;
            best = v[i];
        }
    }
    return best;
}

}  // namespace

TiledRaster::Tile TiledRaster::ReduceLevelTile(int level, uint32_t tx, uint32_t ty) {
    const uint32_t ts = h_.TileSize, half = ts / 2;
    const RasterHeader below = LevelHeader(level - 1);
    auto out = std::make_shared<std::vector<uint8_t>>(size_t(ts) * ts, 0);
    // Each quarter of this tile is one tile of the level below, halved.
    for (uint32_t qy = 0; qy < 2; ++qy)
        for (uint32_t qx = 0; qx < 2; ++qx) {
            const uint32_t cx = 2 * tx + qx, cy = 2 * ty + qy;
            if (cx >= below.TilesAcross || cy >= below.TilesDown) continue;
            Tile child = GetLevelTile(level - 1, cx, cy);
            const uint8_t* src = child->data();
            // Pixels of the child that lie inside the level below.
            const uint32_t w = std::min(ts, below.Width - cx * ts), h = std::min(ts, below.Height - cy * ts);
            for (uint32_t y = 0; y < h; y += 2) {
                uint8_t* dst = out->data() + size_t(qy * half + y / 2) * ts + qx * half;
                const uint8_t* r0 = src + size_t(y) * ts;
                const uint8_t* r1 = y + 1 < h ? r0 + ts : nullptr;
                for (uint32_t x = 0; x < w; x += 2) {
                    uint8_t v[4];
                    int n = 0;
                    v[n++] = r0[x];
                    if (x + 1 < w) v[n++] = r0[x + 1];
                    if (r1) {
                        v[n++] = r1[x];
                        if (x + 1 < w) v[n++] = r1[x + 1];
                    }
                    dst[x / 2] = CommonestOf(v, n);
                }
            }
        }
    return out;
}

bool TiledRaster::Verify(const std::string& indexPath, const std::string& rasterPath, std::string& error) {
    TiledRaster r;
    if (!r.Open(indexPath, rasterPath, error)) return false;
    for (uint32_t i = 0; i < r.tiles_.size(); ++i) {
        r.Decode(i);
        if (r.damaged_) {
            error = "tile " + std::to_string(i) + " is damaged";
            return false;
        }
    }
    return true;
}

}  // namespace ombra::chartlib
