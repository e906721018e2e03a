// The palette reaches every window, not the chart alone, and the dialogs
// fit their contents and close like any other window.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenuBar>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "core/Options.h"

#include "tests/ui/UiFixture.h"
#include "ui/FrmConsole.h"
#include "ui/FrmMain.h"
#include "ui/FrmOptions.h"
#include "ui/FrmSatInfo.h"
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

namespace {
// Every tab of every tab widget of `dlg` shows without scroll arrows, and
// the dialog is no smaller than its contents need.
void ExpectFits(QWidget* dlg, const char* what, int points) {
    dlg->show();
    QCoreApplication::processEvents();
    // OMBRA_GRAB_DIR, when set, keeps a picture of each dialog to look at.
    if (const char* grabs = std::getenv("OMBRA_GRAB_DIR"))
        dlg->grab().save(QString("%1/%2-%3pt.png").arg(grabs, QString(what).replace(' ', '_')).arg(points));
    QSize need = dlg->minimumSizeHint();
    EXPECT_GE(dlg->width(), need.width()) << what << " at " << points << " pt";
    EXPECT_GE(dlg->height(), need.height()) << what << " at " << points << " pt";
    for (QTabWidget* tabs : dlg->findChildren<QTabWidget*>()) {
        int all = 0;
        for (int i = 0; i < tabs->count(); ++i) all += tabs->tabBar()->tabRect(i).width();
        EXPECT_LE(all, tabs->tabBar()->width()) << what << " at " << points << " pt: tabs hidden behind arrows";
        EXPECT_GE(tabs->width(), all) << what;
    }
    dlg->hide();
}
}  // namespace

TEST(DialogLayout, OptionsAndConsoleOptionsShowEveryTabAtAnyFontSize) {
    Window w;
    ASSERT_TRUE(w.Start());
    QFont original = QApplication::font();
    for (int points : {9, 16}) {
        QFont f = original;
        f.setPointSize(points);
        QApplication::setFont(f);
        {
            FrmConsole dlg(nullptr, w.plotter.instruments().console);
            ExpectFits(&dlg, "Console Options", points);
        }
        {
            FrmOptions dlg(nullptr, LoadOptions(w.plotter.registry(), w.plotter.units()));
            ExpectFits(&dlg, "Options", points);
        }
    }
    QApplication::setFont(original);
}

TEST(DialogLayout, StoreListsShareTheirButtonPlacesCloseAndAnswerEsc) {
    Window w;
    ASSERT_TRUE(w.Start());
    NavObjects& nav = w.plotter.nav();
    for (NavStore* s : {static_cast<NavStore*>(&nav.waypoints), static_cast<NavStore*>(&nav.routes),
                        static_cast<NavStore*>(&nav.boundaries)}) {
        s->CurrentName = "Test";
        ASSERT_TRUE(s->SaveDB());
    }
    FrmMain* m = w.shell.Main();
    struct Case {
        const char* action;
        const char* window;
    } cases[] = {{"MWayPtsView", "FrmWayPointDB"}, {"MRoutesView", "FrmRoutesDB"}, {"MBoundariesView", "FrmBoundaryDB"}};
    for (auto& c : cases) {
        for (bool byEsc : {false, true}) {
            m->Action(c.action)->trigger();
            QDialog* dlg = m->findChild<QDialog*>(c.window);
            ASSERT_NE(dlg, nullptr) << c.window;
            ASSERT_TRUE(dlg->isVisible()) << c.window;
            // The row of commands, left to right.
            std::vector<QPushButton*> row;
            for (QPushButton* b : dlg->findChildren<QPushButton*>())
                if (b->isVisibleTo(dlg)) row.push_back(b);
            std::sort(row.begin(), row.end(), [](QPushButton* a, QPushButton* b) { return a->x() < b->x(); });
            ASSERT_GE(row.size(), 3u) << c.window;
            EXPECT_EQ(row.front()->text(), "&Properties") << c.window;
            EXPECT_EQ(row[row.size() - 2]->text(), "&Delete") << c.window;
            EXPECT_EQ(row.back()->text(), "&Close") << c.window;
            for (QPushButton* b : row) EXPECT_FALSE(b->text().isEmpty());
            if (byEsc) {
                QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
                QApplication::sendEvent(dlg->focusWidget() ? dlg->focusWidget() : dlg, &esc);
            } else {
                row.back()->click();
            }
            QCoreApplication::processEvents();
            QPointer<QDialog> still = m->findChild<QDialog*>(c.window);
            EXPECT_TRUE(!still || !still->isVisible()) << c.window << (byEsc ? " ignores Esc" : " stays open on Close");
        }
    }
}

TEST(DialogLayout, TheSatelliteWindowClosesByItsButtonAndByEsc) {
    Window w;
    ASSERT_TRUE(w.Start());
    for (bool byEsc : {false, true}) {
        FrmSatInfo sats(nullptr, w.plotter.instruments().decoder.Sats, w.plotter.instruments().decoder.GGA);
        sats.show();
        auto* close = sats.findChild<QPushButton*>("ComClose");
        ASSERT_NE(close, nullptr);
        EXPECT_TRUE(close->isVisibleTo(&sats));
        EXPECT_LE(close->geometry().bottom(), sats.height());
        if (byEsc) {
            QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QApplication::sendEvent(&sats, &esc);
        } else {
            close->click();
        }
        EXPECT_FALSE(sats.isVisible()) << (byEsc ? "Esc" : "Close");
    }
}
