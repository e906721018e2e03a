#include "tests/instruments/InstrumentsFixture.h"

#include <gtest/gtest.h>

#include "instruments/NmeaText.h"

namespace ombra::test {

DecodeResult InstrumentsFixture::Decode(const std::string& sentence) {
    const NmeaDecoder::Route* route = NmeaDecoder::FindRoute(std::string_view(sentence).substr(3, 3));
    if (!route) {
        ADD_FAILURE() << "no decoder for " << sentence;
        return {};
    }
    DecodeResult r = ins.decoder.Run(*route, SplitFields(sentence, route->maxField), sentence);
    ins.comm.Report(r);
    return r;
}

void InstrumentsFixture::ReadFix(GPSFix& out) {
    if (!ins.decoder.AgeFix()) ins.decoder.GetGPSFix(out);
}

std::string Sentence(const std::string& body) { return "$" + body + "*" + NmeaChecksum(body) + "\r\n"; }

}  // namespace ombra::test
