#include "app/base/loghandler.h"
#include "tests/app/base/support/logfolder.h"

#include <QDateTime>
#include <QTest>

/// The form of one line of the log.
class TestLogLines : public QObject
{
    Q_OBJECT

private slots:
    void sourceFile_isCutAtTheLastBackslashOnly_data();
    void sourceFile_isCutAtTheLastBackslashOnly();
    void line_hasTheFixedForm();
    void lineWithoutContext_hasAnEmptyFileAndLineZero();
    void time_isWrittenWith24HoursAndLeadingZeros();
    void placeMarkersInTheMessage_stay();
    void placeMarkerInTheFileName_isFilledByTheLaterValue();
};

void TestLogLines::sourceFile_isCutAtTheLastBackslashOnly_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    const QString slashes = QStringLiteral("EnvironmentalTest/netstatetestthread.cpp");
    QTest::newRow("backslashes") << QStringLiteral("D:\\build\\src\\main.cpp")
                                 << QStringLiteral("main.cpp");
    QTest::newRow("slashes") << slashes << slashes;
    QTest::newRow("both") << QStringLiteral("D:\\build\\src/main.cpp")
                          << QStringLiteral("src/main.cpp");
    QTest::newRow("bare") << QStringLiteral("main.cpp") << QStringLiteral("main.cpp");
    QTest::newRow("backslash at the end") << QStringLiteral("D:\\build\\") << QString();
    QTest::newRow("empty") << QString() << QString();
}

void TestLogLines::sourceFile_isCutAtTheLastBackslashOnly()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QVERIFY(sourceFileName(path) == name);
    const QByteArray file = path.toUtf8();
    const QMessageLogContext context(file.constData(), exampleContext().line, "", "default");
    QCOMPARE(formatLogLine(QtInfoMsg, QStringLiteral("now"), context, QString()),
             QStringLiteral("Info:[now ") + name + QStringLiteral("  line: 82]: "));
}

void TestLogLines::line_hasTheFixedForm()
{
    QCOMPARE(formatLogLine(QtInfoMsg, QStringLiteral("2024-03-05 09:15:02"), exampleContext(),
                           QStringLiteral("Caller Type: vdi")),
             QStringLiteral("Info:[2024-03-05 09:15:02 main.cpp  line: 82]: Caller Type: vdi"));
}

void TestLogLines::lineWithoutContext_hasAnEmptyFileAndLineZero()
{
    QCOMPARE(formatLogLine(QtWarningMsg, QStringLiteral("2024-03-05 09:15:02"),
                           QMessageLogContext(), QStringLiteral("text")),
             QStringLiteral("Warning:[2024-03-05 09:15:02   line: 0]: text"));
}

void TestLogLines::time_isWrittenWith24HoursAndLeadingZeros()
{
    const QDate date(2024, 3, 5);
    QCOMPARE(logTimeText(QDateTime(date, QTime(9, 5, 2, 999))),
             QStringLiteral("2024-03-05 09:05:02"));
    QCOMPARE(logTimeText(QDateTime(date, QTime(21, 0))), QStringLiteral("2024-03-05 21:00:00"));
    QCOMPARE(logTimeText(QDateTime(date, QTime(0, 0))), QStringLiteral("2024-03-05 00:00:00"));
}

void TestLogLines::placeMarkersInTheMessage_stay()
{
    const QString message = QStringLiteral("%1 100% %2%3 %4 %% %L1 %99");
    const QString line = formatLogLine(QtInfoMsg, QStringLiteral("now"), exampleContext(), message);
    QCOMPARE(line, QStringLiteral("Info:[now main.cpp  line: 82]: ") + message);
}

void TestLogLines::placeMarkerInTheFileName_isFilledByTheLaterValue()
{
    const QMessageLogContext context("%4.cpp", exampleContext().line, "", "default");
    QCOMPARE(formatLogLine(QtInfoMsg, QStringLiteral("now"), context, QStringLiteral("text")),
             QStringLiteral("Info:[now text.cpp  line: 82]: text"));
}

QTEST_GUILESS_MAIN(TestLogLines)
#include "tst_loglines.moc"
