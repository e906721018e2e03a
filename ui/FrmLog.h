// FrmLog: the day's log. The header (ports, crew, engine hours, fuel and
// water, the autolog switch and interval, the day's track switch), the tide
// times of two ports, the entries and the weather forecasts. Entries are
// added, edited and deleted through FrmLogEntry; forecasts are typed in
// their cells. OK copies the header back and saves the day; Cancel leaves
// the header as it was. Entries added meanwhile (the autolog, a GPS event)
// appear as they come. Columns are widened or narrowed by their headings.
#pragma once
#include <QCheckBox>
#include <QDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <array>

namespace ombra {

class Plotter;

class FrmLog : public QDialog {
    Q_OBJECT
public:
    FrmLog(QWidget* owner, Plotter& plotter);
    // The controls from the day in memory (another day, a new day).
    void Load();
    // The entry list from the day in memory, keeping the selection.
    void RedrawEntries();
    void RedrawForecasts();
    const QString& Result() const { return result_; }

    QLineEdit *TxtCurrPort, *TxtDestPort, *TxtNumCrew, *TxtEngineHours, *TxtETD, *TxtFuel, *TxtWater;
    QGroupBox* FrameAutoLog;
    QCheckBox* ChkAutoLog;
    QLineEdit* TxtAutoInterval;
    QCheckBox* ChkSaveTrack;
    std::array<QLineEdit*, 10> TxtPortTide{};
    QTableWidget* PicLogEntry;
    QTableWidget* PicForecast;
    QPushButton *ComNewLogEntry, *ComEditLogEntry, *ComDeleteLogEntry, *ComNewForecast, *ComDeleteForecast;
    QPushButton *ComOK, *ComCancel;

private:
    void ComOK_Click();
    void ForecastEdited(int row, int column);
    int SelectedEntry() const;
    Plotter& p_;
    QString result_ = "Cancel";
    bool filling_ = false;
};

}  // namespace ombra
