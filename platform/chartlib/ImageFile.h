// ImageFile: pictures to disk without a window system, for "chart render"
// and "chart export": PNG (RGB, 8 bits a channel, zlib deflate) and binary
// PPM (P6). Both take the 0xAARRGGBB pixels of an Image and drop alpha.
// Files are written atomically (the old file stays whole on failure).
//
//   std::string why;
//   WriteImageFile("view.png", image, why);   // the extension picks the form
#pragma once
#include <string>

#include "core/Types.h"

namespace ombra::chartlib {

std::string EncodePng(const Image& image);
std::string EncodePpm(const Image& image);
// ".png" or ".ppm" (any case) by the name; false with `error` otherwise.
bool WriteImageFile(const std::string& path, const Image& image, std::string& error);
// Reads back a P6 PPM (tests and tools); false on anything else.
bool DecodePpm(const std::string& bytes, Image& image);

}  // namespace ombra::chartlib
