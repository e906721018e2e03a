#include "ui/WindowPalette.h"

#include <QApplication>
#include <QStyle>

namespace ombra {

namespace {
struct Shades {
    QColor window, text, base, alternate, button, highlight, highlightText, disabled, link;
};

// Every role the widgets paint with, so that no light default shows through.
QPalette Build(const Shades& s) {
    QPalette p;
    for (QPalette::ColorGroup g : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        bool off = g == QPalette::Disabled;
        QColor text = off ? s.disabled : s.text;
        p.setColor(g, QPalette::Window, s.window);
        p.setColor(g, QPalette::WindowText, text);
        p.setColor(g, QPalette::Base, s.base);
        p.setColor(g, QPalette::AlternateBase, s.alternate);
        p.setColor(g, QPalette::ToolTipBase, s.base);
        p.setColor(g, QPalette::ToolTipText, text);
        p.setColor(g, QPalette::PlaceholderText, s.disabled);
        p.setColor(g, QPalette::Text, text);
        p.setColor(g, QPalette::Button, s.button);
        p.setColor(g, QPalette::ButtonText, text);
        p.setColor(g, QPalette::BrightText, s.highlightText);
        p.setColor(g, QPalette::Light, s.button.lighter(130));
        p.setColor(g, QPalette::Midlight, s.button.lighter(115));
        p.setColor(g, QPalette::Mid, s.button.darker(130));
        p.setColor(g, QPalette::Dark, s.window.darker(150));
        p.setColor(g, QPalette::Shadow, Qt::black);
        p.setColor(g, QPalette::Highlight, off ? s.button : s.highlight);
        p.setColor(g, QPalette::HighlightedText, off ? s.disabled : s.highlightText);
        p.setColor(g, QPalette::Link, s.link);
        p.setColor(g, QPalette::LinkVisited, s.link.darker(120));
    }
    return p;
}
}  // namespace

QPalette WindowPalette(int mode) {
    if (mode == 1)
        return Build({QColor(0x3a, 0x3d, 0x42), QColor(0xc8, 0xc8, 0xc0), QColor(0x2a, 0x2c, 0x30),
                      QColor(0x33, 0x36, 0x3a), QColor(0x45, 0x48, 0x4e), QColor(0x5a, 0x6a, 0x80),
                      QColor(0xe0, 0xe0, 0xd8), QColor(0x80, 0x80, 0x78), QColor(0x90, 0xb0, 0xd0)});
    if (mode == 2)
        return Build({QColor(0x10, 0x08, 0x08), QColor(0xb0, 0x38, 0x30), QColor(0x08, 0x04, 0x04),
                      QColor(0x14, 0x0a, 0x0a), QColor(0x1c, 0x0e, 0x0e), QColor(0x50, 0x14, 0x10),
                      QColor(0xd0, 0x50, 0x40), QColor(0x60, 0x20, 0x1c), QColor(0xa0, 0x40, 0x30)});
    return QApplication::style()->standardPalette();
}

void ApplyWindowPalette(int mode) {
    QApplication::setPalette(WindowPalette(mode));
    // The windows already open take it now, not at the next turn of the
    // event loop: the change is one command and the screen follows it.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::ApplicationPaletteChange);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::PaletteChange);
}

}  // namespace ombra
