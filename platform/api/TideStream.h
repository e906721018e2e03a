// The tidal stream model: regions of harmonic stream constants on disc and
// the prediction of the surface stream at a point and an instant.
//
// The plotter speaks to it in integers: positions in 1e-7 degree, speeds in
// millimetres a second, directions in tenths of a degree true (the way the
// stream runs). Names travel in fixed 100-character, NUL-terminated 8-bit
// buffers which the model may rewrite; callers copy them back after each
// call. Results below 1 mean success; 1 or more means the model could not
// answer (no region selected, a region refused, a point outside the model's
// water).
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace ombra {

class TideStream {
public:
    static constexpr std::size_t NameBufferSize = 100;

    virtual ~TideStream() = default;

    // The folder in which region files are opened; the buffer holds it
    // NUL-terminated and may end in a separator.
    virtual int32_t WrapperSetPath(char* path) = 0;
    // Selects the region by its two bare file names ("Region01.Hdr",
    // "Region01.Hrm"). Called before every prediction, so it is cheap once a
    // region has been read.
    virtual int32_t WrapperSetDataFileName(char* headerName, char* harmonicsName) = 0;
    // The selected region's box, east, west, north and south edges.
    virtual int32_t WrapperModelDomain(int32_t& longMax, int32_t& longMin, int32_t& latMax,
                                       int32_t& latMin) = 0;
    // The stream at one point. The instant is the caller's clock, read as the
    // time the region's harmonics are referred to. out4 is the speed in mm/s,
    // out5 the direction the stream runs towards, in tenths of a degree true.
    // out1 and out2 carry the east and north components in mm/s, out3 the
    // number of nodes the answer was drawn from.
    virtual int32_t WrapperDoPrediction(int32_t& points, int32_t& lat, int32_t& lon, int32_t day,
                                        int32_t month, int32_t year, int32_t hour, int32_t minute,
                                        int32_t second, int32_t reserved, int32_t& out1,
                                        int32_t& out2, int32_t& out3, int32_t& out4,
                                        int32_t& out5) = 0;

    // Why the region selected last was refused, in words for the navigator;
    // empty when it was read.
    virtual std::string LastError() const = 0;
};

}  // namespace ombra
