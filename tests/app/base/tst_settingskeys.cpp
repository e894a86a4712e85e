#include "app/base/settingskeys.h"

#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

/// The page about the configuration and the keys that the program reads say the same.
class TestSettingsKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void sampleFile_namesEveryKeyAndNoOther();
    void sampleFile_hasAValueForEveryKey();
    void pageAboutTheClientsFile_namesEveryKeyAndNoOther();

private:
    [[nodiscard]] QString section(const QString &heading) const;
    [[nodiscard]] QString sampleFile() const;

    QString m_page;
    QTemporaryDir m_folder;
};

namespace {

QStringList tableNames(bool ofTheClient)
{
    QStringList names;
    for (const SettingsEntry &entry : settingsTable) {
        if ((entry.need == SettingsNeed::WrittenByClient) == ofTheClient) {
            names.append(QLatin1String(entry.name));
        }
    }
    names.sort();
    return names;
}

} // namespace

void TestSettingsKeys::initTestCase()
{
    QFile file(QStringLiteral(MIRAVEL_CONFIGURATION_PAGE));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
    m_page = QString::fromUtf8(file.readAll());
}

/// What stands between the \a heading of the second level and the next one.
QString TestSettingsKeys::section(const QString &heading) const
{
    const int start = m_page.indexOf(QStringLiteral("\n## %1\n").arg(heading));
    return start < 0
             ? QString()
             : m_page.mid(start, m_page.indexOf(QStringLiteral("\n## "), start + 1) - start);
}

/// The path of the page's sample, in a file of its own.
QString TestSettingsKeys::sampleFile() const
{
    const QString text = section(QStringLiteral("Miravel.ini"));
    const QString fence = QStringLiteral("```");
    const QString sample = text.section(fence, 1, 1).section(QLatin1Char('\n'), 1);
    QFile file(m_folder.filePath(QStringLiteral("sample.ini")));
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("The sample cannot be written.");
    }
    file.write(sample.toUtf8());
    return file.fileName();
}

void TestSettingsKeys::sampleFile_namesEveryKeyAndNoOther()
{
    QStringList names = QSettings(sampleFile(), QSettings::IniFormat).allKeys();
    names.sort();
    QCOMPARE(names, tableNames(false));
}

void TestSettingsKeys::sampleFile_hasAValueForEveryKey()
{
    const QSettings sample(sampleFile(), QSettings::IniFormat);
    for (const QString &name : tableNames(false)) {
        QVERIFY2(!sample.value(name).toString().isEmpty(), qPrintable(name));
    }
}

void TestSettingsKeys::pageAboutTheClientsFile_namesEveryKeyAndNoOther()
{
    const QRegularExpression row(QStringLiteral("^\\| `([A-Za-z]+/[A-Za-z]+)` \\|"),
                                 QRegularExpression::MultilineOption);
    QStringList names;
    auto match = row.globalMatch(section(QStringLiteral("CommonTerminal.ini")));
    while (match.hasNext()) {
        names.append(match.next().captured(1));
    }
    names.sort();
    QCOMPARE(names, tableNames(true));
}

QTEST_GUILESS_MAIN(TestSettingsKeys)
#include "tst_settingskeys.moc"
