#include "ui/FrmNotes.h"

#include <QDialogButtonBox>
#include <QVBoxLayout>

#include "core/Val.h"
#include "platform/qt/QtServices.h"

namespace ombra {

FrmNotes::FrmNotes(ChartModule& charts, QWidget* parent) : QDialog(parent) {
    setObjectName("FrmNotes");
    setWindowTitle(charts.Charts.ChartIsOpen() ? "Notes: chart " + Q(Trim(charts.State.Header.ChartNumber)) : "Notes");
    TxtNotes = new QPlainTextEdit(this);
    TxtNotes->setReadOnly(true);
    std::string text = charts.Charts.NotesText();
    TxtNotes->setPlainText(text.empty() ? "This chart has no notes." : Q(text));
    auto* box = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(TxtNotes, 1);
    layout->addWidget(box);
    resize(560, 380);
}

}  // namespace ombra
