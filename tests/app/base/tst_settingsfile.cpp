#include "app/base/settingscontent.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "tests/support/generator.h"
#include "tests/support/logcapture.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// Settings files are read as Qt reads them, but for what it takes danger to read.
class TestSettingsFile : public QObject
{
    Q_OBJECT

private slots:
    void hostileValue_countsAsMissing_data();
    void hostileValue_countsAsMissing();
    void hostileValue_isNamedInOneLine();
    void hostileValueOfAnotherProgram_isNotNamed();
    void hostileValue_hidesNoOther();
    void harmlessVariant_isRead_data();
    void harmlessVariant_isRead();
    void listOfHostileValues_countsAsEmpty();
    void hugeFile_hasNoValues();
    void missingFile_hasNoValues();
    void nothing_isEverWritten();
    void wellFormedFile_hasGroupsAndKeys_data();
    void wellFormedFile_hasGroupsAndKeys();
    void escapedName_isThatOfItsLetters_data();
    void escapedName_isThatOfItsLetters();
    void everyEscape_isReadAsQtReadsIt();
    void anyFile_isReadAsQtReadsIt();

private:
    QString write(const QByteArray &bytes);

    QTemporaryDir m_folder;
    int m_files = 0;
};

namespace {

const QString levelKey = QStringLiteral("Log/level");

#ifdef Q_OS_WIN // where opening a file takes long
constexpr int generatedFiles = 200;
#else
constexpr int generatedFiles = 2000;
#endif

QString generated(Generator &generator)
{
    static const QStringList pieces
        = QString::fromLatin1(
              "\n[Log]\nlevel=|\n[url]\nhoturl =|\nmserverip=|[IpAndPort]\n|[Log]\r\n|"
              "[General]\n|[%General]\n|[ Log ]\n|[url|]|[log]\n|mserverip|level|LEVEL|"
              "lev%65l|l%U0065vel|%zz%6|hoturl|a\\b|=|=|=| |\t|\n|\r\n|\r|;|\"|\\|\\\n|"
              "\\x41|\\x|\\101|\\0|\\q|\\\"|\\x20ac |\\n|,|, |value|80|\xe9|\xc3\xa9|@|"
              "@@|@ByteArray(b)|@String(s)|@Invalid()|@Rect(1 2 3 4)|@Size(1)|"
              "@Point(1 2)|@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x5)|@Variant(|)|\x01|\x0b|'|"
              "#")
              .split(QLatin1Char('|'));
    QString text;
    for (int count = generator.between(0, 40); count > 0; --count) {
        text += generator.oneOf(pieces);
    }
#ifdef Q_OS_WIN // a key that is there twice, in two cases, is no matter
    text.replace(QLatin1String("[log]"), QLatin1String("[Log]"));
    text.replace(QLatin1String("LEVEL"), QLatin1String("level"));
#endif
    return text;
}

} // namespace

/// A file that none had the name of before: Qt keeps what it has read.
QString TestSettingsFile::write(const QByteArray &bytes)
{
    QFile file(m_folder.filePath(QStringLiteral("%1.ini").arg(++m_files)));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("The test's settings file cannot be written.");
    }
    return file.fileName();
}

void TestSettingsFile::hostileValue_countsAsMissing_data()
{
    QTest::addColumn<QByteArray>("value");
    // What stands behind the type is the number of entries.
    QTest::newRow("list of texts") << QByteArray(R"(@Variant(\0\0\0\xb\x7f\xff\xff\xff))");
    QTest::newRow("list of values") << QByteArray(R"(@Variant(\0\0\0\x9\x7f\xff\xff\xff))");
    QTest::newRow("map") << QByteArray(R"(@Variant(\0\0\0\x8\xff\xff\xff\xff))");
    QTest::newRow("bits") << QByteArray(R"(@Variant(\0\0\0\xd\x7f\xff\xff\xff))");
    QTest::newRow("polygon") << QByteArray(R"(@Variant(\0\0\0G\x7f\xff\xff\xff))");
    QTest::newRow("in quotes") << QByteArray(R"-("@Variant(\0\0\0\xb\x7f\xff\xff\xff)")-");
    QTest::newRow("in pieces") << QByteArray(R"-(\x40"Vari"\141"nt("\0\0\0\xb\x7f\xff\xff\xff))-");
    QTest::newRow("date") << QByteArray(R"(@DateTime(\0\0\0\xb\0\x7f\xff\xff\xff))");
    QTest::newRow("type of a program") << QByteArray(R"(@Variant(\0\0\0\x7f\0\0\0\x5Icon\0))");
}

void TestSettingsFile::hostileValue_countsAsMissing()
{
    QFETCH(QByteArray, value);
    const LogCapture log;
    const SettingsFile settings(write("[Log]\nlevel=" + value + "\n"));
    QVERIFY(!settings.contains(levelKey));
    QCOMPARE(settings.value(levelKey, 7).toInt(), 7);
}

void TestSettingsFile::hostileValue_isNamedInOneLine()
{
    const QByteArray hostile = R"(=@Variant(\0\0\0\xb\x7f\xff\xff\xff))";
    const QString path = write("[Log]\nlevel" + hostile + "\nlevel" + hostile
                               + "\n[IpAndPort]\nmserverip" + hostile + "\n");
    LogCapture log;
    QVERIFY(!SettingsFile(path).contains(levelKey));
    const QString line
        = QStringLiteral("graver: Settings are neither text nor number and count as missing: "
                         "Log/level, IpAndPort/mserverip");
    QCOMPARE(log.lines(), QStringList{line});
    logRefusedSettings(path);
    QCOMPARE(log.lines(), (QStringList{line, line}));
}

void TestSettingsFile::hostileValueOfAnotherProgram_isNotNamed()
{
    LogCapture log;
    const SettingsFile settings(write("[RemLastUser]\nlastuser=u\n"
                                      R"(when=@DateTime(\0\0\0\x10\0\0\0\0\0\0))"));
    QCOMPARE(settings.value(QStringLiteral("RemLastUser/lastuser")).toString(),
             QStringLiteral("u"));
    QCOMPARE(log.lines(), QStringList());
}

void TestSettingsFile::hostileValue_hidesNoOther()
{
    const LogCapture log;
    const SettingsFile settings(write("[Log]\nother=1\n"
                                      R"(level=@Variant(\0\0\0\xb\x7f\xff\xff\xff))"
                                      "\nlast=2\n[url]\nhoturl=/hot\n"));
    QCOMPARE(settings.value(QStringLiteral("Log/other")).toInt(), 1);
    QCOMPARE(settings.value(QStringLiteral("Log/last")).toInt(), 2);
    QCOMPARE(settings.value(QStringLiteral("url/hoturl")).toString(), QStringLiteral("/hot"));
}

void TestSettingsFile::harmlessVariant_isRead_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("number") << QByteArray(R"(@Variant(\0\0\0\x2\0\0\0\x5))") << "5";
    QTest::newRow("truth") << QByteArray(R"(@Variant(\0\0\0\x1\x1))") << "true";
    QTest::newRow("text") << QByteArray(R"(@Variant(\0\0\0\n\0\0\0\x2\0H))") << "H";
    QTest::newRow("text that claims too much")
        << QByteArray(R"(@Variant(\0\0\0\n\x7f\xff\xff\xfe\0H))") << QString();
    QTest::newRow("bytes") << QByteArray("@ByteArray(ab)") << "ab";
    QTest::newRow("at sign") << QByteArray("@@Variant(a)") << "@Variant(a)";
    QTest::newRow("unfinished") << QByteArray("@Variant(a") << "@Variant(a";
    QTest::newRow("rectangle") << QByteArray("@Rect(1 2 3 4)") << QString();
    QTest::newRow("half a rectangle") << QByteArray("@Rect(1 2)") << "@Rect(1 2)";
}

void TestSettingsFile::harmlessVariant_isRead()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, text);
    const SettingsFile settings(write("[Log]\nlevel=" + value + "\n"));
    QVERIFY(settings.contains(levelKey));
    QCOMPARE(settings.value(levelKey).toString(), text);
}

void TestSettingsFile::listOfHostileValues_countsAsEmpty()
{
    const SettingsFile settings(write("[Log]\nlevel="
                                      R"(@Variant(\0\0\0\xb\x7f\xff\xff\xff), ERROR)"));
    QVERIFY(settings.contains(levelKey));
    QCOMPARE(settings.value(levelKey).toString(), QString());
}

void TestSettingsFile::hugeFile_hasNoValues()
{
    const QString path = write("[Log]\nlevel=INFO\n");
    QVERIFY(QFile::resize(path, 64LL * 1024 * 1024));
    QCOMPARE(SettingsFile(path).value(levelKey).toString().left(4), QStringLiteral("INFO"));
    QVERIFY(QFile::resize(path, 64LL * 1024 * 1024 + 1));
    LogCapture log;
    QCOMPARE(SettingsFile(path).allKeys(), QStringList());
    QCOMPARE(log.lines(), QStringList{QStringLiteral(
                              "graver: A settings file of more than 64 MiB is not read.")});
}

void TestSettingsFile::missingFile_hasNoValues()
{
    QCOMPARE(SettingsFile(QString()).allKeys(), QStringList());
    QCOMPARE(SettingsFile(m_folder.filePath(QStringLiteral("none"))).allKeys(), QStringList());
    QCOMPARE(SettingsFile(m_folder.path()).allKeys(), QStringList());
}

void TestSettingsFile::nothing_isEverWritten()
{
    const QString path = write("[Log]\nlevel=a\n");
    SettingsFile settings(path);
    settings.setValue(levelKey, 1);
    settings.sync();
    QCOMPARE(settings.status(), QSettings::AccessError);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[Log]\nlevel=a\n"));
}

void TestSettingsFile::wellFormedFile_hasGroupsAndKeys_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isWellFormed");
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("groups, keys, comments") << QByteArray("; c\n[a]\nb=c ; d\n\n[e]\n") << true;
    QTest::newRow("word alone") << QByteArray("[a]\nb\n") << false;
    QTest::newRow("open group") << QByteArray("[a\nb=c\n") << false;
    QTest::newRow("word, then a good group") << QByteArray("b\n[a]\nb=c\n") << false;
    QTest::newRow("no name") << QByteArray("=c\n") << true;
}

void TestSettingsFile::wellFormedFile_hasGroupsAndKeys()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isWellFormed);
    QCOMPARE(readSettings(bytes).isWellFormed, isWellFormed);
}

void TestSettingsFile::escapedName_isThatOfItsLetters_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *written, const QString &name) {
        QTest::newRow(written) << QByteArray(written) << name;
    };
    row("lev%65l", QStringLiteral("level"));
    row("%6c%65%76%65%6C", QStringLiteral("level"));
    row("l%U0065vel", QStringLiteral("level"));
    row("%U7EA7%U522B", QStringLiteral("级别"));
    row("%U006", QStringLiteral("%U006"));
    row("l%6", QStringLiteral("l%6"));
    row("%zzl", QStringLiteral("%zzl"));
    row("a\\b", QStringLiteral("a/b"));
}

void TestSettingsFile::escapedName_isThatOfItsLetters()
{
    QFETCH(QByteArray, written);
    QFETCH(QString, name);
    const QByteArray bytes = "[Log]\n" + written + "=x\n";
    const SettingsFile ours(write(bytes));
    QCOMPARE(ours.value(QStringLiteral("Log/") + name).toString(), QStringLiteral("x"));
    const QSettings theirs(write(bytes), QSettings::IniFormat);
    QCOMPARE(theirs.value(QStringLiteral("Log/") + name).toString(), QStringLiteral("x"));
}

void TestSettingsFile::everyEscape_isReadAsQtReadsIt()
{
    for (int letter = 1; letter < 256; ++letter) {
        for (const char *behind : {"", "1x", "8", "fF", "171717"}) {
            const QByteArray value
                = QByteArray("a\\").append(static_cast<char>(letter)) + behind + " b";
            const QByteArray bytes = "[Log]\nlevel=" + value + "\n";
            const SettingsFile ours(write(bytes));
            const QSettings theirs(write(bytes), QSettings::IniFormat);
            QVERIFY2(ours.value(levelKey).toString() == theirs.value(levelKey).toString(),
                     value.toPercentEncoding());
        }
    }
}

void TestSettingsFile::anyFile_isReadAsQtReadsIt()
{
    static const QRegularExpression nested(QStringLiteral("\\[[^\\]\n\r]*[\\\\%]"));
    const LogCapture log;
    Generator generator;
    int present = 0;
    for (int file = 0; file < generatedFiles; ++file) {
        QByteArray bytes = generated(generator).toLatin1();
        if (generator.oneIn(4)) {
            bytes.prepend("\xef\xbb\xbf[url]\n"); // Qt takes the mark for a part of a first key
        }
        if (nested.match(QString::fromLatin1(bytes)).hasMatch()) {
            continue; // Qt may miss what lies in a group beside another that is nested in it
        }
        const QStringList refused = readSettings(bytes).refused;
        const SettingsFile ours(write(bytes));
        const QSettings theirs(write(bytes), QSettings::IniFormat);
        for (const char *name : {"Log/level", "log/level", "Log/LEVEL", "IpAndPort/mserverip",
                                 "url/hoturl", "General/level", "level"}) {
            const QString key = QLatin1String(name);
            const QByteArray which = bytes.toPercentEncoding() + " has " + name;
            QVERIFY2(ours.value(key).toString() == theirs.value(key).toString(), which);
            QVERIFY2(ours.value(key).toInt() == theirs.value(key).toInt(), which);
            if (!refused.contains(key, Qt::CaseInsensitive)) {
                QVERIFY2(ours.contains(key) == theirs.contains(key), which);
                present += theirs.contains(key) ? 1 : 0;
            }
        }
        QFile::remove(m_folder.filePath(QStringLiteral("%1.ini").arg(m_files)));
        QFile::remove(m_folder.filePath(QStringLiteral("%1.ini").arg(m_files - 1)));
    }
    QVERIFY(present > generatedFiles / 10);
}

QTEST_GUILESS_MAIN(TestSettingsFile)
#include "tst_settingsfile.moc"
