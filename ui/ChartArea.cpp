#include "ui/ChartArea.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include "platform/qt/QtServices.h"

namespace ombra {

ChartArea::ChartArea(ChartModule& charts, QWidget* parent) : QWidget(parent), charts_(charts) {
    setObjectName("PicNavCanvas");
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(200, 150);
    redrawTimer_.setSingleShot(true);
    redrawTimer_.setInterval(0);
    connect(&redrawTimer_, &QTimer::timeout, this, &ChartArea::Redraw);
}

void ChartArea::RequestRedraw() {
    if (!redrawTimer_.isActive()) redrawTimer_.start();
}

void ChartArea::Redraw() {
    if (store_.size() != size()) {
        store_ = QImage(size(), QImage::Format_ARGB32);
        store_.fill(Qt::lightGray);
    }
    if (!charts_.Charts.ChartIsOpen()) {
        update();
        return;
    }
    QPainter p(&store_);
    PainterCanvas canvas(p, store_.width(), store_.height());
    charts_.View.RedrawNavCanvas(canvas);
    DrawScaleBar(p);
}

// A bar of a round number of miles (or cables, below a mile) at the bottom
// left, black and white so it reads on any chart colour.
void ChartArea::DrawScaleBar(QPainter& p) {
    double nm = 0;
    int len = 0;
    if (!charts_.View.ScaleBar(std::min(180, width() / 4), nm, len) || len < 8) return;
    QString text = nm >= 1 ? QString::number(nm, 'g', 6) + " NM" : QString::number(nm * 10, 'g', 6) + " cbl";
    const int x = 12, y = height() - 14, h = 6;
    // The overlays may leave a raster operation, clip or opacity behind.
    p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    p.setClipping(false);
    p.setOpacity(1.0);
    p.resetTransform();
    p.setBrush(Qt::NoBrush);
    p.setRenderHint(QPainter::Antialiasing, false);
    p.fillRect(QRect(x - 4, y - 22, len + 8, h + 26), QColor(255, 255, 255, 190));
    p.fillRect(QRect(x, y, len, h), Qt::white);
    p.fillRect(QRect(x, y, len / 2, h), Qt::black);
    p.setPen(Qt::black);
    p.drawRect(QRect(x, y, len, h));
    p.drawText(QRect(x, y - 20, len + 60, 18), Qt::AlignLeft | Qt::AlignVCenter, text);
}

void ChartArea::paintEvent(QPaintEvent*) {
    QPainter p(this);
    if (!charts_.Charts.ChartIsOpen() || store_.isNull()) {
        p.fillRect(rect(), QColor(216, 216, 216));
        p.setPen(Qt::black);
        p.drawText(rect(), Qt::AlignCenter, "No Chart Selected\nPlease select a Chart using the Chart menu");
        return;
    }
    p.drawImage(0, 0, store_);
    // The zoom area, over the store and not in it: it follows the cursor
    // without a redraw of the chart.
    PixelRect a;
    if (hovering_ && ZoomRectWanted && ZoomRectWanted() && charts_.View.ZoomArea(hover_, a)) {
        QRect r(a.left, a.top, a.right - a.left, a.bottom - a.top);
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(Qt::white, 3));
        p.drawRect(r);
        p.setPen(QPen(Qt::black, 1, Qt::DashLine));
        p.drawRect(r);
    }
}

void ChartArea::leaveEvent(QEvent*) {
    hovering_ = false;
    update();
}

void ChartArea::resizeEvent(QResizeEvent*) {
    charts_.View.SetViewSize(width(), height());
    Redraw();
}

namespace {
ChartPoint PointOf(const QPointF& p) { return {int32_t(p.x()), int32_t(p.y())}; }
}  // namespace

void ChartArea::mousePressEvent(QMouseEvent* e) {
    ChartPoint at = PointOf(e->position());
    LatLong pos;
    bool on = charts_.View.ScreenToPosition(at, pos);
    int button = e->button() == Qt::RightButton ? 2 : 1;
    if (OnClick && OnClick(at, on, pos, button, false)) return;
    if (e->button() == Qt::LeftButton && (!DragAllowed || DragAllowed())) {
        pressed_ = true;
        charts_.View.BeginDrag(at);
        setCursor(Qt::ClosedHandCursor);
    }
}

void ChartArea::mouseMoveEvent(QMouseEvent* e) {
    ChartPoint at = PointOf(e->position());
    if (pressed_) charts_.View.DragTo(at);
    PixelRect area;
    bool outline = ZoomRectWanted && ZoomRectWanted() && charts_.View.ZoomArea(at, area);
    if (outline || hovering_) update();
    hovering_ = true;
    hover_ = at;
    if (OnMouseMove) {
        LatLong pos;
        bool on = charts_.View.ScreenToPosition(at, pos);
        OnMouseMove(at, on, pos);
    }
}

void ChartArea::mouseReleaseEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton && OnRelease) OnRelease(PointOf(e->position()));
    if (!pressed_) return;
    pressed_ = false;
    charts_.View.EndDrag();
    unsetCursor();
}

void ChartArea::mouseDoubleClickEvent(QMouseEvent* e) {
    ChartPoint at = PointOf(e->position());
    LatLong pos;
    bool on = charts_.View.ScreenToPosition(at, pos);
    if (OnClick && OnClick(at, on, pos, e->button() == Qt::RightButton ? 2 : 1, true)) return;
    if (e->button() == Qt::LeftButton && on) charts_.View.ZoomInAt(at);
}

void ChartArea::wheelEvent(QWheelEvent* e) {
    int steps = e->angleDelta().y() / 120;
    if (steps == 0) steps = e->angleDelta().y() > 0 ? 1 : e->angleDelta().y() < 0 ? -1 : 0;
    int sideways = e->angleDelta().x() / 120;
    if (e->modifiers() & Qt::ShiftModifier) {
        // Shift: up and down; a sideways wheel (or Shift+Alt) across.
        if (e->modifiers() & Qt::AltModifier) charts_.View.ScrollBy(-steps * width() / 8, 0);
        else charts_.View.ScrollBy(-sideways * width() / 8, -steps * height() / 8);
    } else if (steps != 0) {
        charts_.View.WheelZoom(steps, PointOf(e->position()));
    } else if (sideways != 0) {
        charts_.View.ScrollBy(-sideways * width() / 8, 0);
    }
    e->accept();
}

void ChartArea::keyPressEvent(QKeyEvent* e) {
    switch (e->key()) {
    case Qt::Key_Left: charts_.View.ScrollBy(-width() / 10, 0); break;
    case Qt::Key_Right: charts_.View.ScrollBy(width() / 10, 0); break;
    case Qt::Key_Up: charts_.View.ScrollBy(0, -height() / 10); break;
    case Qt::Key_Down: charts_.View.ScrollBy(0, height() / 10); break;
    case Qt::Key_PageUp: charts_.View.ScrollBy(0, -height()); break;
    case Qt::Key_PageDown: charts_.View.ScrollBy(0, height()); break;
    case Qt::Key_Plus:
    case Qt::Key_Equal: charts_.View.PixelZoomIn(); break;
    case Qt::Key_Minus: charts_.View.PixelZoomOut(); break;
    default: QWidget::keyPressEvent(e); return;
    }
}

}  // namespace ombra
