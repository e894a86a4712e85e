#include "ui/style/displayscale.h"
#include "ui/style/sharppictures.h"
#include "ui/style/styles.h"
#include "ui/style/windowsize.h"

#include <QTest>

/// How large things become on a scaled screen, as far as it takes no screen to tell.
class TestDisplayScale : public QObject
{
    Q_OBJECT

private slots:
    void scale_leavesTheWindowInsideTheScreen_data();
    void scale_leavesTheWindowInsideTheScreen();
    void screenThatIsNotScaled_hasStripsOfTheStatedSize();
    void strips_takeTwiceTheirSizeAndBack_data();
    void strips_takeTwiceTheirSizeAndBack();
};

void TestDisplayScale::scale_leavesTheWindowInsideTheScreen_data()
{
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<QSize>("available");
    QTest::addColumn<qreal>("fitting");
    QTest::newRow("not scaled") << 1.0 << QSize(1920, 1040) << 1.0;
    QTest::newRow("room enough") << 1.5 << QSize(1920, 1040) << 1.5;
    QTest::newRow("just room") << 2.0 << QSize(1840, 1280) << 2.0;
    QTest::newRow("too low") << 1.75 << QSize(1920, 1040) << 1.625;
    QTest::newRow("too narrow") << 2.0 << QSize(1150, 2000) << 1.25;
    QTest::newRow("small, not scaled") << 1.0 << QSize(800, 600) << 1.0;
    QTest::newRow("small and scaled") << 1.5 << QSize(800, 600) << 1.0;
    QTest::newRow("scaled down") << 0.9 << QSize(1920, 1040) << 0.9;
    QTest::newRow("nothing free") << 2.0 << QSize(0, 0) << 1.0;
}

void TestDisplayScale::scale_leavesTheWindowInsideTheScreen()
{
    QFETCH(qreal, scale);
    QFETCH(QSize, available);
    QFETCH(qreal, fitting);
    QCOMPARE(fittingScale(scale, available, windowSize), fitting);
}

void TestDisplayScale::screenThatIsNotScaled_hasStripsOfTheStatedSize()
{
    QVERIFY(!anyScreenIsScaled());
    QCOMPARE(styles::spriteRow(QLatin1String("btn-close.png"), 1, 3, 16),
             QStringLiteral("border-image:url(:/Images/btn-close.png) 16 0 16 0;"));
}

void TestDisplayScale::strips_takeTwiceTheirSizeAndBack_data()
{
    QTest::addColumn<QString>("stated");
    QTest::addColumn<QString>("large");
    QTest::newRow("one")
        << QStringLiteral("QPushButton{border-image:url(:/Images/btn-close.png) 16 0 32 0;}")
        << QStringLiteral("QPushButton{border-image:url(:/Images/large/btn-close.png) 32 0 64 0;}");
    QTest::newRow("several") << QStringLiteral(
        "a{b:url(:/Images/x-1.png) 0 0 84 0;}c{d:url(:/Images/x-1.png) 84 0 0 0;}")
                             << QStringLiteral("a{b:url(:/Images/large/x-1.png) 0 0 168 0;}"
                                               "c{d:url(:/Images/large/x-1.png) 168 0 0 0;}");
    const QString whole = QStringLiteral("QLabel{border-image: url(:/Images/icon-user.png);}");
    QTest::newRow("no strip") << whole << whole;
    QTest::newRow("nothing") << QString() << QString();
}

void TestDisplayScale::strips_takeTwiceTheirSizeAndBack()
{
    QFETCH(QString, stated);
    QFETCH(QString, large);
    QCOMPARE(withStripsFor(true, stated), large);
    QCOMPARE(withStripsFor(true, large), large);
    QCOMPARE(withStripsFor(false, large), stated);
    QCOMPARE(withStripsFor(false, stated), stated);
}

QTEST_MAIN(TestDisplayScale)
#include "tst_displayscale.moc"
