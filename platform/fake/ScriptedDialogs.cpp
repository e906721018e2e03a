#include "platform/fake/ScriptedDialogs.h"

namespace ombra {

int ScriptedDialogs::DefaultReply(int style) {
    int buttons = style & 15;
    int def = (style >> 8) & 3;
    switch (buttons) {
        case mb::OKCancel: return def == 1 ? mb::Cancel : mb::OK;
        case mb::AbortRetryIgnore: return def == 0 ? mb::Abort : def == 1 ? mb::Retry : mb::Ignore;
        case mb::YesNoCancel: return def == 0 ? mb::Yes : def == 1 ? mb::No : mb::Cancel;
        case mb::YesNo: return def == 1 ? mb::No : mb::Yes;
        case mb::RetryCancel: return def == 1 ? mb::Cancel : mb::Retry;
        default: return mb::OK;
    }
}

int ScriptedDialogs::MsgBox(const std::string& text, int style, const std::string& title) {
    asked.push_back({"MsgBox", text, style, title});
    if (replies.empty()) return DefaultReply(style);
    int r = replies.front();
    replies.pop_front();
    return r;
}

bool ScriptedDialogs::InputBox(const std::string& prompt, const std::string& title, std::string& value) {
    asked.push_back({"InputBox", prompt, 0, title});
    if (texts.empty()) return false;
    std::string t = texts.front();
    texts.pop_front();
    if (t == "\x18") return false;
    value = t;
    return true;
}

int ScriptedDialogs::PickFromList(const std::string& title, const std::vector<std::string>&, int) {
    asked.push_back({"Pick", title, 0, title});
    if (picks.empty()) return -1;
    int p = picks.front();
    picks.pop_front();
    return p;
}

static std::string NextName(std::deque<std::string>& texts) {
    if (texts.empty()) return "";
    std::string t = texts.front();
    texts.pop_front();
    return t == "\x18" ? "" : t;
}

std::string ScriptedDialogs::OpenFileName(const std::string& title, const std::string&, const std::string&) {
    asked.push_back({"Open", title, 0, title});
    return NextName(texts);
}

std::string ScriptedDialogs::SaveFileName(const std::string& title, const std::string&, const std::string&) {
    asked.push_back({"Save", title, 0, title});
    return NextName(texts);
}

std::string ScriptedDialogs::FolderName(const std::string& title, const std::string&) {
    asked.push_back({"Folder", title, 0, title});
    return NextName(texts);
}

}  // namespace ombra
