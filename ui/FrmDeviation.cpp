#include "ui/FrmDeviation.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "core/Val.h"
#include "platform/qt/QtServices.h"

namespace ombra {

namespace {

// The picture box of the curve: paints the working card through the
// Canvas service, so that what is drawn is what the logic laid out.
class DeviationCurveView : public QWidget {
public:
    DeviationCurveView(QWidget* parent, const DeviationCard& card) : QWidget(parent), card_(card) {
        setMinimumSize(360, 220);
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        PainterCanvas canvas(painter, width(), height());
        DrawDeviationCurve(canvas, card_);
    }

private:
    const DeviationCard& card_;
};

}  // namespace

FrmDeviation::FrmDeviation(QWidget* owner, Deviation& deviation)
    : QDialog(owner), deviation_(deviation), working_(deviation.DeviationTable) {
    setObjectName("FrmDeviation");
    setWindowTitle("Deviation Details");
    setModal(true);

    auto* top = new QVBoxLayout(this);
    auto* entry = new QGridLayout;
    top->addLayout(entry);

    LabHeading = new QLabel("Mag. Heading", this);
    LabHeading->setObjectName("LabHeading");
    LabCorrection = new QLabel("Deviation E/W", this);
    LabCorrection->setObjectName("LabCorrection");
    LabHint = new QLabel("enter + for W or - for E", this);
    LabHint->setObjectName("LabHint");

    TxtHeading = new QLineEdit(this);
    TxtHeading->setObjectName("TxtHeading");
    TxtHeading->setReadOnly(true);
    TxtHeading->setMaximumWidth(70);
    TxtCorrection = new QLineEdit(this);
    TxtCorrection->setObjectName("TxtCorrection");
    TxtCorrection->setMaximumWidth(70);
    TxtCorrection->installEventFilter(this);

    SpinButton1 = new QWidget(this);
    SpinButton1->setObjectName("SpinButton1");
    auto* spin = new QVBoxLayout(SpinButton1);
    spin->setContentsMargins(0, 0, 0, 0);
    spin->setSpacing(0);
    SpinUp = new QToolButton(SpinButton1);
    SpinUp->setObjectName("SpinUp");
    SpinUp->setArrowType(Qt::UpArrow);
    SpinUp->setAutoRepeat(true);
    SpinDown = new QToolButton(SpinButton1);
    SpinDown->setObjectName("SpinDown");
    SpinDown->setArrowType(Qt::DownArrow);
    SpinDown->setAutoRepeat(true);
    spin->addWidget(SpinUp);
    spin->addWidget(SpinDown);

    entry->addWidget(LabHeading, 0, 0);
    entry->addWidget(TxtHeading, 0, 1);
    entry->addWidget(SpinButton1, 0, 2, 2, 1);
    entry->addWidget(LabCorrection, 1, 0);
    entry->addWidget(TxtCorrection, 1, 1);
    entry->addWidget(LabHint, 1, 3);
    entry->setColumnStretch(4, 1);

    PicCurve = new DeviationCurveView(this, working_);
    PicCurve->setObjectName("PicCurve");
    top->addWidget(PicCurve, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    ComOK = new QPushButton("OK", this);
    ComOK->setObjectName("ComOK");
    ComOK->setDefault(true);
    ComCancel = new QPushButton("Cancel", this);
    ComCancel->setObjectName("ComCancel");
    buttons->addWidget(ComOK);
    buttons->addWidget(ComCancel);
    top->addLayout(buttons);

    connect(SpinUp, &QToolButton::clicked, this, [this] { SpinButton1_SpinUp(); });
    connect(SpinDown, &QToolButton::clicked, this, [this] { SpinButton1_SpinDown(); });
    connect(TxtCorrection, &QLineEdit::textChanged, this, [this] {
        if (showing_) return;
        StoreCorrection();
        PicCurve->update();
    });
    connect(ComOK, &QPushButton::clicked, this, [this] { ComOK_Click(); });
    connect(ComCancel, &QPushButton::clicked, this, &QDialog::reject);

    ShowEntry();
}

void FrmDeviation::ShowEntry() {
    showing_ = true;
    TxtHeading->setText(QString::number(entry_ * 10));
    TxtCorrection->setText(Q(NumberText(working_[size_t(entry_)])));
    showing_ = false;
    PicCurve->update();
}

void FrmDeviation::StoreCorrection() { working_[size_t(entry_)] = float(Val(S(TxtCorrection->text()))); }

void FrmDeviation::SpinButton1_SpinUp() {
    StoreCorrection();
    if (entry_ < kDeviationEntries - 1) ++entry_;
    ShowEntry();
}

void FrmDeviation::SpinButton1_SpinDown() {
    StoreCorrection();
    if (entry_ > 0) --entry_;
    ShowEntry();
}

void FrmDeviation::ComOK_Click() {
    StoreCorrection();
    deviation_.DeviationTable = working_;
    deviation_.SaveDeviateDat();
    accept();
}

bool FrmDeviation::CorrectionKeyPasses(QChar c) {
    return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.' || !c.isPrint();
}

bool FrmDeviation::eventFilter(QObject* watched, QEvent* event) {
    if (watched == TxtCorrection && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text();
        // Editing keys (arrows, backspace, delete, tab, enter) carry no
        // printable text and always pass; shortcuts with Ctrl pass too.
        if (!text.isEmpty() && !(key->modifiers() & Qt::ControlModifier)) {
            for (QChar c : text)
                if (!CorrectionKeyPasses(c)) return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

}  // namespace ombra
