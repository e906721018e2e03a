// FrmAttachment: the viewer of a waypoint's bitmap attachment, Picture1
// showing it at its own size on a form sized to fit.
#pragma once
#include <QDialog>
#include <QLabel>
#include <string>

namespace ombra {

class FrmAttachment : public QDialog {
    Q_OBJECT
public:
    explicit FrmAttachment(QWidget* owner);
    // False when the file cannot be loaded as a picture.
    bool Load(const std::string& path);
    QLabel* Picture1;
};

}  // namespace ombra
