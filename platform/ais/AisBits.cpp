#include "platform/ais/AisBits.h"

#include <algorithm>

namespace ombra {

namespace {

// The armour value of a payload character, or -1 when it is not armour.
int ArmourValue(char c) {
    const int v = static_cast<unsigned char>(c) - 48;
    if (v < 0 || v > 71) return -1;
    if (v <= 39) return v;
    if (v < 48) return -1;  // ':' .. '_' after 'W' are not in the alphabet
    return v - 8;
}

constexpr char kSixBit[] = "@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_ !\"#$%&'()*+,-./0123456789:;<=>?";

}  // namespace

bool AisBits::AppendArmoured(std::string_view payload, int fillBits) {
    if (fillBits < 0 || fillBits > 5) return false;
    const size_t added = payload.size() * 6;
    if (size_t(fillBits) > added) return false;
    if (added - size_t(fillBits) > kMaxBits - bits_) return false;
    // The fill bits are written, then cut, so the capacity must hold them.
    if (added > sizeof(bytes_) * 8 - bits_) return false;
    for (char c : payload)
        if (ArmourValue(c) < 0) return false;
    for (char c : payload) {
        const unsigned v = unsigned(ArmourValue(c));
        for (int k = 5; k >= 0; --k) {
            const size_t i = bits_++;
            if ((v >> k) & 1u) bytes_[i >> 3] |= uint8_t(0x80u >> (i & 7));
        }
    }
    for (int k = 0; k < fillBits; ++k) {
        const size_t i = --bits_;
        bytes_[i >> 3] &= uint8_t(~(0x80u >> (i & 7)));
    }
    return true;
}

bool AisBits::Append(const AisBits& other) {
    if (other.bits_ > kMaxBits - bits_) return false;
    for (size_t i = 0; i < other.bits_; ++i) {
        const size_t j = bits_++;
        if (other.Bit(i)) bytes_[j >> 3] |= uint8_t(0x80u >> (j & 7));
    }
    return true;
}

void AisBits::Clear() {
    std::fill(bytes_.begin(), bytes_.begin() + std::min(bytes_.size(), (bits_ + 7) / 8), uint8_t(0));
    bits_ = 0;
}

uint64_t AisBits::Unsigned(size_t start, size_t width) const {
    if (width == 0 || start >= bits_) return 0;
    width = std::min<size_t>(width, 64);
    const size_t end = start + width;
    const size_t limit = std::min(end, bits_);
    uint64_t v = 0;
    size_t i = start;
    while (i < limit) {
        if ((i & 7) == 0 && limit - i >= 8) {
            v = (v << 8) | bytes_[i >> 3];
            i += 8;
        } else {
            v = (v << 1) | uint64_t(Bit(i));
            ++i;
        }
    }
    const size_t missing = end - limit;  // bits past the end read as zeros
    return missing >= 64 ? 0 : v << missing;
}

int64_t AisBits::Signed(size_t start, size_t width) const {
    width = std::min<size_t>(width, 64);
    const uint64_t u = Unsigned(start, width);
    if (width == 0 || width == 64) return int64_t(u);
    const uint64_t sign = uint64_t(1) << (width - 1);
    return (u & sign) ? int64_t(u) - int64_t(sign << 1) : int64_t(u);
}

std::string AisBits::Text(size_t start, size_t count, bool trim) const {
    std::string out;
    out.reserve(count);
    for (size_t k = 0; k < count; ++k) {
        const char c = kSixBit[Unsigned(start + 6 * k, 6)];
        if (c == '@') break;
        out.push_back(c);
    }
    if (trim)
        while (!out.empty() && out.back() == ' ') out.pop_back();
    return out;
}

std::string AisBits::Hex(size_t start, size_t count) const {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string out;
    out.reserve((count + 7) / 8 * 2);
    for (size_t done = 0; done < count; done += 8) {
        const unsigned byte = unsigned(Unsigned(start + done, 8));
        out.push_back(kDigits[byte >> 4]);
        out.push_back(kDigits[byte & 15]);
    }
    return out;
}

}  // namespace ombra
