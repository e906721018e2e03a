#include "core/Registry.h"

#include "core/Val.h"

namespace ombra {

namespace {
const KeyInfo kTable[] = {
#define REG_KEY(id, name, def) {Key::id, nullptr, name, def},
#define REG_KEY_IN(id, section, name, def) {Key::id, section, name, def},
#include "core/RegistryKeys.def"
#undef REG_KEY
#undef REG_KEY_IN
};
static_assert(sizeof(kTable) / sizeof(kTable[0]) == size_t(Key::Count_), "one table row a key");
}  // namespace

const KeyInfo* KeyTable(size_t& count) {
    count = sizeof(kTable) / sizeof(kTable[0]);
    return kTable;
}

const KeyInfo* FindKey(int16_t code) {
    if (code < 0 || code >= int16_t(Key::Count_)) return nullptr;
    return &kTable[code];
}

std::string Registry::GetSetting(int16_t code) const {
    const KeyInfo* k = FindKey(code);
    if (!k) return "";
    std::string def = k->defaultText;
    if (k->key == Key::EbblineDir) def = appPath_;
    try {
        auto v = backend_.Read(Application, k->section ? k->section : productName_, k->name);
        if (v) return *v;
    } catch (...) {
    }
    return def;
}

void Registry::SaveSetting(int16_t code, std::string_view value) {
    const KeyInfo* k = FindKey(code);
    if (!k) return;
    try {
        backend_.Write(Application, k->section ? k->section : productName_, k->name, std::string(value));
    } catch (...) {
    }
}

double Registry::GetNumber(Key key) const { return Val(GetSetting(key)); }

}  // namespace ombra
