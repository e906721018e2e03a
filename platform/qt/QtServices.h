// The program's own platform services over Qt: dialogs, the INI settings
// store, the system clock, the event pump and a QPainter canvas.
#pragma once
#include <QString>
#include <memory>
#include <string>

#include "platform/api/Canvas.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"
#include "platform/api/SettingsBackend.h"

class QPainter;
class QSettings;
class QWidget;

namespace ombra {

inline QString Q(const std::string& s) { return QString::fromUtf8(s.data(), qsizetype(s.size())); }
inline std::string S(const QString& s) { return s.toUtf8().toStdString(); }

class QtDialogs : public Dialogs {
public:
    // With autoAnswer set, nothing is shown: every box answers its default
    // button and choosers are cancelled (the --screenshot run, unattended).
    explicit QtDialogs(bool autoAnswer = false) : autoAnswer_(autoAnswer) {}
    void SetParent(QWidget* parent) { parent_ = parent; }
    bool AutoAnswer() const { return autoAnswer_; }
    int MsgBox(const std::string& text, int style, const std::string& title) override;
    bool InputBox(const std::string& prompt, const std::string& title, std::string& value) override;
    int PickFromList(const std::string& title, const std::vector<std::string>& items, int current) override;
    std::string OpenFileName(const std::string& title, const std::string& folder, const std::string& filter) override;
    std::string SaveFileName(const std::string& title, const std::string& folder, const std::string& filter) override;
    std::string FolderName(const std::string& title, const std::string& folder) override;

private:
    bool autoAnswer_;
    QWidget* parent_ = nullptr;
};

// INI file: $OMBRA_HOME/Vestrane.ini when OMBRA_HOME is set, otherwise
// the user's configuration folder (~/.config/Vestrane/Vestrane.ini).
// Sections are the settings sections ("Tarnel", "Ebbline").
class IniSettings : public SettingsBackend {
public:
    IniSettings();
    explicit IniSettings(const std::string& iniPath);
    ~IniSettings() override;
    std::optional<std::string> Read(const std::string& app, const std::string& section, const std::string& key) override;
    bool Write(const std::string& app, const std::string& section, const std::string& key, const std::string& value) override;
    std::string FileName() const;
    static std::string DefaultPath();

private:
    std::unique_ptr<QSettings> settings_;
};

class SystemClock : public Clock {
public:
    DateTime Now() override;
    void Sleep(int milliseconds) override;
};

class QtEvents : public Events {
public:
    void DoEvents() override;
};

class PainterCanvas : public Canvas {
public:
    PainterCanvas(QPainter& painter, int width, int height);
    int Width() const override { return width_; }
    int Height() const override { return height_; }
    void SetPen(const Pen& pen) override;
    void SetBrush(const Brush& brush) override;
    void SetFont(const Font& font) override;
    void SetTextColour(Rgb colour) override { textColour_ = colour; }
    void Line(ChartPoint from, ChartPoint to) override;
    void Polyline(const std::vector<ChartPoint>& points) override;
    void Polygon(const std::vector<ChartPoint>& points) override;
    void PolyBezier(const std::vector<ChartPoint>& points) override;
    void Ellipse(const PixelRect& bounds) override;
    void Rectangle(const PixelRect& bounds) override;
    void FillRect(const PixelRect& bounds, Rgb colour) override;
    void Text(ChartPoint at, const std::string& utf8) override;
    int TextWidth(const std::string& utf8) override;
    int TextHeight() override;
    void Blit(ChartPoint at, const Image& image) override;
    void SetClip(const PixelRect& clip) override;
    void ClearClip() override;

private:
    QPainter& p_;
    int width_, height_;
    Rgb textColour_ = 0;
    Pen pen_;
};

}  // namespace ombra
