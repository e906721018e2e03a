#include "core/ErrorReport.h"

#include <new>
#include <stdexcept>

namespace ombra {

std::string ErrorReporter::CurrentFaultDescription() {
    std::exception_ptr p = std::current_exception();
    if (!p) return "Unknown error";
    try {
        std::rethrow_exception(p);
    } catch (const Fault& f) {
        return f.what();
    } catch (const std::bad_alloc&) {
        return "Out of memory";
    } catch (const std::out_of_range&) {
        return FaultDescription(faults::SubscriptOutOfRange);
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "Unknown error";
    }
}

int ErrorReporter::CurrentFaultNumber() {
    std::exception_ptr p = std::current_exception();
    if (!p) return 0;
    try {
        std::rethrow_exception(p);
    } catch (const Fault& f) {
        return f.Number();
    } catch (const std::bad_alloc&) {
        return 7;
    } catch (const std::out_of_range&) {
        return faults::SubscriptOutOfRange;
    } catch (...) {
        return 5;  // invalid procedure call or argument
    }
}

void ErrorReporter::ReportError(const std::string& procedureName) {
    ReportError(procedureName, CurrentFaultDescription());
}

void ErrorReporter::ReportError(const std::string& procedureName, const std::string& description) {
    try {
        dialogs_.MsgBox("Error in '" + procedureName + "'\n" + description, mb::OKOnly | mb::Exclamation, productName_);
    } catch (...) {
        // A report that cannot be shown must not become a second fault.
    }
}

}  // namespace ombra
