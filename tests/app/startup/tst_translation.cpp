#include "app/startup/translation.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

/// Which translation is looked for.
class TestTranslation : public QObject
{
    Q_OBJECT

private slots:
    void file_isThatOfTheFirstLanguage_data();
    void file_isThatOfTheFirstLanguage();
    void folderWithoutTranslations_changesNothing();
};

void TestTranslation::file_isThatOfTheFirstLanguage_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QString>("file");
    const auto row = [](const char *name, const QStringList &languages, const char *file) {
        QTest::newRow(name) << languages << QString::fromLatin1(file);
    };
    const auto text = [](const char *name) {
        return QString::fromLatin1(name);
    };
    row("language and country", {text("en-US")}, "Miravel_en.qm");
    row("language alone", {text("de")}, "Miravel_de.qm");
    row("three letters", {text("fil-PH")}, "Miravel_fil.qm");
    row("capital letters", {text("EN")}, "Miravel_en.qm");
    row("the dearest counts", {text("de-DE"), text("en-US")}, "Miravel_de.qm");
    row("Chinese", {text("zh-CN")}, "");
    row("Chinese in other letters", {text("zh-Hant-TW"), text("en")}, "");
    row("none", {}, "");
    row("empty", {QString()}, "");
    row("the language of programs", {text("C")}, "");
    row("no name of a language", {text("../../etc")}, "");
    row("a path", {text("en/../x")}, "");
}

void TestTranslation::file_isThatOfTheFirstLanguage()
{
    QFETCH(QStringList, languages);
    QTEST(translationFile(languages), "file");
}

void TestTranslation::folderWithoutTranslations_changesNothing()
{
    const QTemporaryDir folder;
    installTranslation(*QCoreApplication::instance(), folder.path());
    const QString text = QString::fromUtf8("关于");
    QCOMPARE(QCoreApplication::translate("TitleBar", "关于"), text);
}

QTEST_GUILESS_MAIN(TestTranslation)
#include "tst_translation.moc"
