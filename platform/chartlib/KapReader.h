// KapReader: BSB/KAP raster charts, the form in which hydrographic offices
// and chart agents hand out raster charts.
//
// A KAP file is a text header, the byte 0x1A, a binary raster and a row
// index:
//
//   VER/3.0
//   BSB/NA=TEST HARBOUR,NU=9801,RA=300,200,DU=254      name, number, width, height
//   KNP/SC=25000,GD=WGS84,PR=MERCATOR,PP=50.0,...      scale, datum, projection
//       UN=METERS,SD=LOWEST ASTRONOMICAL TIDE          (a line that starts with
//                                                       blanks continues the last)
//   RGB/1,37,91,53     DAY/..  DSK/..  NGT/..          palettes, colours from 1
//   REF/1,0,0,50.1,-12.3                               pixel x, y -> lat, lon
//   PLY/1,50.1,-12.3                                   border, lat, lon
//   DTM/0.0,0.0                                        datum shift, seconds
//   WPX/ WPY/ PWX/ PWY/                                polynomials (order, coefficients)
//   IFM/4                                              bits of colour per pixel
//   <0x1A> <0x00> <bits>                               end of header
//   rows: row number (7-bit groups, high bit = more), runs, 0x00
//   index: one 32-bit big-endian offset a row, then the offset of the index
//
// A run is one byte or more: with n bits of colour, bits 6..(7-n) of the
// first byte hold the colour and the low 7-n bits the start of the run
// length; while the high bit is set the next byte adds 7 more bits. A run
// of count c paints c + 1 pixels.
//
// Colours. The file numbers colours from 1; pixel value 0 does not occur in
// a good file. The reader hands out colour indices from 0, index i being the
// file's colour i + 1 (a stray 0 also reads 0), the numbering that GDAL's
// BSB driver gives, so that decoded rasters can be compared byte for byte.
//
// Damaged files. The header must name the size and at least one colour;
// rows must carry their row numbers in order. The reader treats the file's
// bytes as hostile: every read is bounded by the file, a header that claims
// more pixels than `KapLimits` allows is refused before anything is
// allocated, and a broken row ends the decoding with a message naming it.
// Some real charts have rows one pixel short; those are completed with
// colour 0, as other readers do.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/Types.h"

namespace ombra::chartlib {

struct KapLimits {
    int64_t MaxPixels = int64_t(40000) * 40000;  // width x height
    int MaxSide = 65535;
    size_t MaxFileBytes = size_t(1) << 31;
};

struct KapRef {
    double x = 0, y = 0, lat = 0, lon = 0;
};

struct KapHeader {
    std::vector<std::string> Lines;  // logical header lines, continuations joined by ","
    std::string Version;             // VER/
    std::string Name, Number;        // NA=, NU=
    int Width = 0, Height = 0;       // RA=
    std::string Scale;               // KNP SC=
    std::string Datum;               // KNP GD=
    std::string Projection;          // KNP PR=
    std::string ProjectionParameter; // KNP PP=
    std::string DepthUnits;          // KNP UN=
    std::string SoundingDatum;       // KNP SD=
    std::string P2, P3;              // KNQ P2=, P3= (Lambert's standard parallels)
    std::string EditionDate;         // CED ED=, as written
    // Palettes by the file's colour number (1..127); unset entries are -1.
    std::vector<int64_t> Rgb, Day, Dusk, Night;
    int ColourCount = 0;             // highest colour number defined in RGB/
    std::vector<KapRef> Refs;
    std::vector<std::pair<double, double>> Outline;  // lat, lon
    bool HasDtm = false;
    double DtmLat = 0, DtmLon = 0;   // seconds of arc
    int WpxOrder = -1, WpyOrder = -1, PwxOrder = -1, PwyOrder = -1;
    std::vector<double> Wpx, Wpy, Pwx, Pwy;
    int Ifm = 0;                     // IFM/ as written
    int ColourBits = 0;              // the byte after the header
    std::vector<std::string> Comments;  // "!" lines
};

// One key's value of a header line ("KNP/SC=25000,GD=WGS84,...", "GD"):
// the text after "KEY=" up to the next ",XX=" that starts another key.
std::string KapField(std::string_view line, std::string_view key);

class KapReader {
public:
    // Parses the header and finds the rows. False with `Error()` set when
    // the file is not a usable KAP.
    bool Open(std::string bytes, const KapLimits& limits = {});
    bool OpenFile(const std::string& path, const KapLimits& limits = {});
    const KapHeader& Header() const { return h_; }
    const std::string& Error() const { return error_; }

    // Decodes rows in order from the first: `out` gets Width colour
    // indices (numbered from 0, see above). False, with Error(), on a
    // broken row.
    bool NextRow(uint8_t* out);
    int RowsRead() const { return nextRow_; }

private:
    bool ParseHeader(size_t headerEnd);
    bool ReadIndex();
    bool ReadRowMarker(size_t& pos, int row, bool verbose);
    bool Fail(std::string message);

    KapHeader h_;
    std::string data_;
    std::string error_;
    size_t firstRow_ = 0;      // offset of row 0
    size_t rowEnd_ = 0;        // where row data ends (the index, or the file end)
    std::vector<uint32_t> rowOffsets_;  // from the index, when it is sound
    size_t pos_ = 0;           // next row, when reading without the index
    int nextRow_ = 0;
};

}  // namespace ombra::chartlib
