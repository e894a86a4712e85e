#pragma once

#include "ui/dialogs/aboutdialog.h"

#include <QObject>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

class LogCapture;
class OpenSouLicense;
class QPushButton;
class QTextEdit;

/// What the tests of the two dialogs share: an installation in a folder of its own, the About
/// dialog opened on it, and the licence dialog opened from there.
class DialogTest : public QObject
{
    Q_OBJECT

public:
    DialogTest();
    ~DialogTest() override;

private slots:
    void initTestCase();
    void init();
    void cleanup();

protected:
    const Qt::WindowFlags dialogFlags
        = Qt::Tool | Qt::MSWindowsFixedSizeDialogHint | Qt::FramelessWindowHint;
    const QString cannotOpen = QStringLiteral("warning: Couldn't open json file.");

    static void writeFile(const QString &path, const QByteArray &bytes);
    /// What Qt complained about, but for what its platform without a screen cannot do.
    [[nodiscard]] static QStringList complaints(const LogCapture &log);

    void openAbout(const QString &callerType = QStringLiteral("vdi"));
    void writeLicence(const QByteArray &text) const;
    void clickLicence() const;
    [[nodiscard]] QPushButton *button(const QString &name) const;
    [[nodiscard]] QString styleOf(const QString &name) const;
    [[nodiscard]] QList<OpenSouLicense *> licences() const;
    /// Opens the licence dialog with a click; the program ends when it does not open.
    [[nodiscard]] OpenSouLicense *openLicence() const;
    [[nodiscard]] static QTextEdit *view(const QWidget *licence);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<AboutDialog> m_about;

private:
    QString m_before;
};
