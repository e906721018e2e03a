// Reporting a fault by the name of the procedure it happened in.
//
// Every procedure of any size runs under Guard: a fault in its body is
// shown once as
//     Error in 'UpdateVesselPos'
//     <the fault's description, as it comes>
// in a warning box with the OK button, titled with the product name, and
// the caller goes on. Nothing is written to disk and nothing ends the
// program. A fault repeated in a loop of guarded rounds reports once a round.
#pragma once
#include <exception>
#include <functional>
#include <string>

#include "core/Fault.h"
#include "platform/api/Dialogs.h"

namespace ombra {

class ErrorReporter {
public:
    ErrorReporter(Dialogs& dialogs, const std::string& productName) : dialogs_(dialogs), productName_(productName) {}

    // Reports the fault being handled (call it from a catch block), or an
    // unknown fault when there is none.
    void ReportError(const std::string& procedureName);
    // Reports a given description.
    void ReportError(const std::string& procedureName, const std::string& description);

    // Runs `body`; a fault is reported under `procedureName`. True when the
    // body ran to its end.
    template <typename F>
    bool Guard(const char* procedureName, F&& body) {
        try {
            body();
            return true;
        } catch (...) {
            ReportError(procedureName);
            return false;
        }
    }

    Dialogs& dialogs() { return dialogs_; }
    const std::string& ProductName() const { return productName_; }

    // The description of the fault being handled: a Fault's own text, a
    // standard exception's what(), or "Unknown error".
    static std::string CurrentFaultDescription();
    static int CurrentFaultNumber();

private:
    Dialogs& dialogs_;
    std::string productName_;
};

}  // namespace ombra
