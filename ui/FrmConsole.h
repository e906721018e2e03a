// FrmConsole: the console options, one page a frame (vessel, cursor,
// waypoint, tide, AIS, ARPA, DDE), one box a row. OK copies the boxes into
// the console model; the caller saves them (Console::SaveConsoleSettings)
// and refreshes the panel.
#pragma once
#include <QCheckBox>
#include <QDialog>
#include <QPushButton>
#include <vector>

namespace ombra {

class Console;

class FrmConsole : public QDialog {
    Q_OBJECT
public:
    FrmConsole(QWidget* owner, const Console& console);
    // Copies the boxes into `console`.
    void Apply(Console& console) const;
    QString Result() const { return result_; }

    QCheckBox* ChkConsoleVisible;
    QPushButton *ComOK, *ComCancel;

private:
    struct Box {
        QCheckBox* check;
        int frame;  // 0 vessel, 1 cursor, 2 waypoint, 3 tide, 4 AIS, 5 ARPA, 6 DDE
        int row;
    };
    std::vector<Box> boxes_;
    QString result_ = "Cancel";
};

}  // namespace ombra
