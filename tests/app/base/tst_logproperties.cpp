#include "app/base/loghandler.h"
#include "tests/app/base/support/logfolder.h"
#include "tests/support/generator.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

/// Which messages reach the log, and when it is moved away, over generated levels, messages and
/// lengths.
class TestLogProperties : public QObject
{
    Q_OBJECT

private slots:
    void messages_areWrittenFromTheirLevelOn();
    void sourceFileName_isBehindTheLastBackslash();
    void log_isMovedAwayAtTenMebibytes();
};

namespace {

struct Type
{
    const char *prefix;
    QtMsgType type;
    int level;
};

constexpr Type types[] = {{"Debug:", QtDebugMsg, 1},
                          {"Info:", QtInfoMsg, 2},
                          {"Warning:", QtWarningMsg, 3},
                          {"Critical:", QtCriticalMsg, 4},
                          {"Fatal:", QtFatalMsg, 5}};

const Type &typeFrom(Generator &generator)
{
    return types[generator.between(0, 4)];
}

/// What a name in the settings stands for.
int plainThreshold(const QString &name)
{
    const QStringList names{QStringLiteral("debug"), QStringLiteral("info"), QStringLiteral("warn"),
                            QStringLiteral("error"), QStringLiteral("fatal")};
    const int place = names.indexOf(name.toLower());
    return place < 0 ? 4 : place + 1;
}

QString inAnyCase(QString name, Generator &generator)
{
    for (QChar &letter : name) {
        letter = generator.oneIn(2) ? letter.toUpper() : letter.toLower();
    }
    return name;
}

} // namespace

void TestLogProperties::messages_areWrittenFromTheirLevelOn()
{
    Generator generator;
    const LogFolder log;
    const QStringList names{QStringLiteral("debug"),   QStringLiteral("info"),
                            QStringLiteral("warn"),    QStringLiteral("error"),
                            QStringLiteral("fatal"),   QStringLiteral("warning"),
                            QStringLiteral("debug "),  QString(),
                            QStringLiteral("critical")};
    for (int i = 0; i < 3000; ++i) {
        const QString name = inAnyCase(generator.oneOf(names), generator);
        initLogSetting(name, log.base());
        const Type &type = typeFrom(generator);
        QString text = generator.text(12);
        if (generator.oneIn(4)) {
            text += generator.oneOf({QStringLiteral("Unknown property"),
                                     QStringLiteral("unknown property"),
                                     QStringLiteral("Unknown  property")})
                  + generator.text(3);
        }
        const QString before = generator.oneIn(5) ? text : QString();
        const QString message = before.isEmpty() ? text : text + QChar(QChar::Null) + text;

        QFile::remove(log.live());
        logMessageHandler(type.type, exampleContext(), message);
        const bool expected = type.level >= plainThreshold(name)
                           && !message.contains(QLatin1String("Unknown property"));
        const QByteArray written = contentOf(log.live());
        QCOMPARE(!written.isEmpty(), expected);
        if (expected) {
            QVERIFY(written.startsWith(QByteArray(type.prefix) + '['));
            QVERIFY(written.endsWith(" main.cpp  line: 82]: " + text.toLocal8Bit() + "\r\n"));
            const auto frame = QByteArray(type.prefix).size()
                             + int(qstrlen("[2024-03-05 09:15:02 main.cpp  line: 82]: \r\n"));
            QCOMPARE(written.size(), frame + text.toLocal8Bit().size());
        }
    }
}

void TestLogProperties::sourceFileName_isBehindTheLastBackslash()
{
    Generator generator;
    const QStringList pieces{QStringLiteral("src"), QStringLiteral("\\"), QStringLiteral("/"),
                             QStringLiteral("main.cpp"), QStringLiteral("D:")};
    for (int i = 0; i < 2000; ++i) {
        QString path;
        for (int left = generator.between(0, 6); left > 0; --left) {
            path += generator.oneOf(pieces);
        }
        QCOMPARE(sourceFileName(path), path.split(QLatin1Char('\\')).last());
    }
}

void TestLogProperties::log_isMovedAwayAtTenMebibytes()
{
    Generator generator;
    const LogFolder log;
    initLogSetting(QStringLiteral("DEBUG"), log.base());
    qint64 live = -1; // bytes; no file
    qint64 backup = -1;
    const auto sizeOf = [](const QString &path) {
        return QFileInfo::exists(path) ? QFileInfo(path).size() : -1;
    };
    for (int i = 0; i < 400; ++i) {
        if (generator.oneIn(3)) {
            // Somewhere about where the next line makes it too long.
            live = tenMebibytes - generator.between(0, 200);
            QVERIFY(makeFile(log.live(), live));
        }
        const QByteArray text(generator.anyOrder(0, 3000), 'x');
        const Type &type = typeFrom(generator);
        logMessageHandler(type.type, exampleContext(), QString::fromLatin1(text));
        const auto line = int(qstrlen(type.prefix))
                        + int(qstrlen("[2024-03-05 09:15:02 main.cpp  line: 82]: \r\n"))
                        + text.size();
        live = qMax<qint64>(live, 0) + line;
        if (live >= tenMebibytes) {
            backup = live;
            live = -1;
        }
        QCOMPARE(sizeOf(log.live()), live);
        QCOMPARE(sizeOf(log.backup()), backup);
    }
}

QTEST_GUILESS_MAIN(TestLogProperties)
#include "tst_logproperties.moc"
