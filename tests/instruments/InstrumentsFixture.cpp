#include "tests/instruments/InstrumentsFixture.h"

#include "instruments/NmeaText.h"

namespace ombra::test {

std::string Sentence(const std::string& body) { return "$" + body + "*" + NmeaChecksum(body) + "\r\n"; }

}  // namespace ombra::test
