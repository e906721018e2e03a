// Types shared by every module: positions (LatLong), chart pixels
// (ChartPoint), colours (Rgb) and pixel blocks (Image). They are the value
// types of the platform interfaces, defined beside them in
// platform/api/Geo.h; the modules name them through this header.
#pragma once
#include "platform/api/Geo.h"
