#include "tests/ui/dialogs/dialogtest.h"

#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/support/logcapture.h"
#include "ui/dialogs/opensoulicense.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

#include <algorithm>

DialogTest::DialogTest() = default;
DialogTest::~DialogTest() = default;

void DialogTest::writeFile(const QString &path, const QByteArray &bytes)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QStringList DialogTest::complaints(const LogCapture &log)
{
    QStringList lines = log.foreignLines();
    const auto platformOnly = [](const QString &line) {
        return line.contains(QLatin1String("This plugin does not support"));
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), platformOnly), lines.end());
    return lines;
}

void DialogTest::clickLicence() const
{
    button(QStringLiteral("licenseButton"))->click();
}

void DialogTest::initTestCase()
{
    initResources();
    m_before = QDir::currentPath();
}

void DialogTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("bin")));
    QDir::setCurrent(m_folder->filePath(QStringLiteral("bin")));
    writeFile(QStringLiteral("../config/Miravel.ini"), "[Version]\nversion=3.2.1\n");
}

void DialogTest::cleanup()
{
    m_about.reset();
    QDir::setCurrent(m_before);
    m_folder.reset();
}

void DialogTest::openAbout(const QString &callerType)
{
    initAppPaths(callerType);
    m_about = std::make_unique<AboutDialog>(nullptr);
    m_about->show();
    QVERIFY(QTest::qWaitForWindowActive(m_about.get()));
}

void DialogTest::writeLicence(const QByteArray &text) const
{
    writeFile(m_folder->filePath(QStringLiteral("config/OpenSourceLicense.txt")), text);
}

QPushButton *DialogTest::button(const QString &name) const
{
    return m_about->findChild<QPushButton *>(name);
}

QString DialogTest::styleOf(const QString &name) const
{
    return m_about->findChild<QWidget *>(name)->styleSheet();
}

QList<OpenSouLicense *> DialogTest::licences() const
{
    return m_about->findChildren<OpenSouLicense *>();
}

OpenSouLicense *DialogTest::openLicence() const
{
    clickLicence();
    OpenSouLicense *licence = m_about->findChild<OpenSouLicense *>();
    if (!licence || !licence->isVisible()) {
        qFatal("no licence dialog");
    }
    return licence;
}

QTextEdit *DialogTest::view(const QWidget *licence)
{
    return licence->findChild<QTextEdit *>();
}
