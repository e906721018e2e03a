// The deviation card window, for real under Qt's offscreen platform: the
// arrows, the key filter, OK and Cancel, and the curve on screen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QKeyEvent>

#include "core/ErrorReport.h"
#include "platform/fake/ScriptedDialogs.h"
#include "tests/support/TestSupport.h"
#include "ui/FrmDeviation.h"
#include "tests/support/QtApp.h"

using namespace ombra;

namespace {

// The application lives to the end of the process and is never destroyed:
// tearing it down among the exit handlers would pull the keyboard device
// that the typed keys created out from under Qt's own statics.
using ombra::test::App;

// Types text key by key, through the box's key filter.
void Type(QWidget* w, const QString& text) {
    for (QChar c : text)
        for (auto kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent e(kind, 0, Qt::NoModifier, QString(c));
            QApplication::sendEvent(w, &e);
        }
}

struct Card {
    test::TempDir dir;
    ScriptedDialogs dialogs;
    std::string product = "Tarnel";
    ErrorReporter errors{dialogs, product};
    Deviation deviation{dir.path(), errors};
    Card() { App(); }
};

}  // namespace

TEST(FrmDeviation, FirstEntryAndTheKeyFilter) {
    Card c;
    c.deviation.DeviationTable[0] = -1.5f;
    FrmDeviation f(nullptr, c.deviation);
    EXPECT_EQ(f.TxtHeading->text(), "0");
    EXPECT_EQ(f.TxtCorrection->text(), "-1.5");
    EXPECT_TRUE(f.TxtHeading->isReadOnly());
    f.TxtCorrection->clear();
    Type(f.TxtCorrection, "a+1x.5 W");
    EXPECT_EQ(f.TxtCorrection->text(), "+1.5");
    QKeyEvent backspace(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    QApplication::sendEvent(f.TxtCorrection, &backspace);
    Type(f.TxtCorrection, "25E");
    EXPECT_EQ(f.TxtCorrection->text(), "+1.25");
    EXPECT_FLOAT_EQ(f.WorkingTable()[0], 1.25f);  // every change goes into the working card
    for (QChar ch : QString("0123456789+-."))
        EXPECT_TRUE(FrmDeviation::CorrectionKeyPasses(ch)) << ch.toLatin1();
    for (QChar ch : QString("eE,; xW٣"))  // letters, separators, an Arabic-Indic three
        EXPECT_FALSE(FrmDeviation::CorrectionKeyPasses(ch));
}

TEST(FrmDeviation, ArrowsStepTenDegreesStoringTheCorrectionFirst) {
    Card c;
    FrmDeviation f(nullptr, c.deviation);
    f.TxtCorrection->setText("2");
    f.SpinUp->click();
    EXPECT_EQ(f.TxtHeading->text(), "10");
    EXPECT_EQ(f.CurrentEntry(), 1);
    EXPECT_FLOAT_EQ(f.WorkingTable()[0], 2.0f);
    f.TxtCorrection->setText("-3.5");
    f.SpinDown->click();
    EXPECT_EQ(f.TxtCorrection->text(), "2");
    EXPECT_FLOAT_EQ(f.WorkingTable()[1], -3.5f);
    f.SpinDown->click();  // 0 is the bottom
    EXPECT_EQ(f.TxtHeading->text(), "0");
    for (int i = 0; i < 40; ++i) f.SpinButton1_SpinUp();
    EXPECT_EQ(f.TxtHeading->text(), "360");  // and 360 the top, its own entry
    EXPECT_EQ(f.CurrentEntry(), 36);
    f.TxtCorrection->setText("4");
    f.SpinButton1_SpinUp();
    EXPECT_FLOAT_EQ(f.WorkingTable()[36], 4.0f);
    EXPECT_FLOAT_EQ(f.WorkingTable()[0], 2.0f);
    // Nothing reached the card in use yet.
    EXPECT_EQ(c.deviation.DeviationTable, DeviationCard{});
}

TEST(FrmDeviation, CancelDropsOkSavesAndTakesIntoUse) {
    Card c;
    {
        FrmDeviation f(nullptr, c.deviation);
        f.TxtCorrection->setText("3");
        f.ComCancel->click();
        EXPECT_EQ(f.result(), QDialog::Rejected);
    }
    EXPECT_EQ(c.deviation.DeviationTable, DeviationCard{});
    EXPECT_FALSE(test::ReadFile(c.dir / "deviate.dat").size());

    FrmDeviation f(nullptr, c.deviation);
    f.TxtCorrection->setText("3");
    f.SpinUp->click();
    f.TxtCorrection->setText("-0.5");  // stored by OK itself, without a move
    f.ComOK->click();
    EXPECT_EQ(f.result(), QDialog::Accepted);
    EXPECT_FLOAT_EQ(c.deviation.DeviationTable[0], 3.0f);
    EXPECT_FLOAT_EQ(c.deviation.DeviationTable[1], -0.5f);
    const auto lines = test::SplitLines(test::ReadFile(c.dir / "deviate.dat"));
    ASSERT_EQ(lines.size(), 37u);
    EXPECT_EQ(lines[1], "-0.5");
    EXPECT_TRUE(c.dialogs.asked.empty());
}

TEST(FrmDeviation, TheCurveIsOnScreen) {
    Card c;
    for (int i = 0; i < kDeviationEntries; ++i) c.deviation.DeviationTable[size_t(i)] = float(3.0 * std::sin(i * 0.35));
    FrmDeviation f(nullptr, c.deviation);
    f.resize(480, 360);
    f.show();
    QApplication::processEvents();
    const QImage shot = f.PicCurve->grab().toImage();
    int curve = 0, ink = 0;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x) {
            const QColor px = shot.pixelColor(x, y);
            if (px.red() > 150 && px.green() < 90 && px.blue() < 90) ++curve;
            if (px.red() < 80 && px.green() < 80 && px.blue() < 80) ++ink;
        }
    EXPECT_GT(curve, 300);  // the red curve across the width
    EXPECT_GT(ink, 200);    // axes and labels
    // A change of the correction redraws with the new value.
    f.TxtCorrection->setText("9");
    QApplication::processEvents();
    EXPECT_NE(f.PicCurve->grab().toImage(), shot);
}
