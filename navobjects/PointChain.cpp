#include "navobjects/PointChain.h"

namespace ombra {

std::string ChainPointName(const ChainWords& words, int16_t slot, int16_t index) {
    return words.chainTag + Format(slot, "0") + words.pointTag + Format(index, "0");
}

}  // namespace ombra
