// Registry: every persistent preference of the plotter, as text.
//
// A setting is named by a code of the enumeration Key, never by a string:
// the code fixes the stored key, its section and its default in one table
// (RegistryKeys.def). The store holds text only; callers parse and format
// values themselves, and booleans are the texts "True" and "False" compared
// exactly, so "TRUE" in the store is not true for a caller that tests for
// "True".
//
// Application "Vestrane", section "Tarnel" (the product name), except the
// companion tide program's folder under section "Ebbline".
//
// Contract:
//   - Reading never writes: a key never stored reads as its default and
//     stays unstored. The one default not in the table is the "Ebbline"
//     key's, the install folder given by SetAppPath ("" before it).
//   - Any code is accepted: an unknown code (negative, Key::Count_ or
//     beyond) reads "" and writes nothing.
//   - Any text may be stored; it is read back byte for byte. Numbers are
//     read by the numeric-prefix rule (Val): "38400 baud" is 38400, text
//     with no number is 0.
//   - A failing store is never the caller's problem: a read that fails
//     gives the default, a write that fails is lost silently.
//   - The Registry holds the backend by reference: the backend outlives it.
//     It is not safe for concurrent use; the plotter uses it from the GUI
//     thread only.
//
//   reg.GetSetting(Key::GPSBaudRate)        -> "4800" on a first run
//   reg.SaveSetting(Key::ARPABaudRate, "9600")   // AIS and ARPA share it
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/api/SettingsBackend.h"

namespace ombra {

enum class Key : int16_t {
#define REG_KEY(id, name, def) id,
#define REG_KEY_IN(id, section, name, def) id,
#include "core/RegistryKeys.def"
#undef REG_KEY
#undef REG_KEY_IN
    Count_
};

struct KeyInfo {
    Key key;
    const char* section;  // nullptr: the product name
    const char* name;
    const char* defaultText;
};

// The table, in enumeration order: row i holds Key(i). `count` is set to
// the number of rows; the table lives as long as the program.
const KeyInfo* KeyTable(size_t& count);
// The entry of a code; nullptr for an unknown code.
const KeyInfo* FindKey(int16_t code);

class Registry {
public:
    static constexpr const char* Application = "Vestrane";

    Registry(SettingsBackend& backend, const std::string& productName) : backend_(backend), productName_(productName) {}

    // The stored text, or the default; "" for an unknown code. Store
    // failures are ignored so that a read always gives a value.
    std::string GetSetting(Key key) const { return GetSetting(int16_t(key)); }
    std::string GetSetting(int16_t code) const;
    // Stores the text; an unknown code writes nothing. Failures are silent.
    void SaveSetting(Key key, std::string_view value) { SaveSetting(int16_t(key), value); }
    void SaveSetting(int16_t code, std::string_view value);

    // Typed reading by the numeric-prefix and exact-text rules: the number
    // at the start of the text (0 when there is none).
    double GetNumber(Key key) const;
    bool IsTrue(Key key) const { return GetSetting(key) == "True"; }    // all else is false
    bool IsFalse(Key key) const { return GetSetting(key) == "False"; }  // all else is true

    // The install folder, the default of the "Ebbline" section's key; it is
    // not stored.
    void SetAppPath(const std::string& appPath) { appPath_ = appPath; }

private:
    SettingsBackend& backend_;
    std::string productName_;
    std::string appPath_;
};

// The stored text of a boolean: "True" or "False".
inline const char* BoolText(bool b) { return b ? "True" : "False"; }

}  // namespace ombra
