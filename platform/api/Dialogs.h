// Dialogs: every question and message the logic puts to the user.
//
// The logic never opens a window itself; it asks this service. In the
// program the service shows Qt dialogs; in tests a scripted fake answers
// and records what was asked, so a test can check every text word for word.
//
// Message boxes take the style bits of the old plotter's message box:
// buttons in the low nibble, the icon in the next, the default button
// after that. Replies are the same numbers the old code compared against.
//
//   if (dlg.MsgBox("Do you want to connect to your GPS set now.",
//                  mb::YesNo | mb::Question | mb::DefaultButton2, "Tarnel") == mb::Yes) ...
#pragma once
#include <string>
#include <vector>

namespace ombra {

namespace mb {
// Buttons.
constexpr int OKOnly = 0, OKCancel = 1, AbortRetryIgnore = 2, YesNoCancel = 3, YesNo = 4, RetryCancel = 5;
// Icons.
constexpr int Critical = 16, Question = 32, Exclamation = 48, Information = 64;
// Default button.
constexpr int DefaultButton1 = 0, DefaultButton2 = 256, DefaultButton3 = 512;
// Replies.
constexpr int OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7;
}  // namespace mb

class Dialogs {
public:
    virtual ~Dialogs() = default;
    // A message box; returns one of the mb reply codes.
    virtual int MsgBox(const std::string& text, int style, const std::string& title) = 0;
    // A one-line text question. Returns false when the user cancels.
    virtual bool InputBox(const std::string& prompt, const std::string& title, std::string& value) = 0;
    // A pick from a list: the chosen index, or -1 on cancel.
    virtual int PickFromList(const std::string& title, const std::vector<std::string>& items, int current) = 0;
    // File and folder choosers: empty when cancelled. `filter` is
    // "Description (*.ext)" as Qt writes it.
    virtual std::string OpenFileName(const std::string& title, const std::string& folder, const std::string& filter) = 0;
    virtual std::string SaveFileName(const std::string& title, const std::string& folder, const std::string& filter) = 0;
    virtual std::string FolderName(const std::string& title, const std::string& folder) = 0;
};

}  // namespace ombra
