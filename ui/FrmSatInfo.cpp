#include "ui/FrmSatInfo.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <cmath>

#include "core/Angles.h"
#include "core/Format.h"
#include "instruments/NmeaRecords.h"
#include "platform/qt/QtServices.h"

namespace ombra {

FrmSatInfo::FrmSatInfo(QWidget* owner, const SatInfo& sats, const GGAExtra& gga)
    : QWidget(owner, Qt::Tool), sats_(sats), gga_(gga) {
    setObjectName("FrmSatInfo");
    setWindowTitle("Satellite Information");
    ComClose = new QPushButton("&Close", this);
    ComClose->setObjectName("ComClose");
    connect(ComClose, &QPushButton::clicked, this, &QWidget::close);
    auto* layout = new QVBoxLayout(this);
    layout->addStretch(1);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ComClose);
    layout->addLayout(row);
    resize(380, 560);
}

void FrmSatInfo::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(e);
}

void FrmSatInfo::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(rect(), palette().color(QPalette::Base));
    const QColor ink = palette().color(QPalette::Text);
    const int w = width();
    const double radius = std::max(40.0, std::min(w, 320) / 2.0 - 30.0);
    const QPointF centre(w / 2.0, radius + 30.0);

    // Horizon, 30 and 60 degrees of elevation, and the cardinal lines.
    p.setPen(QPen(Qt::gray, 1));
    for (double e : {0.0, 30.0, 60.0}) p.drawEllipse(centre, radius * (90.0 - e) / 90.0, radius * (90.0 - e) / 90.0);
    p.drawLine(QPointF(centre.x(), centre.y() - radius), QPointF(centre.x(), centre.y() + radius));
    p.drawLine(QPointF(centre.x() - radius, centre.y()), QPointF(centre.x() + radius, centre.y()));
    p.setPen(ink);
    QFontMetrics fm(p.font());
    auto label = [&](const QString& t, QPointF at) { p.drawText(at - QPointF(fm.horizontalAdvance(t) / 2.0, 0), t); };
    label("000 T", QPointF(centre.x(), centre.y() - radius - 6));
    label("180 T", QPointF(centre.x(), centre.y() + radius + fm.ascent() + 4));
    p.drawText(QPointF(centre.x() + radius + 4, centre.y() + fm.ascent() / 2.0), "090 T");
    p.drawText(QPointF(centre.x() - radius - 4 - fm.horizontalAdvance("270 T"), centre.y() + fm.ascent() / 2.0), "270 T");

    // Satellites.
    int shown = 0;
    for (const SatRow& s : sats_.Sat) {
        if (s.PRN <= 0) continue;
        ++shown;
        double r = radius * (90.0 - std::clamp<double>(s.Elevation, 0, 90)) / 90.0;
        double a = s.Azimuth * kDegToRad;
        QPointF at(centre.x() + r * std::sin(a), centre.y() - r * std::cos(a));
        QColor c = s.SNR >= 35 ? QColor(0, 160, 0) : s.SNR > 0 ? QColor(220, 160, 0) : QColor(200, 0, 0);
        p.setBrush(c);
        p.setPen(Qt::NoPen);
        p.drawEllipse(at, 5, 5);
        p.setPen(ink);
        p.drawText(at + QPointF(7, 4), QString::number(s.PRN));
    }

    // Signal bars.
    const double barTop = centre.y() + radius + 36, barHeight = 90;
    const double slot = (w - 20.0) / 12.0;
    int i = 0;
    for (const SatRow& s : sats_.Sat) {
        double x = 10 + i * slot;
        double h = barHeight * std::clamp<double>(s.SNR, 0, 60) / 60.0;
        p.setPen(Qt::gray);
        p.setBrush(Qt::NoBrush);
        p.drawRect(QRectF(x + 2, barTop, slot - 4, barHeight));
        if (s.PRN > 0) {
            p.setBrush(QColor(0, 100, 200));
            p.drawRect(QRectF(x + 2, barTop + barHeight - h, slot - 4, h));
            p.setPen(ink);
            label(QString::number(s.PRN), QPointF(x + slot / 2, barTop + barHeight + fm.ascent() + 2));
        }
        ++i;
    }
    double y = barTop + barHeight + 2 * fm.height() + 4;
    p.setPen(ink);
    p.drawText(QPointF(10, y), QString("In view: %1   Used: %2   HDOP: %3")
                                   .arg(sats_.SatsInView)
                                   .arg(gga_.Satellites)
                                   .arg(Q(Format(gga_.HDOP, "0.0"))));
    y += fm.height();
    p.drawText(QPointF(10, y), QString("Altitude: %1 %2   UTC: %3")
                                   .arg(Q(Format(gga_.Altitude, "0.0")))
                                   .arg(Q(gga_.AltitudeUnit))
                                   .arg(Q(FormatDate(DateTime::FromSerial(gga_.Time), "Long Time"))));
    (void)shown;
}

}  // namespace ombra
