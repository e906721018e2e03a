// Faults and the procedure guard.
//
// A procedure of any size runs its body under a guard. A fault inside it
// (a Fault thrown by the helpers, or any std::exception) does not end the
// program: the guard reports it once through ReportError with the
// procedure's own name, and the caller carries on with its next statement.
// One fault costs one procedure, never the plotter.
//
//   Guard(errors, "UpdateVesselPos", [&] { ... });
//
// A Fault carries the number and description the user sees in the report
// ("Overflow" is 6, "Input past end of file" is 62, as navigators who used
// the old plotter know them).
#pragma once
#include <stdexcept>
#include <string>

namespace ombra {

class Fault : public std::runtime_error {
public:
    Fault(int number, const std::string& description) : std::runtime_error(description), number_(number) {}
    int Number() const { return number_; }

private:
    int number_;
};

namespace faults {
constexpr int Overflow = 6;
constexpr int SubscriptOutOfRange = 9;
constexpr int DivisionByZero = 11;
constexpr int TypeMismatch = 13;
constexpr int BadFileName = 52;
constexpr int FileNotFound = 53;
constexpr int InputPastEnd = 62;
constexpr int PathFileAccess = 75;
constexpr int PathNotFound = 76;
}  // namespace faults

[[noreturn]] void RaiseFault(int number);
std::string FaultDescription(int number);

}  // namespace ombra
