// The four alarm windows: FrmAlarmWP ("Waypoint Arrival", Yes and No),
// FrmAlarmXTE ("XTE Alarm", OK), FrmAlarmAnchor ("Anchor Alarm", OK, a
// fixed text) and FrmAlarmBoundary (its caption names the event, OK).
//
// Each is modeless and stays on top of the chart, so the plotter runs on
// while a question stands open. The window only shows: the alarms module
// keeps its caption, message and answer. A button hands its caption to
// Pressed; the module stores it as the answer and takes the window down.
// The window has no close box, so it goes only by a button or by the
// module.
#pragma once
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <functional>
#include <string>
#include <vector>

#include "alarms/AlarmForm.h"

namespace ombra {

class FrmAlarm : public QDialog {
    Q_OBJECT
public:
    FrmAlarm(QWidget* owner, AlarmForm form);
    AlarmForm Form() const { return form_; }
    // Shows (or shows again) the window with its caption and message.
    void ShowAlarm(const QString& caption, const QString& text);

    // The window's control name: "FrmAlarmWP", "FrmAlarmXTE", ...
    static const char* ControlName(AlarmForm form);

    QLabel* LabMsg = nullptr;
    std::vector<QPushButton*> Buttons;
    std::function<void(const std::string& caption)> Pressed;

protected:
    // Escape does not dismiss an alarm: only its buttons answer it.
    void reject() override {}

private:
    AlarmForm form_;
};

}  // namespace ombra
