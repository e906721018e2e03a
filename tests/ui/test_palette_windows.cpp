// The palette reaches every window, not the chart alone, and the dialogs
// fit their contents and close like any other window.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenuBar>
#include <QStatusBar>

#include "tests/ui/UiFixture.h"
#include "ui/FrmMain.h"
#include "ui/QtShell.h"

using namespace ombra;

namespace {
using test::Window;

int Lightness(const QWidget* w, QPalette::ColorRole role) { return w->palette().color(role).lightness(); }
}  // namespace

TEST(Palette, TwilightAndNightDarkenTheWindowsAroundTheChart) {
    struct Case {
        const char* action;
        bool dark;
    } cases[] = {
        {"MPaletteNight", true}, {"MPaletteDay", false}, {"MPaletteTwilight", true}, {"MPaletteDay", false}};
    Window w;
    ASSERT_TRUE(w.Start());
    FrmMain* m = w.shell.Main();
    ASSERT_NE(m, nullptr);
    for (auto& c : cases) {
        m->Action(c.action)->trigger();
        QWidget fresh;  // a dialog made after the change
        for (const QWidget* x : {static_cast<const QWidget*>(m), static_cast<const QWidget*>(m->menuBar()),
                                 static_cast<const QWidget*>(m->statusBar()), static_cast<const QWidget*>(&fresh)}) {
            int window = Lightness(x, QPalette::Window), text = Lightness(x, QPalette::WindowText);
            if (c.dark) {
                EXPECT_LT(window, 70) << c.action << " " << x->metaObject()->className();
                EXPECT_GT(text, window) << c.action;  // still readable
            } else {
                EXPECT_GT(window, 150) << c.action << " " << x->metaObject()->className();
            }
        }
    }
}

TEST(Palette, ThePaletteKeptFromTheLastRunIsAppliedAtStart) {
    for (const char* mode : {"2", "0"}) {
        Window w;
        w.store.Write("Vestrane", "Tarnel", "PaletteMode", mode);
        ASSERT_TRUE(w.Start());
        bool dark = std::string(mode) != "0";
        EXPECT_EQ(Lightness(w.shell.Main(), QPalette::Window) < 70, dark) << mode;
        EXPECT_EQ(QApplication::palette().color(QPalette::Base).lightness() < 70, dark) << mode;
    }
}
