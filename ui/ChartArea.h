// ChartArea: the chart view of the main window (PicNavCanvas), with its
// off-screen store (PicNavStore).
//
// It paints through the chart module's Display on a PainterCanvas over a
// QImage of its own size, and shows that image; every change of the view
// (a scroll, a zoom, another chart, a palette, a new vessel position) asks
// for one redraw, coalesced to the next turn of the event loop.
//
// Mouse and keys, with no tool chosen (CurrentTool 0):
//   left button held and moved     drags the chart
//   wheel (with or without Ctrl)   pixel zoom about the cursor
//   Shift + wheel                  scrolls up and down (Shift+Alt: sideways)
//   + and -                        pixel zoom about the centre
//   double click, zoomed out       the full chart one to one, centred there
//                                  (the area outlined about the cursor)
//   arrow keys, Page Up/Down       scroll by a tenth / a whole view
// Every move and click is also handed to the owner (OnMouseMove, OnClick)
// with the WGS84 position under the cursor, for the cursor read-out and
// the tools of the main window; a handler that returns true takes the
// click and the chart is not dragged.
#pragma once
#include <QImage>
#include <QPainter>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "charts/ChartModule.h"

namespace ombra {

class ChartArea : public QWidget {
    Q_OBJECT
public:
    ChartArea(ChartModule& charts, QWidget* parent = nullptr);

    // The redraw now (RedrawNavCanvas into the store, then a repaint).
    void Redraw();
    // A redraw at the next turn of the event loop; many requests make one.
    void RequestRedraw();
    const QImage& Store() const { return store_; }

    // Cursor moves: screen point, whether it is on a plan, the position.
    std::function<void(ChartPoint, bool, const LatLong&)> OnMouseMove;
    // Clicks (left button 1, right 2) and double clicks; true takes it.
    std::function<bool(ChartPoint, bool, const LatLong&, int button, bool doubleClick)> OnClick;
    // Whether the chart may be dragged now (false while a tool is active).
    std::function<bool()> DragAllowed;
    // The left button let go over the chart (ends a drag of the vessel).
    std::function<void(ChartPoint)> OnRelease;
    // Whether the zoom area is outlined about the cursor on a zoomed-out
    // view (the setting ZoomRect); a double click there zooms in to it.
    std::function<bool()> ZoomRectWanted;

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    void leaveEvent(QEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;

private:
    void DrawScaleBar(QPainter& p);
    ChartModule& charts_;
    QImage store_;
    QTimer redrawTimer_;
    bool pressed_ = false;
    bool hovering_ = false;
    ChartPoint hover_;
};

}  // namespace ombra
