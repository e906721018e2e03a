#include "ui/FrmTideOptions.h"

#include <QVBoxLayout>

#include "ui/DialogParts.h"

namespace ombra {

FrmTideOptions::FrmTideOptions(QWidget* owner, bool useProudman) : QDialog(owner) {
    setObjectName("FrmTideOptions");
    setWindowTitle("Tide Options");
    setModal(true);
    auto* top = new QVBoxLayout(this);
    ChkUseProudman =
        NamedCheck(this, top, "ChkUseProudman", "Use Proudman data to update tide information", useProudman);
    OkCancel buttons = AddOkCancel(this, top);
    ComOK = buttons.ok;
    ComCancel = buttons.cancel;
    ConnectOkCancel(this, buttons, &result_);
}

}  // namespace ombra
