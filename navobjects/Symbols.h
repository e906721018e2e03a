// Waypoint symbols: the table of 37 names and the two strips of 16 x 16
// pixel cells that waypoints, route points and boundary marks are drawn
// with.
//
// A strip is 37 cells side by side, 592 x 16 pixels; the cell of symbol i
// starts at x = 16 i. The normal strip draws every point; the active strip,
// same layout, draws the waypoint the vessel is steering to. A cell's
// transparent pixels are its mask: they leave the chart showing through.
// A symbol is placed with its top-left corner 7 pixels left of and above
// the point, so that pixel (7, 7) of the cell lies on the position.
//
// The strips are drawn by Ombra itself (SymbolArt below) and shipped as a
// text file, "dat\WPSymbols.txt" in the install folder, so that a user may
// redraw them with a text editor:
//
//   OMBRA-SYMBOLS 1
//   size 16 count 37
//   colour . 00000000          one line a pixel code: a character and
//   colour K ff000000          the colour as AARRGGBB in hexadecimal
//   strip normal
//   <16 lines of 592 codes>
//   strip active
//   <16 lines of 592 codes>
//
// A file that is missing or damaged in any way is not used: the built-in
// strips are, and the reason is kept for the caller to report.
#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "core/Types.h"

namespace ombra {

constexpr int kSymbolCount = 37;
constexpr int kSymbolSize = 16;
constexpr int kSymbolCentre = 7;

// "Circle", "Square", ... "Man Overboard", in index order.
extern const char* const kSymbolNames[kSymbolCount];

class SymbolStrips {
public:
    // The built-in strips.
    SymbolStrips();

    // The cell of a symbol; an index outside 0..36 gives symbol 0.
    const Image& Cell(int16_t icon, bool active) const;
    // The whole strip, 592 x 16.
    Image Strip(bool active) const;

    // Reads a strip file; false (and the built-in strips kept) when it is
    // missing or damaged, with the reason in `why`.
    bool Load(const std::string& path, std::string* why = nullptr);
    bool Parse(const std::string& text, std::string* why = nullptr);
    // The text form of the strips held now.
    std::string Text() const;

private:
    std::array<Image, kSymbolCount> normal_;
    std::array<Image, kSymbolCount> active_;
};

// Draws symbol `icon` into a fresh 16 x 16 cell; `active` picks the
// active strip's colouring.
Image SymbolArt(int icon, bool active);

}  // namespace ombra
