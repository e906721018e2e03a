#include "ui/FrmDisclaimer.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>
#include <cmath>

namespace ombra {

FrmSplash::FrmSplash(const QString& product, const QString& version) : product_(product), version_(version) {
    setObjectName("FrmSplash");
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    setFixedSize(480, 300);
}

void FrmSplash::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, 0, height());
    g.setColorAt(0, QColor(0x0b, 0x2a, 0x4a));
    g.setColorAt(1, QColor(0x1f, 0x5f, 0x8b));
    p.fillRect(rect(), g);
    // A compass rose.
    QPointF c(110, 150);
    p.setPen(QPen(QColor(0xe8, 0xd8, 0xa0), 2));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(c, 80, 80);
    for (int i = 0; i < 8; ++i) {
        double a = i * M_PI / 4;
        double r = (i % 2) ? 45 : 75;
        QPainterPath path;
        path.moveTo(c);
        path.lineTo(c.x() + 10 * std::cos(a + M_PI / 2), c.y() - 10 * std::sin(a + M_PI / 2));
        path.lineTo(c.x() + r * std::cos(a), c.y() - r * std::sin(a));
        path.closeSubpath();
        p.setBrush(i == 2 ? QColor(0xd0, 0x40, 0x30) : QColor(0xe8, 0xd8, 0xa0));
        p.drawPath(path);
    }
    p.setPen(Qt::white);
    QFont f = font();
    f.setPointSize(30);
    f.setBold(true);
    p.setFont(f);
    p.drawText(QRect(210, 90, 260, 60), Qt::AlignLeft | Qt::AlignVCenter, "Vestrane");
    f.setPointSize(22);
    f.setBold(false);
    p.setFont(f);
    p.drawText(QRect(210, 150, 260, 40), Qt::AlignLeft | Qt::AlignVCenter, product_);
    f.setPointSize(10);
    p.setFont(f);
    p.drawText(QRect(210, 200, 260, 24), Qt::AlignLeft | Qt::AlignVCenter, "Version " + version_);
}

FrmDisclaimer::FrmDisclaimer(QWidget* owner, const QString& title, const QString& text) : QDialog(owner) {
    setObjectName("FrmDisclaimer");
    setWindowTitle(title);
    setModal(true);
    auto* v = new QVBoxLayout(this);
    auto* label = new QLabel(text, this);
    label->setObjectName("LabDisclaimer");
    label->setWordWrap(true);
    label->setMinimumWidth(420);
    v->addWidget(label);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    ComAccept = new QPushButton("&Accept", this);
    ComAccept->setObjectName("ComAccept");
    ComCancel = new QPushButton("&Cancel", this);
    ComCancel->setObjectName("ComCancel");
    row->addWidget(ComAccept);
    row->addWidget(ComCancel);
    v->addLayout(row);
    connect(ComAccept, &QPushButton::clicked, this, [this] {
        reply_ = "Accept";
        accept();
    });
    connect(ComCancel, &QPushButton::clicked, this, [this] {
        reply_ = "Cancel";
        reject();
    });
    adjustSize();
    if (owner) move(owner->geometry().center() - rect().center());
}

FrmWarning::FrmWarning(QWidget* owner, const QString& title) : QDialog(owner) {
    setObjectName("FrmWarning");
    setWindowTitle(title);
    setModal(true);
    auto* v = new QVBoxLayout(this);
    auto* label = new QLabel(
        "The display is set to 256 colours or fewer.\n\n"
        "Charts are drawn with more colours than this display can show, so colours on the chart may be wrong. "
        "Set the display to more colours before relying on the chart.",
        this);
    label->setWordWrap(true);
    label->setMinimumWidth(380);
    v->addWidget(label);
    auto* ok = new QPushButton("OK", this);
    ok->setObjectName("ComOK");
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    v->addWidget(ok, 0, Qt::AlignRight);
}

}  // namespace ombra
