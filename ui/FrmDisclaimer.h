// The start-up dialogs: the splash picture, the disclaimer that must be
// accepted before the plotter is used, and the colour warning.
#pragma once
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QWidget>

namespace ombra {

// A borderless picture sized to its image: the product's name over a
// compass rose, drawn here so no image file is needed.
class FrmSplash : public QWidget {
    Q_OBJECT
public:
    FrmSplash(const QString& product, const QString& version);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString product_, version_;
};

class FrmDisclaimer : public QDialog {
    Q_OBJECT
public:
    FrmDisclaimer(QWidget* owner, const QString& title, const QString& text);
    // "Accept" or "Cancel", as the buttons were pressed.
    QString Reply() const { return reply_; }
    QPushButton* ComAccept = nullptr;
    QPushButton* ComCancel = nullptr;

private:
    QString reply_ = "Cancel";
};

class FrmWarning : public QDialog {
    Q_OBJECT
public:
    FrmWarning(QWidget* owner, const QString& title);
};

}  // namespace ombra
