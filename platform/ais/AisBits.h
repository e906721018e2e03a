// The bit string of one AIS message, as the radio sent it.
//
// AIS rides inside NMEA "!" sentences in six-bit armour: each payload
// character carries six bits, most significant first. A character c maps to
// v = c - 48, less 8 more when v > 40, so '0'..'W' are 0..39 and '`'..'w'
// are 40..63; anything else is not armour. The last character of a message
// may carry 0 to 5 fill bits that are not part of the message; they are cut
// off here and the buffer is kept zero beyond the message's end.
//
// Fields are read by bit offset and width, offsets counted from 0 at the
// first bit of the message, as the message tables of ITU-R M.1371 give them.
// A field that runs past the end of a short message reads the missing bits
// as zeros: a transmitter that leaves off trailing spare fields still
// decodes, and no read ever leaves the buffer.
//
//   AisBits b;
//   b.AppendArmoured("15RTgt0PAso;90TKcjM8h6g208CQ", 0);   // 168 bits
//   b.Unsigned(0, 6)   == 1            (message type)
//   b.Unsigned(8, 30)  == 371798000    (MMSI)
//   b.Signed(61, 28)   == -74037230    (longitude, 1/10000 minute)
//
// Six-bit text uses the ITU alphabet "@A..Z[\]^_ !"#$%&'()*+,-./0..9:;<=>?";
// '@' ends a text and trailing blanks are trimmed.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ombra {

class AisBits {
public:
    // The longest message kept: five slots are 1008 bits; a few receivers
    // join more, so room is left for nine sentences of armour.
    static constexpr size_t kMaxBits = 4096;

    // Appends the armoured characters, then drops `fillBits` (0..5) from the
    // end. False, leaving the buffer as it was, on a character that is not
    // armour, fill bits out of range or more than the payload holds, or a
    // message that would outgrow kMaxBits.
    bool AppendArmoured(std::string_view payload, int fillBits);
    // Appends bits from another buffer (used to join fragments).
    bool Append(const AisBits& other);
    void Clear();

    size_t size() const { return bits_; }

    // An unsigned field of up to 64 bits; bits past the end read as zeros.
    uint64_t Unsigned(size_t start, size_t width) const;
    // A two's-complement field of 1 to 64 bits.
    int64_t Signed(size_t start, size_t width) const;
    // `count` six-bit characters from `start`, cut at the first '@'; with
    // `trim`, trailing blanks are removed too.
    std::string Text(size_t start, size_t count, bool trim = true) const;
    // `count` bits from `start` as lower-case hexadecimal bytes; the last
    // byte is completed with the bits that follow (zeros past the end).
    std::string Hex(size_t start, size_t count) const;

private:
    bool Bit(size_t i) const { return i < bits_ && ((bytes_[i >> 3] >> (7 - (i & 7))) & 1u); }
    std::array<uint8_t, kMaxBits / 8> bytes_{};
    size_t bits_ = 0;
};


}  // namespace ombra
