// TargetFinder: the targets of every kind under a point of the chart, as
// the "Targets Found" window lists them, and the choice of one. The
// plotter implements it over each target module it holds.
#pragma once
#include <string>
#include <vector>

#include "platform/api/Geo.h"

namespace ombra {

struct FoundTarget {
    std::string kind;   // "DDE", ...
    int index = 0;      // the slot in its module's table
    std::string label;  // as the list shows it: the name, " - ", the slot
};

class TargetFinder {
public:
    virtual ~TargetFinder() = default;
    // Targets within a few pixels of `screen`; every target when `all`.
    virtual std::vector<FoundTarget> FindTargets(ChartPoint screen, bool all) = 0;
    // The navigator picked one: it becomes its module's active target and
    // the chart is centred on it.
    virtual void SelectTarget(const FoundTarget& target) = 0;
};

}  // namespace ombra
