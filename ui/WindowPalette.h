// The colours of the windows around the chart, by the chart's palette mode:
// day (0) is the style's own light palette; twilight (1) a dim grey one;
// night (2) near-black with dull red text, so that no white panel spoils
// the eyes' adjustment to the dark.
#pragma once
#include <QPalette>

namespace ombra {

QPalette WindowPalette(int mode);

// Makes WindowPalette(mode) the palette of every window, open or still to
// be made.
void ApplyWindowPalette(int mode);

}  // namespace ombra
