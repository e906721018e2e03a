// GenFuncs: positions as the navigator reads and types them, and the small
// questions every store asks.
//
// A position is shown as degrees, decimal minutes and hemisphere:
//     "50° 07.250 ´N"   "11° 58.000 ´W"
// with " *" added when the position is not in the datum being shown. Typed
// positions are read back by ParseLatLong, which takes "50 7.25 N" and the
// shown form alike (marks and a decimal comma are accepted; runs of blanks
// count as one), and answers in seconds of arc.
//
//   std::string lat = "51 28.57 N", lon = "2 36.6 W";
//   ParseLatLong(lat, lon, dialogs, "Tarnel");  // lat == "185314.2", lon == "-9396"
#pragma once
#include <cstdint>
#include <string>
#include <utility>

#include "core/Types.h"

namespace ombra {

class Dialogs;

// `pos` nullptr means the position is missing. `shiftAvailable` tells, for
// DatumMode 0, whether the position can be shifted to the chart's datum.
void LatLongText(std::string& latText, std::string& lonText, const LatLong* pos, int16_t DatumMode,
                 int16_t DatumValid, bool shiftAvailable = true);

bool ParseLatLong(std::string& latText, std::string& lonText, Dialogs& dialogs, const std::string& productName);

// The message of a rejected position, as shown.
extern const char* const kInvalidLatLongMessage;

template <typename T>
void SwapValues(T& a, T& b) {
    using std::swap;
    swap(a, b);
}

enum class DeleteKind { Route, Waypoint, Other };
enum class MoveKind { BoundaryMark, Waypoint, Vessel };

// Yes/No questions; true on Yes.
bool ConfirmDelete(DeleteKind kind, Dialogs& dialogs, const std::string& productName);
bool ConfirmMove(MoveKind kind, Dialogs& dialogs, const std::string& productName);

}  // namespace ombra
