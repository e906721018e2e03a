#include "ui/ConsolePanel.h"

#include <QGridLayout>
#include <QVBoxLayout>

#include "instruments/Console.h"
#include "platform/qt/QtServices.h"

namespace ombra {

namespace {
// Rows whose texts the panel shows, in the model's arrays.
const bool kAlways[20] = {true, true, true, true, true, true, true, true, true, true,
                          true, true, true, true, true, true, true, true, true, true};
}  // namespace

ConsolePanel::ConsolePanel(QWidget* parent, const Console& console) : QWidget(parent), console_(console) {
    setObjectName("ConsolePanel");
    auto* top = new QVBoxLayout(this);
    top->setContentsMargins(4, 4, 4, 4);
    top->setSpacing(4);

    auto* status = Frame("FrameStatus", "Navigation Status");
    auto* sl = new QVBoxLayout(status);
    GenLabel49 = new QLabel(status);
    GenLabel49->setObjectName("GenLabel_49");
    QFont bold = GenLabel49->font();
    bold.setBold(true);
    GenLabel49->setFont(bold);
    GenLabel50 = new QLabel(status);
    GenLabel50->setObjectName("GenLabel_50");
    sl->addWidget(GenLabel49);
    sl->addWidget(GenLabel50);
    top->addWidget(status);

    const auto& frames = Console::Frames();
    auto* vessel = Frame("FrameVessel", "Vessel");
    AddRows(vessel, "LabVessel", frames[1].captions, console.LabVessel.data(), console.ShowVessel.data());
    top->addWidget(vessel);
    auto* cursor = Frame("FrameCursor", "Vessel - Cursor");
    AddRows(cursor, "LabCursor", frames[2].captions, console.LabCursor.data(), console.ShowCursor.data());
    top->addWidget(cursor);
    frameWP_ = Frame("FrameWaypoint", "No Active Waypoint");
    AddRows(frameWP_, "LabWP", frames[3].captions, console.LabWP.data(), console.ShowWP.data());
    top->addWidget(frameWP_);
    auto* tide = Frame("FrameTide", "Tide");
    AddRows(tide, "LabTide", frames[4].captions, console.LabTide.data(), console.ShowTide.data());
    top->addWidget(tide);
    frameAIS_ = Frame("FrameAIS", "AIS - Active Target");
    AddRows(frameAIS_, "LabAIS", frames[5].captions, console.LabAIS.data(), console.ShowAIS.data());
    top->addWidget(frameAIS_);
    frameARPA_ = Frame("FrameARPA", "ARPA - Active Target");
    AddRows(frameARPA_, "LabARPA", frames[6].captions, console.LabARPA.data(), console.ShowARPA.data());
    top->addWidget(frameARPA_);
    frameTarget_ = Frame("FrameTarget", "Tracking - Active Target");
    AddRows(frameTarget_, "LabTarget", frames[7].captions, console.LabTarget.data(), kAlways);
    top->addWidget(frameTarget_);
    frameDDE_ = Frame("FrameDDE", "ActiveTarget (DDE)");
    AddRows(frameDDE_, "LabDDE", frames[8].captions, console.LabDDE.data(), console.ShowDDE.data());
    top->addWidget(frameDDE_);
    top->addStretch(1);
    ShowTargetFrames(false, false, false, false);
    setMinimumWidth(210);
    Refresh();
}

QGroupBox* ConsolePanel::Frame(const char* name, const char* title) {
    auto* box = new QGroupBox(QString::fromUtf8(title), this);
    box->setObjectName(name);
    return box;
}

void ConsolePanel::AddRows(QGroupBox* frame, const char* array, const std::vector<const char*>& captions,
                           const std::string* texts, const bool* shows) {
    auto* grid = new QGridLayout(frame);
    grid->setContentsMargins(6, 2, 6, 2);
    grid->setVerticalSpacing(1);
    for (size_t i = 0; i < captions.size(); ++i) {
        auto* caption = new QLabel(QString::fromUtf8(captions[i]), frame);
        auto* value = new QLabel(frame);
        value->setObjectName(QString("%1_%2").arg(array).arg(i));
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid->addWidget(caption, int(i), 0);
        grid->addWidget(value, int(i), 1);
        rows_.push_back({caption, value, &texts[i], &shows[i]});
    }
    grid->setColumnStretch(1, 1);
}

void ConsolePanel::ShowTargetFrames(bool ais, bool arpa, bool tracking, bool dde) {
    frameAIS_->setVisible(ais);
    frameARPA_->setVisible(arpa);
    frameTarget_->setVisible(tracking);
    frameDDE_->setVisible(dde);
}

void ConsolePanel::Refresh() {
    setVisible(console_.Visible);
    frameAIS_->setVisible(console_.AISFrameOn);
    GenLabel49->setText(Q(console_.StatusText));
    Rgb c = console_.StatusColour;
    GenLabel49->setStyleSheet(QString("color: #%1").arg(c, 6, 16, QLatin1Char('0')));
    GenLabel50->setText(Q(console_.AgeLine));
    frameWP_->setTitle(Q(console_.WPFrameCaption));
    for (const Row& r : rows_) {
        r.value->setText(Q(*r.text));
        r.caption->setVisible(*r.show);
        r.value->setVisible(*r.show);
    }
}

}  // namespace ombra
