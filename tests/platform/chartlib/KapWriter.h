// A BSB/KAP writer for tests: charts of any size, colour depth, hemisphere
// and projection, whose reference points lie exactly on the projection, so
// that GDAL's BSB driver can be the judge of what Ombra reads.
//
// Rows are run-length coded as the format has it (long runs take
// continuation bytes), row numbers from 1 (or 0), the row index at the end
// (or not), header lines continued with leading blanks where asked.
#pragma once
#include <functional>
#include <string>
#include <vector>

namespace ombra::test {

struct KapShape {
    std::string Name = "TEST CHART";
    std::string Number = "7001";
    int Width = 300, Height = 200;
    int Bits = 4;                   // 1..7; colours 1 .. 2^Bits - 1
    std::string Projection = "MERCATOR";  // MERCATOR, TRANSVERSE MERCATOR, LAMBERT CONFORMAL CONIC, POLYCONIC, or any other word
    double CentralMeridian = 0;     // PP= for the transverse and conic kinds
    double Parallel1 = 0, Parallel2 = 0;  // KNQ P2/P3 for Lambert
    double LatN = 50.1, LatS = 49.95, LonW = -12.3, LonE = -11.95;
    int ExtraRefs = 3;              // reference points inside, besides the 4 corners
    double RefNoise = 0;            // pixels of noise added to reference pixels
    bool Index = true;
    bool RowsFromOne = true;
    bool Continuation = true;       // KNP continued on a second line
    bool Ply = true;
    bool Dtm = true;
    double DtmLat = 0, DtmLon = 0;  // seconds
    std::string Datum = "WGS84";
    std::string Number2;            // when set, written as NU= instead of Number (may be "")
    bool OmitNumber = false;
    // The colour (1 .. 2^Bits - 1) of a pixel; a pattern of runs by default.
    std::function<int(int x, int y)> Pixel;
};

// The file's bytes.
std::string WriteKap(const KapShape& shape);
// The reference points written (pixel x, y, lat, lon), for checks.
struct KapRefOut {
    double x, y, lat, lon;
};
std::vector<KapRefOut> KapRefs(const KapShape& shape);
// A default pattern with long and short runs of every colour.
int PatternPixel(const KapShape& shape, int x, int y);

}  // namespace ombra::test
