#include "ui/FrmAlarm.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "platform/qt/QtServices.h"

namespace ombra {

const char* FrmAlarm::ControlName(AlarmForm form) {
    switch (form) {
        case AlarmForm::Arrival: return "FrmAlarmWP";
        case AlarmForm::CrossTrack: return "FrmAlarmXTE";
        case AlarmForm::Anchor: return "FrmAlarmAnchor";
        case AlarmForm::Boundary: return "FrmAlarmBoundary";
        case AlarmForm::Cpa: return "FrmAlarmCPA";
    }
    return "FrmAlarm";
}

FrmAlarm::FrmAlarm(QWidget* owner, AlarmForm form) : QDialog(owner), form_(form) {
    setObjectName(ControlName(form));
    setModal(false);
    setWindowModality(Qt::NonModal);
    setWindowFlags(Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    auto* top = new QVBoxLayout(this);
    top->setContentsMargins(16, 14, 16, 12);
    top->setSpacing(12);
    LabMsg = new QLabel(this);
    LabMsg->setObjectName("LabMsg");
    LabMsg->setWordWrap(true);
    LabMsg->setMinimumWidth(420);
    QFont f = LabMsg->font();
    f.setBold(true);
    f.setPointSize(f.pointSize() + 2);
    LabMsg->setFont(f);
    LabMsg->setStyleSheet("color: #c00000");
    top->addWidget(LabMsg);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    std::vector<const char*> captions = form == AlarmForm::Arrival ? std::vector<const char*>{"Yes", "No"}
                                                                   : std::vector<const char*>{"OK"};
    for (const char* c : captions) {
        auto* b = new QPushButton(c, this);
        b->setObjectName(QString("Com") + c);
        b->setMinimumWidth(80);
        connect(b, &QPushButton::clicked, this, [this, c] {
            if (Pressed) Pressed(c);
        });
        row->addWidget(b);
        Buttons.push_back(b);
    }
    Buttons.front()->setDefault(true);
    top->addLayout(row);
    if (form == AlarmForm::Anchor) {
        setWindowTitle("Anchor Alarm");
        LabMsg->setText("You have moved outside the area of your anchor alarm");
    }
}

void FrmAlarm::ShowAlarm(const QString& caption, const QString& text) {
    setWindowTitle(caption);
    LabMsg->setText(text);
    adjustSize();
    show();
    raise();
}

}  // namespace ombra
