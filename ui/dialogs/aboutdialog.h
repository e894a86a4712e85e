#pragma once

#include "ui/dialogs/framelessdialog.h"

#include <QPointer>

#include <memory>

class OpenSouLicense;

namespace Ui {
class AboutDialog;
} // namespace Ui

/// The About dialog: product name, installed version, the maker's rights notice and the way to the
/// open-source licences. Whoever opens it sets it modal and to delete itself on close.
class AboutDialog : public FramelessDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(AboutDialog)

public:
    explicit AboutDialog(QWidget *parent);
    ~AboutDialog() override;

private slots:
    /// Opens the licence dialog; not again within a second, so that a double click opens one.
    void opensrclicense_clicked();

private:
    void styleForm();
    void showVersion();
    void fillForm();

    QString iniPath;
    QString licensePath;
    QString version;
    std::unique_ptr<Ui::AboutDialog> ui;
    QPointer<OpenSouLicense> licenseDlg; ///< deletes itself
};
