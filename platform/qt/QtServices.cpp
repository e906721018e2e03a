#include "platform/qt/QtServices.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QInputDialog>
#include <QMessageBox>
#include <QPainter>
#include <QPainterPath>
#include <QSettings>
#include <QStandardPaths>
#include <QThread>
#include <chrono>
#include <ctime>

#include "platform/fake/ScriptedDialogs.h"

namespace ombra {

int QtDialogs::MsgBox(const std::string& text, int style, const std::string& title) {
    if (autoAnswer_) return ScriptedDialogs::DefaultReply(style);
    QMessageBox box(parent_);
    box.setWindowTitle(Q(title));
    box.setText(Q(text));
    switch (style & 0x70) {
        case mb::Critical: box.setIcon(QMessageBox::Critical); break;
        case mb::Question: box.setIcon(QMessageBox::Question); break;
        case mb::Exclamation: box.setIcon(QMessageBox::Warning); break;
        case mb::Information: box.setIcon(QMessageBox::Information); break;
        default: break;
    }
    struct B { QMessageBox::StandardButton b; int reply; };
    std::vector<B> buttons;
    switch (style & 15) {
        case mb::OKCancel: buttons = {{QMessageBox::Ok, mb::OK}, {QMessageBox::Cancel, mb::Cancel}}; break;
        case mb::AbortRetryIgnore:
            buttons = {{QMessageBox::Abort, mb::Abort}, {QMessageBox::Retry, mb::Retry}, {QMessageBox::Ignore, mb::Ignore}};
            break;
        case mb::YesNoCancel:
            buttons = {{QMessageBox::Yes, mb::Yes}, {QMessageBox::No, mb::No}, {QMessageBox::Cancel, mb::Cancel}};
            break;
        case mb::YesNo: buttons = {{QMessageBox::Yes, mb::Yes}, {QMessageBox::No, mb::No}}; break;
        case mb::RetryCancel: buttons = {{QMessageBox::Retry, mb::Retry}, {QMessageBox::Cancel, mb::Cancel}}; break;
        default: buttons = {{QMessageBox::Ok, mb::OK}}; break;
    }
    QMessageBox::StandardButtons set;
    for (auto& b : buttons) set |= b.b;
    box.setStandardButtons(set);
    size_t def = size_t((style >> 8) & 3);
    if (def < buttons.size()) box.setDefaultButton(buttons[def].b);
    int r = box.exec();
    for (auto& b : buttons)
        if (r == b.b) return b.reply;
    // Closing the box answers as its cancel button would, or its only one.
    for (auto& b : buttons)
        if (b.reply == mb::Cancel || b.reply == mb::No) return b.reply;
    return buttons.front().reply;
}

bool QtDialogs::InputBox(const std::string& prompt, const std::string& title, std::string& value) {
    if (autoAnswer_) return false;
    bool ok = false;
    QString v = QInputDialog::getText(parent_, Q(title), Q(prompt), QLineEdit::Normal, Q(value), &ok);
    if (ok) value = S(v);
    return ok;
}

int QtDialogs::PickFromList(const std::string& title, const std::vector<std::string>& items, int current) {
    if (autoAnswer_ || items.empty()) return -1;
    QStringList list;
    for (auto& i : items) list << Q(i);
    bool ok = false;
    QString v = QInputDialog::getItem(parent_, Q(title), Q(title), list, current < 0 ? 0 : current, false, &ok);
    if (!ok) return -1;
    return int(list.indexOf(v));
}

std::string QtDialogs::OpenFileName(const std::string& title, const std::string& folder, const std::string& filter) {
    if (autoAnswer_) return "";
    return S(QFileDialog::getOpenFileName(parent_, Q(title), Q(folder), Q(filter)));
}

std::string QtDialogs::SaveFileName(const std::string& title, const std::string& folder, const std::string& filter) {
    if (autoAnswer_) return "";
    return S(QFileDialog::getSaveFileName(parent_, Q(title), Q(folder), Q(filter)));
}

std::string QtDialogs::FolderName(const std::string& title, const std::string& folder) {
    if (autoAnswer_) return "";
    return S(QFileDialog::getExistingDirectory(parent_, Q(title), Q(folder)));
}

std::string IniSettings::DefaultPath() {
    QByteArray home = qgetenv("OMBRA_HOME");
    if (!home.isEmpty()) return S(QDir(QString::fromLocal8Bit(home)).filePath("Vestrane.ini"));
    QString cfg = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return S(QDir(cfg).filePath("Vestrane/Vestrane.ini"));
}

IniSettings::IniSettings() : IniSettings(DefaultPath()) {}

IniSettings::IniSettings(const std::string& iniPath)
    : settings_(std::make_unique<QSettings>(Q(iniPath), QSettings::IniFormat)) {}

IniSettings::~IniSettings() = default;

std::string IniSettings::FileName() const { return S(settings_->fileName()); }

// The application level is the file itself; sections are INI groups.
std::optional<std::string> IniSettings::Read(const std::string&, const std::string& section, const std::string& key) {
    QString k = Q(section) + "/" + Q(key);
    if (!settings_->contains(k)) return std::nullopt;
    return S(settings_->value(k).toString());
}

bool IniSettings::Write(const std::string&, const std::string& section, const std::string& key, const std::string& value) {
    settings_->setValue(Q(section) + "/" + Q(key), Q(value));
    settings_->sync();
    return settings_->status() == QSettings::NoError;
}

DateTime SystemClock::Now() {
    using namespace std::chrono;
    auto now = system_clock::now();
    std::time_t t = system_clock::to_time_t(now);
    std::tm tm{};
    localtime_r(&t, &tm);
    int ms = int(duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000);
    return DateTime{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec, ms};
}

void SystemClock::Sleep(int milliseconds) { QThread::msleep(static_cast<unsigned long>(milliseconds)); }

void QtEvents::DoEvents() { QCoreApplication::processEvents(); }

namespace {
QColor C(Rgb c) { return QColor(int((c >> 16) & 255), int((c >> 8) & 255), int(c & 255)); }
Qt::PenStyle PS(PenStyle s) {
    switch (s) {
        case PenStyle::Dash: return Qt::DashLine;
        case PenStyle::Dot: return Qt::DotLine;
        case PenStyle::DashDot: return Qt::DashDotLine;
        case PenStyle::DashDotDot: return Qt::DashDotDotLine;
        case PenStyle::Null: return Qt::NoPen;
        default: return Qt::SolidLine;
    }
}
Qt::BrushStyle BS(BrushStyle s) {
    switch (s) {
        case BrushStyle::Solid: return Qt::SolidPattern;
        case BrushStyle::Horizontal: return Qt::HorPattern;
        case BrushStyle::Vertical: return Qt::VerPattern;
        case BrushStyle::FDiagonal: return Qt::FDiagPattern;
        case BrushStyle::BDiagonal: return Qt::BDiagPattern;
        case BrushStyle::Cross: return Qt::CrossPattern;
        case BrushStyle::DiagCross: return Qt::DiagCrossPattern;
        default: return Qt::NoBrush;
    }
}
QPolygon Poly(const std::vector<ChartPoint>& pts) {
    QPolygon p;
    p.reserve(qsizetype(pts.size()));
    for (auto& c : pts) p << QPoint(c.x, c.y);
    return p;
}
}  // namespace

PainterCanvas::PainterCanvas(QPainter& painter, int width, int height) : p_(painter), width_(width), height_(height) {}

void PainterCanvas::SetPen(const Pen& pen) {
    pen_ = pen;
    QPen q(C(pen.colour));
    q.setWidth(pen.width);
    q.setStyle(PS(pen.style));
    p_.setPen(q);
}

void PainterCanvas::SetBrush(const Brush& brush) { p_.setBrush(QBrush(C(brush.colour), BS(brush.style))); }

void PainterCanvas::SetFont(const Font& font) {
    QFont f(Q(font.family), font.pointSize);
    f.setBold(font.bold);
    p_.setFont(f);
}

void PainterCanvas::Line(ChartPoint a, ChartPoint b) { p_.drawLine(a.x, a.y, b.x, b.y); }
void PainterCanvas::Polyline(const std::vector<ChartPoint>& pts) { p_.drawPolyline(Poly(pts)); }
void PainterCanvas::Polygon(const std::vector<ChartPoint>& pts) { p_.drawPolygon(Poly(pts)); }

void PainterCanvas::PolyBezier(const std::vector<ChartPoint>& pts) {
    if (pts.size() < 4) return;
    QPainterPath path(QPointF(pts[0].x, pts[0].y));
    for (size_t i = 1; i + 2 < pts.size(); i += 3)
        path.cubicTo(pts[i].x, pts[i].y, pts[i + 1].x, pts[i + 1].y, pts[i + 2].x, pts[i + 2].y);
    QBrush keep = p_.brush();
    p_.setBrush(Qt::NoBrush);
    p_.drawPath(path);
    p_.setBrush(keep);
}

void PainterCanvas::Ellipse(const PixelRect& r) { p_.drawEllipse(QRect(r.left, r.top, r.Width(), r.Height())); }
void PainterCanvas::Rectangle(const PixelRect& r) { p_.drawRect(QRect(r.left, r.top, r.Width() - 1, r.Height() - 1)); }
void PainterCanvas::FillRect(const PixelRect& r, Rgb c) { p_.fillRect(QRect(r.left, r.top, r.Width(), r.Height()), C(c)); }

void PainterCanvas::Text(ChartPoint at, const std::string& utf8) {
    QPen keep = p_.pen();
    p_.setPen(C(textColour_));
    QFontMetrics fm = p_.fontMetrics();
    p_.drawText(at.x, at.y + fm.ascent(), Q(utf8));
    p_.setPen(keep);
}

int PainterCanvas::TextWidth(const std::string& utf8) { return p_.fontMetrics().horizontalAdvance(Q(utf8)); }
int PainterCanvas::TextHeight() { return p_.fontMetrics().height(); }

void PainterCanvas::Blit(ChartPoint at, const Image& image) {
    if (image.width <= 0 || image.height <= 0) return;
    QImage q(reinterpret_cast<const uchar*>(image.pixels.data()), image.width, image.height, image.width * 4,
             QImage::Format_ARGB32);
    p_.drawImage(at.x, at.y, q);
}

void PainterCanvas::SetClip(const PixelRect& r) { p_.setClipRect(QRect(r.left, r.top, r.Width(), r.Height())); }
void PainterCanvas::ClearClip() { p_.setClipping(false); }

}  // namespace ombra
