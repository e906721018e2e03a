// The main window's menu tree as data: each entry has a control name, a
// caption ("&" marks the access key) and its children. FrmMain builds the
// menus from this table and binds commands by control name, so adding a
// command is one line in the table and one binding.
#pragma once
#include <vector>

namespace ombra {

struct MenuEntry {
    const char* control;
    const char* caption;
    std::vector<MenuEntry> children;
    bool separatorBefore = false;
};

const std::vector<MenuEntry>& MainMenuTree();

}  // namespace ombra
