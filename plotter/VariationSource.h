// VariationSource: the magnetic variation as the plotter serves it to the
// vessel and the navigation objects. It joins the variation model (MagVar)
// to the ship's clock and the message boxes: the year is the whole year of
// the clock ("yyyy"), and a model that cannot be read is shown once a year,
// "Error reading coefficients file." titled "Magnetic Variation", with the
// variation 0 until another year is asked for.
//
//   VariationSource magVar(globals.AppDatPath, clock, dialogs);
//   float v = magVar.MagneticVariation(vessel.Pos);   // degrees, east positive
#pragma once
#include <string>
#include <utility>

#include "core/Types.h"
#include "navmath/MagVar.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"

namespace ombra {

class VariationSource {
public:
    VariationSource(std::string datPath, Clock& clock, Dialogs& dialogs);

    // Points the model at another folder; the cached year is dropped.
    void SetDatPath(std::string datPath) { model_.SetDatPath(std::move(datPath)); }
    const std::string& DatPath() const { return model_.DatPath(); }

    // The variation at `position` for the clock's present year.
    float MagneticVariation(const LatLong& position);
    // The variation for a given year, with the message of an unreadable model.
    float VariationForYear(const LatLong& position, double year);

    // The model itself, for callers that handle its errors on their own.
    MagVar& Model() { return model_; }
    // How many times the model read its files.
    int Loads() const { return model_.Loads(); }

private:
    MagVar model_;
    Clock& clock_;
    Dialogs& dialogs_;
};

}  // namespace ombra
