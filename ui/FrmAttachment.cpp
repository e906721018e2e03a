#include "ui/FrmAttachment.h"

#include <QPixmap>
#include <QVBoxLayout>

#include "core/Paths.h"
#include "platform/qt/QtServices.h"

namespace ombra {

FrmAttachment::FrmAttachment(QWidget* owner) : QDialog(owner) {
    setObjectName("FrmAttachment");
    Picture1 = new QLabel(this);
    Picture1->setObjectName("Picture1");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(Picture1);
}

bool FrmAttachment::Load(const std::string& path) {
    QPixmap pic;
    if (path.empty() || !pic.load(Q(ResolvePath(path)))) return false;
    Picture1->setPixmap(pic);
    setWindowTitle(Q(path));
    setFixedSize(pic.size());
    return true;
}

}  // namespace ombra
