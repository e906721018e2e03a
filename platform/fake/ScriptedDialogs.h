// Dialogs that answer from a script and remember every question, so a test
// can check each text and title word for word and steer the logic through
// its branches. With an empty script a message box answers its default
// button, an input box is cancelled, a list pick is cancelled.
#pragma once
#include <deque>
#include <string>
#include <vector>

#include "platform/api/Dialogs.h"

namespace ombra {

class ScriptedDialogs : public Dialogs {
public:
    struct Asked {
        std::string kind;   // "MsgBox", "InputBox", "Pick", "Open", "Save", "Folder"
        std::string text;   // message, prompt or title
        int style = 0;
        std::string title;
    };

    int MsgBox(const std::string& text, int style, const std::string& title) override;
    bool InputBox(const std::string& prompt, const std::string& title, std::string& value) override;
    int PickFromList(const std::string& title, const std::vector<std::string>& items, int current) override;
    std::string OpenFileName(const std::string& title, const std::string& folder, const std::string& filter) override;
    std::string SaveFileName(const std::string& title, const std::string& folder, const std::string& filter) override;
    std::string FolderName(const std::string& title, const std::string& folder) override;

    // The answer of the style's default button.
    static int DefaultReply(int style);

    std::deque<int> replies;              // message box replies, in order
    std::deque<std::string> texts;        // input box values and file names; "\x18" cancels
    std::deque<int> picks;                // list picks
    std::vector<Asked> asked;
};

}  // namespace ombra
