// FrmSatInfo: the satellites in view ("Satellite Information"), redrawn at
// the end of each vessel cycle while it is open. The sky plot has north
// ("000 T") at the top and south ("180 T") at the bottom, the horizon as
// its rim and the zenith at its centre; each satellite is a dot at its
// azimuth and elevation, labelled with its PRN. Below it, one bar a
// satellite for its signal-to-noise ratio (0-60 dB), and the GGA figures:
// satellites used, HDOP, altitude, the time of the last fix.
//
// A "&Close" button at the foot and Esc close it, as they do any dialog.
#pragma once
#include <QPushButton>
#include <QWidget>

namespace ombra {

struct SatInfo;
struct GGAExtra;

class FrmSatInfo : public QWidget {
    Q_OBJECT
public:
    FrmSatInfo(QWidget* owner, const SatInfo& sats, const GGAExtra& gga);
    void Refresh() { update(); }

    QPushButton* ComClose;

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* e) override;

private:
    const SatInfo& sats_;
    const GGAExtra& gga_;
};

}  // namespace ombra
