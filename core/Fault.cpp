#include "core/Fault.h"

namespace ombra {

std::string FaultDescription(int number) {
    switch (number) {
        case faults::Overflow: return "Overflow";
        case faults::SubscriptOutOfRange: return "Subscript out of range";
        case faults::DivisionByZero: return "Division by zero";
        case faults::TypeMismatch: return "Type mismatch";
        case faults::BadFileName: return "Bad file name or number";
        case faults::FileNotFound: return "File not found";
        case faults::InputPastEnd: return "Input past end of file";
        case faults::PathFileAccess: return "Path/File access error";
        case faults::PathNotFound: return "Path not found";
        default: return "Application-defined or object-defined error";
    }
}

void RaiseFault(int number) { throw Fault(number, FaultDescription(number)); }

}  // namespace ombra
