// ConsolePanel: the console beside the chart. It paints the console model
// (instruments/Console.h) frame by frame, row by row, and nothing else: the
// texts are computed in the logic, where the NMEA output and the alarms
// read them back, so the panel and those readers can never disagree.
//
// Frames: "Navigation Status" (the mode text in its colour, the age line),
// "Vessel", "Vessel - Cursor", "Active Waypoint" / "No Active Waypoint",
// "Tide", and the target frames (AIS, ARPA, Tracking, DDE), which their
// modules switch on. Rows hidden in the console options are not shown.
// Value labels are named after their rows ("LabVessel_0", "LabWP_4", ...).
#pragma once
#include <QGroupBox>
#include <QLabel>
#include <QWidget>
#include <vector>

namespace ombra {

class Console;

class ConsolePanel : public QWidget {
    Q_OBJECT
public:
    ConsolePanel(QWidget* parent, const Console& console);

    // Repaints every row from the model.
    void Refresh();
    // The target frames: AIS, ARPA, Tracking, DDE.
    void ShowTargetFrames(bool ais, bool arpa, bool tracking, bool dde);

    QLabel* GenLabel49 = nullptr;  // the mode text
    QLabel* GenLabel50 = nullptr;  // the age line

private:
    struct Row {
        QLabel* caption;
        QLabel* value;
        const std::string* text;
        const bool* show;
    };
    QGroupBox* Frame(const char* name, const char* title);
    void AddRows(QGroupBox* frame, const char* array, const std::vector<const char*>& captions, const std::string* texts,
                 const bool* shows);

    const Console& console_;
    std::vector<Row> rows_;
    QGroupBox *frameWP_ = nullptr, *frameAIS_ = nullptr, *frameARPA_ = nullptr, *frameTarget_ = nullptr,
              *frameDDE_ = nullptr;
};

}  // namespace ombra
