#include "locallibrary/locallibrary.h"
#include "tests/support/logcapture.h"
#include "tests/support/unreadablefile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

constexpr int fileCount = 30;
constexpr int tenMegabytes = 10'000'000;

const QString missing = QStringLiteral("debug: End of reading local QA, Number: ");

QString numbered(int number)
{
    return QStringLiteral("如何%1？").arg(number);
}

QString recordText(const QString &question, const QString &answer)
{
    return QStringLiteral("<html><body>\n<p>问题01：%1</p>\n<p>%2</p>\n</body></html>\n")
        .arg(question, answer);
}

} // namespace

/// Reading the files of the local library.
class TestLocalLibrary : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void nothingRead_holdsOneEmptyEntry();
    void missingFolder_givesNoQuestions();
    void fileInPlaceOfTheFolder_givesNoQuestions();
    void gapInTheNumbers_endsNothing();
    void allThirty_areReadInOrder();
    void otherNumbers_areNotRead();
    void fileWithoutRecord_addsNothing_data();
    void fileWithoutRecord_addsNothing();
    void fileWithoutAnswer_keepsTheListsParallel();
    void windowsLineEnds_areOneCharacter();
    void byteOrderMark_isNoMatter();
    void nul_endsTheText();
    void otherEncoding_isReadAsItComes();
    void tenMegabytes_areRead();
    void folderInPlaceOfAFile_isPassedOver();
    void noRightToRead_isPassedOver();
    void secondReading_addsNothing();
    void secondReading_addsWhatIsNew();
    void sameQuestionWithAnotherAnswer_isKept();
    void sameRecordInTwoFiles_isReadOnce();

private:
    void write(int number, const QByteArray &content) const;
    void write(int number, const QString &question, const QString &answer) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    LocalLibrary m_library;
};

void TestLocalLibrary::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QVERIFY(QDir::setCurrent(m_folder->path()));
    QVERIFY(QDir().mkdir(QStringLiteral("LocalQA")));
    m_library = LocalLibrary();
}

void TestLocalLibrary::cleanup()
{
    QDir::setCurrent(QDir::rootPath());
    m_folder.reset();
}

void TestLocalLibrary::write(int number, const QByteArray &content) const
{
    QFile file(QStringLiteral("LocalQA/%1.txt").arg(number));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("The file cannot be written");
    }
}

void TestLocalLibrary::write(int number, const QString &question, const QString &answer) const
{
    write(number, recordText(question, answer).toUtf8());
}

void TestLocalLibrary::nothingRead_holdsOneEmptyEntry()
{
    QCOMPARE(m_library.questions(), QStringList{QString()});
    QCOMPARE(m_library.answers(), QStringList{QString()});
    QCOMPARE(m_library.size(), 0);
}

void TestLocalLibrary::missingFolder_givesNoQuestions()
{
    QVERIFY(QDir().rmdir(QStringLiteral("LocalQA")));
    const LogCapture log;
    m_library.read();
    QCOMPARE(m_library.size(), 0);
    QStringList expected;
    for (int number = 0; number < fileCount; ++number) {
        expected.append(missing + QString::number(number));
    }
    QCOMPARE(log.lines(), expected);
}

void TestLocalLibrary::fileInPlaceOfTheFolder_givesNoQuestions()
{
    QVERIFY(QDir().rmdir(QStringLiteral("LocalQA")));
    QFile file(QStringLiteral("LocalQA"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    m_library.read();
    QCOMPARE(m_library.size(), 0);
}

void TestLocalLibrary::gapInTheNumbers_endsNothing()
{
    write(0, numbered(0), QStringLiteral("零"));
    write(2, numbered(2), QStringLiteral("二"));
    const LogCapture log;
    m_library.read();
    QCOMPARE(m_library.questions(), (QStringList{QString(), numbered(0), numbered(2)}));
    QCOMPARE(m_library.answers(),
             (QStringList{QString(), QStringLiteral("<p>零</p>"), QStringLiteral("<p>二</p>")}));
    QStringList expected{missing + QStringLiteral("1")};
    for (int number = 3; number < fileCount; ++number) {
        expected.append(missing + QString::number(number));
    }
    QCOMPARE(log.lines(), expected);
}

void TestLocalLibrary::allThirty_areReadInOrder()
{
    QStringList expected{QString()};
    for (int number = 0; number < fileCount; ++number) {
        write(number, numbered(number), QStringLiteral("答"));
        expected.append(numbered(number));
    }
    const LogCapture log;
    m_library.read();
    QCOMPARE(m_library.questions(), expected);
    QCOMPARE(m_library.size(), fileCount);
    QCOMPARE(log.lines(), QStringList());
}

void TestLocalLibrary::otherNumbers_areNotRead()
{
    write(fileCount, numbered(fileCount), QStringLiteral("答"));
    write(-1, numbered(1), QStringLiteral("答"));
    m_library.read();
    QCOMPARE(m_library.size(), 0);
}

void TestLocalLibrary::fileWithoutRecord_addsNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray record = recordText(numbered(1), QStringLiteral("答")).toUtf8();
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no body") << QByteArray("<p>问题01：如何？</p><p>答</p>");
    QTest::newRow("empty first paragraph") << QByteArray("<body><p></p><p>答</p></body>");
    QTest::newRow("upper-case body") << QByteArray(record).replace("body>", "BODY>");
    QTest::newRow("NUL at the start") << QByteArray(1, '\0') + record;
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\xff\xfe\x00\x01", 12);
    // Every other byte is a NUL, and the second one is the first of them.
    QTest::newRow("UTF-16") << QByteArray("<\0b\0o\0d\0y\0>\0<\0p\0>\0", 18);
}

void TestLocalLibrary::fileWithoutRecord_addsNothing()
{
    QFETCH(QByteArray, content);
    write(0, content);
    write(1, numbered(1), QStringLiteral("答"));
    m_library.read();
    QCOMPARE(m_library.questions(), (QStringList{QString(), numbered(1)}));
    QCOMPARE(m_library.answers().size(), 2);
}

void TestLocalLibrary::fileWithoutAnswer_keepsTheListsParallel()
{
    write(0, QByteArray("<body><p>问题01：如何？</p></body>"));
    write(1, numbered(1), QStringLiteral("答"));
    m_library.read();
    QCOMPARE(m_library.questions(),
             (QStringList{QString(), QStringLiteral("如何？"), numbered(1)}));
    QCOMPARE(m_library.answers(), (QStringList{QString(), QString(), QStringLiteral("<p>答</p>")}));
}

void TestLocalLibrary::windowsLineEnds_areOneCharacter()
{
    write(0, QByteArray("<body>\r\n<p>问题01：如何？</p>\r\n<p>一\r\n二</p>\r\n</body>\r\n"));
    m_library.read();
    QCOMPARE(m_library.answers().at(1), QStringLiteral("<p>一\n二</p>"));
}

void TestLocalLibrary::byteOrderMark_isNoMatter()
{
    write(0, QByteArray("\xef\xbb\xbf") + recordText(numbered(1), QStringLiteral("答")).toUtf8());
    m_library.read();
    QCOMPARE(m_library.questions().mid(1), QStringList{numbered(1)});
}

void TestLocalLibrary::nul_endsTheText()
{
    write(0, QByteArray("<body><p>问题01：如何？</p><p>一</p>") + QByteArray(1, '\0')
                 + QByteArray("<p>二</p></body>"));
    m_library.read();
    QCOMPARE(m_library.questions().mid(1), QStringList{QStringLiteral("如何？")});
    QCOMPARE(m_library.answers().mid(1), QStringList{QStringLiteral("<p>一</p>")});
}

void TestLocalLibrary::otherEncoding_isReadAsItComes()
{
    // "问题01：" and "如何" in GBK: no UTF-8, yet the tags are found.
    const QByteArray prefix("\xce\xca\xcc\xe2\x30\x31\xa3\xba", 8);
    write(0, "<body><p>" + prefix + "\xc8\xe7\xba\xce</p><p>answer</p></body>");
    m_library.read();
    QCOMPARE(m_library.size(), 1);
    QVERIFY(m_library.questions().at(1).contains(QChar(QChar::ReplacementCharacter)));
    QCOMPARE(m_library.answers().at(1), QStringLiteral("<p>answer</p>"));
}

void TestLocalLibrary::tenMegabytes_areRead()
{
    write(0, "<body><p>问题01：如何？</p><p>" + QByteArray(tenMegabytes, 'x') + "</p></body>");
    m_library.read();
    QCOMPARE(m_library.questions().mid(1), QStringList{QStringLiteral("如何？")});
    QCOMPARE(m_library.answers().at(1).size(), tenMegabytes + 7);
}

void TestLocalLibrary::folderInPlaceOfAFile_isPassedOver()
{
    QVERIFY(QDir().mkdir(QStringLiteral("LocalQA/0.txt")));
    write(1, numbered(1), QStringLiteral("答"));
    const LogCapture log;
    m_library.read();
    QCOMPARE(m_library.questions(), (QStringList{QString(), numbered(1)}));
    QVERIFY(!log.lines().contains(missing + QStringLiteral("0"))); // it is there
}

void TestLocalLibrary::noRightToRead_isPassedOver()
{
    write(0, numbered(0), QStringLiteral("零"));
    write(1, numbered(1), QStringLiteral("一"));
    constexpr QFile::Permissions open = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner
                                      | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther
                                      | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(m_folder->path(), open));
    QVERIFY(QFile::setPermissions(QStringLiteral("LocalQA"), open));
    QVERIFY(QFile::setPermissions(QStringLiteral("LocalQA/1.txt"), open));
    const UnreadableFile first(QStringLiteral("LocalQA/0.txt"));
    if (first.whyNot() != nullptr) {
        QSKIP(first.whyNot());
    }
    const LogCapture log;
    m_library.read();
    QCOMPARE(m_library.questions(), (QStringList{QString(), numbered(1)}));
    QVERIFY(!log.lines().contains(missing + QStringLiteral("0"))); // it is there
}

void TestLocalLibrary::secondReading_addsNothing()
{
    write(0, numbered(0), QStringLiteral("零"));
    write(1, QByteArray("<body><p>问题01：如何？</p></body>"));
    m_library.read();
    m_library.read();
    QCOMPARE(m_library.questions(),
             (QStringList{QString(), numbered(0), QStringLiteral("如何？")}));
    QCOMPARE(m_library.answers().size(), 3);
}

void TestLocalLibrary::secondReading_addsWhatIsNew()
{
    write(0, numbered(0), QStringLiteral("零"));
    m_library.read();
    write(1, numbered(1), QStringLiteral("一"));
    m_library.read();
    QCOMPARE(m_library.questions(), (QStringList{QString(), numbered(0), numbered(1)}));
}

void TestLocalLibrary::sameQuestionWithAnotherAnswer_isKept()
{
    write(0, numbered(0), QStringLiteral("零"));
    write(1, numbered(0), QStringLiteral("一"));
    m_library.read();
    QCOMPARE(m_library.questions(), (QStringList{QString(), numbered(0), numbered(0)}));
}

void TestLocalLibrary::sameRecordInTwoFiles_isReadOnce()
{
    write(0, numbered(0), QStringLiteral("零"));
    write(1, numbered(0), QStringLiteral("零"));
    m_library.read();
    QCOMPARE(m_library.questions(), (QStringList{QString(), numbered(0)}));
}

QTEST_GUILESS_MAIN(TestLocalLibrary)
#include "tst_locallibrary.moc"
