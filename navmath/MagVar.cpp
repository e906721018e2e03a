#include "navmath/MagVar.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "core/Paths.h"
#include "core/Val.h"
#include "navmath/RLGC.h"

namespace ombra {

namespace {

// A coefficient file of degree 15 is about 5 kB; anything past this is not one.
constexpr uintmax_t kMaxFileBytes = 1 << 20;

// The values of a file after its title line, one at a time. Values are
// separated by blanks, tabs, commas or line ends.
class ValueReader {
public:
    explicit ValueReader(std::string_view text) : s_(text) {}

    void SkipLine() {
        while (pos_ < s_.size() && s_[pos_] != '\n' && s_[pos_] != '\r') ++pos_;
    }

    enum class Got { Number, NotNumber, End };

    Got Next(double& value) {
        while (pos_ < s_.size() && IsSeparator(s_[pos_])) ++pos_;
        if (pos_ >= s_.size()) return Got::End;
        const size_t start = pos_;
        while (pos_ < s_.size() && !IsSeparator(s_[pos_])) ++pos_;
        std::string_view word = s_.substr(start, pos_ - start);
        if (!IsNumeric(word)) return Got::NotNumber;
        if (word.front() == '+') word.remove_prefix(1);
        auto [end, ec] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (ec != std::errc() || end != word.data() + word.size() || !std::isfinite(value)) return Got::NotNumber;
        return Got::Number;
    }

private:
    static bool IsSeparator(char c) {
        return c == ' ' || c == '\t' || c == ',' || c == '\r' || c == '\n' || c == '\x1a' || c == '\f' || c == '\v';
    }
    std::string_view s_;
    size_t pos_ = 0;
};

int ReadInt16(ValueReader& r, int16_t& out) {
    double v = 0.0;
    switch (r.Next(v)) {
        case ValueReader::Got::End: return coefficients::EndsEarly;
        case ValueReader::Got::NotNumber: return coefficients::NotANumber;
        case ValueReader::Got::Number: break;
    }
    const double whole = std::nearbyint(v);
    if (whole < -32768.0 || whole > 32767.0) return coefficients::NotANumber;
    out = int16_t(whole);
    return coefficients::Ok;
}

int ReadFloat(ValueReader& r, float& out) {
    double v = 0.0;
    switch (r.Next(v)) {
        case ValueReader::Got::End: return coefficients::EndsEarly;
        case ValueReader::Got::NotNumber: return coefficients::NotANumber;
        case ValueReader::Got::Number: break;
    }
    if (std::fabs(v) > 3.4e38) return coefficients::NotANumber;
    out = float(v);
    return coefficients::Ok;
}

}  // namespace

int ReadCoefficients(const std::string& fileName, int16_t& maxDegree, int16_t& year, CoefficientsG& gArray,
                     CoefficientsH& hArray, float* radius) {
    std::error_code ec;
    const std::string path = ResolvePath(fileName);
    const auto size = std::filesystem::file_size(path, ec);
    if (ec) return coefficients::CannotRead;
    if (size > kMaxFileBytes) return coefficients::BadHeader;
    const auto text = ReadWholeFile(path);
    if (!text) return coefficients::CannotRead;
    return ParseCoefficients(*text, maxDegree, year, gArray, hArray, radius);
}

int ParseCoefficients(std::string_view text, int16_t& maxDegree, int16_t& year, CoefficientsG& gArray,
                      CoefficientsH& hArray, float* radius) {
    ValueReader r(text);
    r.SkipLine();
    int16_t degree = 0, epoch = 0;
    float rad = 0.0f;
    if (int e = ReadInt16(r, degree)) return e == coefficients::NotANumber ? coefficients::BadHeader : e;
    if (int e = ReadFloat(r, rad)) return e == coefficients::NotANumber ? coefficients::BadHeader : e;
    if (int e = ReadInt16(r, epoch)) return e == coefficients::NotANumber ? coefficients::BadHeader : e;
    if (degree < 1 || degree > kMaxModelDegree || !(rad > 0.0f)) return coefficients::BadHeader;

    gArray.fill(0.0f);
    hArray.fill(0.0f);
    for (int n = 1; n <= degree; ++n) {
        for (int m = 0; m <= n; ++m) {
            int16_t fileN = 0, fileM = 0;
            float g = 0.0f, h = 0.0f;
            if (int e = ReadInt16(r, fileN)) return e;
            if (int e = ReadInt16(r, fileM)) return e;
            if (fileN != n || fileM != m) return coefficients::WrongOrder;
            if (int e = ReadFloat(r, g)) return e;
            if (int e = ReadFloat(r, h)) return e;
            gArray[size_t(GIndex(n, m))] = g;
            if (m > 0) hArray[size_t(HIndex(n, m))] = h;
        }
    }
    maxDegree = degree;
    year = epoch;
    if (radius) *radius = rad;
    return coefficients::Ok;
}

namespace {

// The square roots of the Schmidt recursion, once for all degrees:
//   P(n,m) = ((2n-1) cos P(n-1,m) - root[(n-1)^2 - m^2] P(n-2,m)) / root[n^2 - m^2]
//   P(n,n) = root[1 - 1/2n] sin P(n-1,n-1)          (n >= 2; P(1,1) = sin)
struct LegendreRoots {
    double prev[kMaxModelDegree + 1][kMaxModelDegree + 1]{};  // root[(n-1)^2 - m^2]
    double inv[kMaxModelDegree + 1][kMaxModelDegree + 1]{};   // 1 / root[n^2 - m^2]
    double diag[kMaxModelDegree + 1]{};                        // root[1 - 1/2n]
    LegendreRoots() {
        for (int n = 1; n <= kMaxModelDegree; ++n) {
            diag[n] = n == 1 ? 1.0 : std::sqrt(1.0 - 1.0 / (2.0 * n));
            for (int m = 0; m < n; ++m) {
                const int p = (n - 1) * (n - 1) - m * m;
                prev[n][m] = p > 0 ? std::sqrt(double(p)) : 0.0;
                inv[n][m] = 1.0 / std::sqrt(double(n * n - m * m));
            }
        }
    }
};

const LegendreRoots& Roots() {
    static const LegendreRoots roots;
    return roots;
}

}  // namespace

double Declination(const MagModel& model, double latitude, double longitude) {
    // Geodetic to geocentric at sea level on WGS84 (km): the radius r and
    // the rotation (cd, sd) between the two norths.
    constexpr double A = 6378.137, B = 6356.7523142;
    constexpr double a2 = A * A, b2 = B * B;
    const double lat = std::clamp(latitude, -M_PI / 2, M_PI / 2);
    const double slat = std::sin(lat), clat = std::cos(lat);
    const double one = a2 * clat * clat, two = b2 * slat * slat;
    const double rho = std::sqrt(one + two);
    const double r = std::sqrt((a2 * one + b2 * two) / (one + two));
    const double cd = rho / r;
    const double sd = (a2 - b2) / rho * slat * clat / r;
    // Cosine and sine of the geocentric colatitude; held a hair off the pole.
    const double ct = slat * cd - clat * sd;
    const double st = std::max(clat * cd + slat * sd, 1e-10);

    const int N = std::clamp<int>(model.maxDegree, 0, kMaxModelDegree);
    const LegendreRoots& k = Roots();
    double P[kMaxModelDegree + 1][kMaxModelDegree + 1];
    double dP[kMaxModelDegree + 1][kMaxModelDegree + 1];
    double cosM[kMaxModelDegree + 1], sinM[kMaxModelDegree + 1];
    P[0][0] = 1.0;
    dP[0][0] = 0.0;
    cosM[0] = 1.0;
    sinM[0] = 0.0;
    const double cl = std::cos(longitude), sl = std::sin(longitude);
    for (int m = 1; m <= N; ++m) {
        cosM[m] = cosM[m - 1] * cl - sinM[m - 1] * sl;
        sinM[m] = sinM[m - 1] * cl + cosM[m - 1] * sl;
    }

    const double ratio = double(model.radius) / r;
    double power = ratio * ratio;  // (a/r)^(n+2) for n = 0
    double X = 0.0, Y = 0.0, Z = 0.0;
    for (int n = 1; n <= N; ++n) {
        power *= ratio;
        for (int m = 0; m < n; ++m) {
            const double p2 = n >= 2 && m <= n - 2 ? P[n - 2][m] : 0.0;
            const double dp2 = n >= 2 && m <= n - 2 ? dP[n - 2][m] : 0.0;
            P[n][m] = ((2 * n - 1) * ct * P[n - 1][m] - k.prev[n][m] * p2) * k.inv[n][m];
            dP[n][m] = ((2 * n - 1) * (ct * dP[n - 1][m] - st * P[n - 1][m]) - k.prev[n][m] * dp2) * k.inv[n][m];
        }
        P[n][n] = k.diag[n] * st * P[n - 1][n - 1];
        dP[n][n] = k.diag[n] * (st * dP[n - 1][n - 1] + ct * P[n - 1][n - 1]);

        double xn = 0.0, yn = 0.0, zn = 0.0;
        for (int m = 0; m <= n; ++m) {
            const double g = model.g[size_t(GIndex(n, m))];
            const double h = m > 0 ? double(model.h[size_t(HIndex(n, m))]) : 0.0;
            const double gc = g * cosM[m] + h * sinM[m];
            xn += gc * dP[n][m];
            yn += m * (g * sinM[m] - h * cosM[m]) * P[n][m];
            zn -= (n + 1) * gc * P[n][m];
        }
        X += power * xn;
        Y += power * yn;
        Z += power * zn;
    }
    Y /= st;
    // Back to the geodetic north; east is the same in both frames.
    const double north = X * cd + Z * sd;
    return std::atan2(Y, north) * kRadToDeg;
}

const char* MagVarErrorText(MagVarError error) {
    switch (error) {
        case MagVarError::CannotReadCoefficients: return "Error reading coefficients file.";
        case MagVarError::None: break;
    }
    return "";
}

MagVar::MagVar(std::string datPath) : datPath_(std::move(datPath)) {}

void MagVar::SetDatPath(std::string datPath) {
    datPath_ = std::move(datPath);
    haveCache_ = false;
    cachedFailed_ = false;
    cached_.reset();
}

std::string MagVar::CoefficientFileName(int epoch) {
    const int yy = ((epoch % 100) + 100) % 100;
    std::string name = epoch == kLastEpoch ? "IGRF" : "DGRF";
    name += char('0' + yy / 10);
    name += char('0' + yy % 10);
    return name + ".DAT";
}

std::string MagVar::SecularVariationFileName() {
    std::string name = CoefficientFileName(kLastEpoch);
    return name.substr(0, name.size() - 4) + "S.DAT";
}

std::string MagVar::FilePath(const std::string& name) const {
    return datPath_.empty() ? name : WithTrailingSlash(datPath_) + name;
}

int MagVar::LoadModel(double year, MagModel& result, std::string* failedFile) const {
    const double t = std::isnan(year) ? double(kLastEpoch)
                                      : std::clamp(year, double(kFirstEpoch), kLastEpoch + kForecastYears);
    // The first file is the epoch at or below t; the second is the next
    // epoch, or the secular variation after the last one.
    int epoch1 = kFirstEpoch + int(std::floor((t - kFirstEpoch) / kEpochStep)) * kEpochStep;
    epoch1 = std::min(epoch1, kLastEpoch);
    const bool forecast = epoch1 == kLastEpoch;
    const std::string name1 = CoefficientFileName(epoch1);
    const std::string name2 = forecast ? SecularVariationFileName() : CoefficientFileName(epoch1 + kEpochStep);

    MagModel first, second;
    int16_t year1 = 0, year2 = 0;
    auto fail = [&](int code, const std::string& name) {
        if (failedFile) *failedFile = FilePath(name);
        return code;
    };
    if (int e = ReadCoefficients(FilePath(name1), first.maxDegree, year1, first.g, first.h, &first.radius))
        return fail(e, name1);
    if (int e = ReadCoefficients(FilePath(name2), second.maxDegree, year2, second.g, second.h, &second.radius))
        return fail(e, name2);
    // A file must hold the epoch its name says: a misnamed file would
    // otherwise give a plausible but wrong variation.
    if (year1 != epoch1) return fail(coefficients::BadHeader, name1);
    if (year2 != (forecast ? epoch1 : epoch1 + kEpochStep)) return fail(coefficients::BadHeader, name2);
    if (!forecast && second.radius != first.radius) return fail(coefficients::BadHeader, name2);

    result.year = t;
    result.radius = first.radius;
    const double dt = t - epoch1;
    if (forecast) {
        result.maxDegree = first.maxDegree;
        for (size_t i = 0; i < result.g.size(); ++i) result.g[i] = float(first.g[i] + dt * second.g[i]);
        for (size_t i = 0; i < result.h.size(); ++i) result.h[i] = float(first.h[i] + dt * second.h[i]);
    } else {
        // Coefficients beyond a file's degree are zero, so models of
        // different degree (10 before 2000, 13 after) blend cleanly.
        result.maxDegree = std::max(first.maxDegree, second.maxDegree);
        const double w = dt / kEpochStep;
        for (size_t i = 0; i < result.g.size(); ++i)
            result.g[i] = float(first.g[i] + w * (double(second.g[i]) - first.g[i]));
        for (size_t i = 0; i < result.h.size(); ++i)
            result.h[i] = float(first.h[i] + w * (double(second.h[i]) - first.h[i]));
    }
    return coefficients::Ok;
}

const MagModel* MagVar::ModelFor(double year, MagVarError* error) {
    if (error) *error = MagVarError::None;
    if (haveCache_ && (cachedYear_ == year || (std::isnan(year) && std::isnan(cachedYear_))))
        return cachedFailed_ ? nullptr : &*cached_;
    MagModel model;
    ++loads_;
    const int e = LoadModel(year, model);
    haveCache_ = true;
    cachedYear_ = year;
    cachedFailed_ = e != coefficients::Ok;
    if (cachedFailed_) {
        cached_.reset();
        if (error) *error = MagVarError::CannotReadCoefficients;
        return nullptr;
    }
    cached_ = model;
    return &*cached_;
}

double MagVar::DeclinationForYear(const LatLong& position, double year, MagVarError* error) {
    const MagModel* model = ModelFor(year, error);
    if (!model || !std::isfinite(position.Lat) || !std::isfinite(position.Long)) return 0.0;
    return Declination(*model, position.Lat / 3600.0 * kDegToRad, position.Long / 3600.0 * kDegToRad);
}

}  // namespace ombra
