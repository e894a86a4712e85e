#include "fuzz/support/target.h"

#include <QDir>
#include <QFile>
#include <QTest>

/// Each input that is kept for a fuzz target does what it must. A row is the name of its file.
class TestReplay : public QObject
{
    Q_OBJECT

private slots:
    void seed_data();
    void seed();
};

void TestReplay::seed_data()
{
    QTest::addColumn<QByteArray>("input");
    const QDir folder(QStringLiteral(MIRAVEL_SEEDS));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    QVERIFY(!names.isEmpty());
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTest::newRow(qUtf8Printable(name)) << file.readAll();
    }
}

void TestReplay::seed()
{
    QFETCH(QByteArray, input);
    runTarget(input); // ends the program where it fails
}

QTEST_MAIN(TestReplay)
#include "replay.moc"
