#pragma once

#include "ui/dialogs/framelessdialog.h"

#include <memory>

class QGraphicsDropShadowEffect;

namespace Ui {
class OpenSouLicense;
} // namespace Ui

/// The dialog that shows the licences of the open-source software in the program.
class OpenSouLicense : public FramelessDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(OpenSouLicense)

public:
    explicit OpenSouLicense(QWidget *parent);
    ~OpenSouLicense() override;

    /// Lets the close and the confirm button close the dialog.
    void connectButtons();

    /// Shows \a text, which may carry HTML markup; only selecting with the mouse is possible.
    void showText(const QString &text);

private slots:
    void on_close_clicked();
    void on_affirm_clicked();

private:
    void styleForm();

    std::unique_ptr<Ui::OpenSouLicense> ui;
    QGraphicsDropShadowEffect *shadow; ///< owned by the card
};
