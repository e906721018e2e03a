#include "tests/platform/chartlib/KapWriter.h"

#include <cmath>
#include <cstdio>

#include "platform/chartlib/Projection.h"

namespace ombra::test {

namespace {

using chartlib::Projection;
using chartlib::ProjectionParams;

ProjectionKind KindOf(const KapShape& s) {
    if (s.Projection == "MERCATOR") return ProjectionKind::Mercator;
    if (s.Projection == "LAMBERT CONFORMAL CONIC") return ProjectionKind::LambertConformalConic;
    if (s.Projection == "POLYCONIC") return ProjectionKind::Polyconic;
    return ProjectionKind::TransverseMercator;  // also the shape of charts of unknown projection
}

struct Frame {
    Projection proj;
    double e0, e1, n0, n1;  // projected extent
};

Frame MakeFrame(const KapShape& s) {
    Frame f;
    ProjectionParams p;
    p.Kind = KindOf(s);
    p.CentralMeridian = p.Kind == ProjectionKind::Mercator ? (s.LonW + s.LonE) / 2 : s.CentralMeridian;
    p.StandardParallel1 = s.Parallel1;
    p.StandardParallel2 = s.Parallel2;
    f.proj.Init(p);
    f.e0 = f.n0 = 1e300;
    f.e1 = f.n1 = -1e300;
    for (double lat : {s.LatN, s.LatS})
        for (double lon : {s.LonW, s.LonE}) {
            double e, n;
            f.proj.Forward(lat, lon, e, n);
            f.e0 = std::min(f.e0, e);
            f.e1 = std::max(f.e1, e);
            f.n0 = std::min(f.n0, n);
            f.n1 = std::max(f.n1, n);
        }
    return f;
}

void Row(std::string& out, long v) {
    // Row numbers: 7-bit groups, most significant first, high bit = more.
    std::vector<unsigned char> g;
    do {
        g.push_back(static_cast<unsigned char>(v & 0x7f));
        v >>= 7;
    } while (v > 0);
    for (size_t i = g.size(); i-- > 0;) out.push_back(char(g[i] | (i ? 0x80 : 0)));
}

void Run(std::string& out, int bits, int value, long count) {
    // count = run length - 1: the first byte holds the top part in its
    // 7 - bits low bits; each further byte 7 more bits.
    int shift = 7 - bits;
    long firstMax = (1L << shift) - 1;
    int extra = 0;
    while ((count >> (7 * extra)) > firstMax) ++extra;
    unsigned char first = static_cast<unsigned char>((value << shift) | (count >> (7 * extra)));
    if (extra) first |= 0x80;
    out.push_back(char(first));
    for (int i = extra - 1; i >= 0; --i) {
        unsigned char b = static_cast<unsigned char>((count >> (7 * i)) & 0x7f);
        if (i) b |= 0x80;
        out.push_back(char(b));
    }
}

void Be32(std::string& out, uint32_t v) {
    for (int i = 3; i >= 0; --i) out.push_back(char((v >> (8 * i)) & 0xff));
}

std::string Fmt(const char* f, double a) {
    char b[64];
    std::snprintf(b, sizeof b, f, a);
    return b;
}

}  // namespace

int PatternPixel(const KapShape& s, int x, int y) {
    int colours = (1 << s.Bits) - 1;
    // Bands of varying width with a diagonal, so runs of 1 to hundreds occur.
    int band = ((x / (1 + (y % 7) * 13)) + y / 5) % colours;
    if ((x + 2 * y) % 97 == 0) band = (band + 1) % colours;
    return 1 + band;
}

std::vector<KapRefOut> KapRefs(const KapShape& s) {
    Frame f = MakeFrame(s);
    std::vector<std::pair<double, double>> px = {
        {0, 0}, {double(s.Width - 1), 0}, {double(s.Width - 1), double(s.Height - 1)}, {0, double(s.Height - 1)}};
    for (int i = 0; i < s.ExtraRefs; ++i)
        px.emplace_back(std::floor(std::fmod(37.0 + i * 131.7, s.Width)), std::floor(std::fmod(23.0 + i * 89.3, s.Height)));
    std::vector<KapRefOut> out;
    int k = 0;
    for (auto& p : px) {
        double w = std::max(1, s.Width - 1), h = std::max(1, s.Height - 1);
        double e = f.e0 + p.first / w * (f.e1 - f.e0);
        double n = f.n1 - p.second / h * (f.n1 - f.n0);
        double lat, lon;
        f.proj.Reverse(e, n, lat, lon);
        double nx = s.RefNoise * std::sin(1.7 * ++k), ny = s.RefNoise * std::cos(2.3 * k);
        out.push_back({std::round(p.first + nx), std::round(p.second + ny), lat, lon});
    }
    return out;
}

std::string WriteKap(const KapShape& s) {
    std::string h;
    h += "! Written by the Ombra tests\r\n";
    h += "VER/3.0\r\n";
    std::string nu = s.OmitNumber ? "" : (s.Number2.empty() ? s.Number : s.Number2);
    h += "BSB/NA=" + s.Name + ",NU=" + nu + ",RA=" + std::to_string(s.Width) + "," + std::to_string(s.Height) + ",DU=254\r\n";
    std::string knp = "KNP/SC=25000,GD=" + s.Datum + ",PR=" + s.Projection + ",PP=" +
                      Fmt("%.4f", KindOf(s) == ProjectionKind::Mercator ? (s.LatN + s.LatS) / 2 : s.CentralMeridian) +
                      ",PI=0.0,SP=UNKNOWN,SK=0.0,TA=90";
    if (s.Continuation) knp += "\r\n    UN=METERS,SD=LOWEST ASTRONOMICAL TIDE,DX=10.0,DY=10.0";
    else knp += ",UN=METERS,SD=LOWEST ASTRONOMICAL TIDE,DX=10.0,DY=10.0";
    h += knp + "\r\n";
    if (s.Projection == "LAMBERT CONFORMAL CONIC")
        h += "KNQ/EC=RF,GD=WGS84,VD=0,SD=0,UN=METERS,P1=UNKNOWN,P2=" + Fmt("%.4f", s.Parallel1) + ",P3=" + Fmt("%.4f", s.Parallel2) +
             ",P4=UNKNOWN\r\n";
    h += "CED/SE=1,RE=1,ED=06/15/2023\r\n";
    int colours = (1 << s.Bits) - 1;
    for (int i = 1; i <= colours; ++i) {
        int r = (i * 37) % 256, g = (i * 91) % 256, b = (i * 53 + 40) % 256;
        h += "RGB/" + std::to_string(i) + "," + std::to_string(r) + "," + std::to_string(g) + "," + std::to_string(b) + "\r\n";
        h += "NGT/" + std::to_string(i) + "," + std::to_string(r / 4) + "," + std::to_string(g / 4) + "," + std::to_string(b / 4) + "\r\n";
    }
    int n = 0;
    for (const KapRefOut& r : KapRefs(s))
        h += "REF/" + std::to_string(++n) + "," + std::to_string(long(r.x)) + "," + std::to_string(long(r.y)) + "," +
             Fmt("%.10f", r.lat) + "," + Fmt("%.10f", r.lon) + "\r\n";
    if (s.Ply) {
        n = 0;
        double pts[4][2] = {{s.LatN, s.LonW}, {s.LatN, s.LonE}, {s.LatS, s.LonE}, {s.LatS, s.LonW}};
        for (auto& p : pts) h += "PLY/" + std::to_string(++n) + "," + Fmt("%.10f", p[0]) + "," + Fmt("%.10f", p[1]) + "\r\n";
    }
    if (s.Dtm) h += "DTM/" + Fmt("%.2f", s.DtmLat) + "," + Fmt("%.2f", s.DtmLon) + "\r\n";
    h += "IFM/" + std::to_string(s.Bits) + "\r\n";

    std::string out = h;
    out.push_back('\x1a');
    out.push_back('\0');
    out.push_back(char(s.Bits));
    std::vector<uint32_t> offsets;
    for (int y = 0; y < s.Height; ++y) {
        offsets.push_back(uint32_t(out.size()));
        Row(out, s.RowsFromOne ? y + 1 : y);
        int x = 0;
        while (x < s.Width) {
            int v = s.Pixel ? s.Pixel(x, y) : PatternPixel(s, x, y);
            int len = 1;
            while (x + len < s.Width && (s.Pixel ? s.Pixel(x + len, y) : PatternPixel(s, x + len, y)) == v) ++len;
            Run(out, s.Bits, v, len - 1);
            x += len;
        }
        out.push_back('\0');
    }
    if (s.Index) {
        uint32_t at = uint32_t(out.size());
        for (uint32_t o : offsets) Be32(out, o);
        Be32(out, at);
    }
    return out;
}

}  // namespace ombra::test
