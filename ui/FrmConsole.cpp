#include "ui/FrmConsole.h"

#include <QHBoxLayout>
#include <QTabWidget>
#include <QVBoxLayout>

#include "instruments/Console.h"
#include "ui/DialogParts.h"

namespace ombra {

namespace {
template <typename C>
auto ShowArray(C& c, int frame) {
    switch (frame) {
        case 0: return c.ShowVessel.data();
        case 1: return c.ShowCursor.data();
        case 2: return c.ShowWP.data();
        case 3: return c.ShowTide.data();
        case 4: return c.ShowAIS.data();
        case 5: return c.ShowARPA.data();
        default: return c.ShowDDE.data();
    }
}
}  // namespace

FrmConsole::FrmConsole(QWidget* owner, const Console& console) : QDialog(owner) {
    setObjectName("FrmConsole");
    setWindowTitle("Console Options");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    ChkConsoleVisible = NamedCheck(this, top, "ChkConsoleVisible", "Show the console", console.Visible);
    auto* tabs = new QTabWidget(this);
    // Every tab in sight: the dialog widens to the tab bar, at any font size.
    tabs->setUsesScrollButtons(false);
    tabs->setElideMode(Qt::ElideNone);
    top->addWidget(tabs);
    const auto& frames = Console::Frames();
    // Pages in the model's frame order; the tracking frame has no options.
    const int frameOfPage[] = {1, 2, 3, 4, 5, 6, 8};
    const char* pageNames[] = {"Vessel", "Cursor", "Waypoint", "Tide", "AIS", "ARPA", "DDE"};
    for (int page = 0; page < 7; ++page) {
        auto* w = new QWidget(tabs);
        auto* l = new QVBoxLayout(w);
        const auto& captions = frames[size_t(frameOfPage[page])].captions;
        const bool* shows = ShowArray(console, page);
        for (size_t row = 0; row < captions.size(); ++row) {
            std::string caption = captions[row];
            if (caption.empty()) continue;  // a second line of the row above (ETA date, XTE side)
            auto* c = new QCheckBox(QString::fromUtf8(caption.c_str()), w);
            c->setObjectName(QString("Chk%1_%2").arg(pageNames[page]).arg(row));
            c->setChecked(shows[row]);
            l->addWidget(c);
            boxes_.push_back({c, page, int(row)});
        }
        l->addStretch(1);
        tabs->addTab(w, pageNames[page]);
    }
    OkCancel buttons = AddOkCancel(this, top);
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    ConnectOkCancel(this, buttons, &result_);
}

void FrmConsole::Apply(Console& console) const {
    console.Visible = ChkConsoleVisible->isChecked();
    const auto& frames = Console::Frames();
    const int frameOfPage[] = {1, 2, 3, 4, 5, 6, 8};
    for (const Box& b : boxes_) {
        bool* shows = ShowArray(console, b.frame);
        shows[b.row] = b.check->isChecked();
        // A row's second line follows its first (ETA date, the XTE side mark).
        const auto& captions = frames[size_t(frameOfPage[b.frame])].captions;
        size_t next = size_t(b.row) + 1;
        if (next < captions.size() && std::string(captions[next]).empty()) shows[next] = b.check->isChecked();
    }
}

}  // namespace ombra
