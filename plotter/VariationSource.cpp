#include "plotter/VariationSource.h"

namespace ombra {

VariationSource::VariationSource(std::string datPath, Clock& clock, Dialogs& dialogs)
    : model_(std::move(datPath)), clock_(clock), dialogs_(dialogs) {}

float VariationSource::MagneticVariation(const LatLong& position) {
    return VariationForYear(position, double(clock_.Now().year));
}

float VariationSource::VariationForYear(const LatLong& position, double year) {
    MagVarError error = MagVarError::None;
    const float v = model_.VariationForYear(position, year, &error);
    // The model returns an error only from the call that read the files,
    // so a bad year is shown once, however often it is asked.
    if (error != MagVarError::None)
        dialogs_.MsgBox(MagVarErrorText(error), mb::OKOnly | mb::Exclamation, kMagVarErrorTitle);
    return v;
}

}  // namespace ombra
