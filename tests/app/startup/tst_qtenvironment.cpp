#include "app/startup/qtenvironment.h"

#include <QTest>

/// Which variables of the caller's environment survive.
class TestQtEnvironment : public QObject
{
    Q_OBJECT

private slots:
    void capitalsAnywhereInTheName_areRemoved_data();
    void capitalsAnywhereInTheName_areRemoved();
    void otherNames_areKept_data();
    void otherNames_areKept();
    void emptyValue_isRemovedToo();
    void nameOutsideAscii_isRemovedToo();
    void nothingToRemove_changesNothing();
};

void TestQtEnvironment::capitalsAnywhereInTheName_areRemoved_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("scale factor") << QByteArray("QT_SCALE_FACTOR");
    QTest::newRow("platform") << QByteArray("QT_QPA_PLATFORM");
    QTest::newRow("only these letters") << QByteArray("QT");
    QTest::newRow("in the middle") << QByteArray("MIRAVEL_QT_TEST");
    QTest::newRow("at the end") << QByteArray("MIRAVELQT");
    QTest::newRow("part of a word") << QByteArray("MQTT_BROKER");
    QTest::newRow("beside small letters") << QByteArray("qt_or_QT");
}

void TestQtEnvironment::capitalsAnywhereInTheName_areRemoved()
{
    QFETCH(QByteArray, name);
    QVERIFY(qputenv(name.constData(), "2"));
    clearQtEnvironment();
    QVERIFY(!qEnvironmentVariableIsSet(name.constData()));
}

void TestQtEnvironment::otherNames_areKept_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("small letters") << QByteArray("qt_scale_factor") << QByteArray("2");
    QTest::newRow("one small letter") << QByteArray("Qt_SCALE") << QByteArray("2");
    QTest::newRow("letters apart") << QByteArray("Q_T") << QByteArray("2");
    QTest::newRow("only in the value") << QByteArray("MIRAVEL_TEST") << QByteArray("QT_5");
}

void TestQtEnvironment::otherNames_areKept()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, value);
    QVERIFY(qputenv(name.constData(), value));
    clearQtEnvironment();
    QCOMPARE(qgetenv(name.constData()), value);
    qunsetenv(name.constData());
}

void TestQtEnvironment::emptyValue_isRemovedToo()
{
#ifdef Q_OS_WIN
    QSKIP("Windows knows no variable with an empty value.");
#else
    QVERIFY(qputenv("QT_EMPTY", ""));
    clearQtEnvironment();
    QVERIFY(!qEnvironmentVariableIsSet("QT_EMPTY"));
#endif
}

void TestQtEnvironment::nameOutsideAscii_isRemovedToo()
{
    const QByteArray name = QStringLiteral("\u53d8\u91cf_QT").toLocal8Bit();
    if (name.contains('?')) {
        QSKIP("The system's locale has no Chinese characters.");
    }
    QVERIFY(qputenv(name.constData(), "1"));
    clearQtEnvironment();
    QVERIFY(!qEnvironmentVariableIsSet(name.constData()));
}

void TestQtEnvironment::nothingToRemove_changesNothing()
{
    clearQtEnvironment();
    const QByteArray path = qgetenv("PATH");
    clearQtEnvironment();
    QCOMPARE(qgetenv("PATH"), path);
}

QTEST_GUILESS_MAIN(TestQtEnvironment)
#include "tst_qtenvironment.moc"
