// FrmNotes: "Notes" of the chart in view: the chart's notes file and each
// plan's, as the chart brings them.
#pragma once
#include <QDialog>
#include <QPlainTextEdit>

#include "charts/ChartModule.h"

namespace ombra {

class FrmNotes : public QDialog {
    Q_OBJECT
public:
    FrmNotes(ChartModule& charts, QWidget* parent = nullptr);
    QPlainTextEdit* TxtNotes;
};

}  // namespace ombra
