#include "app/startup/lateicon.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>

/// An icon whose file is read when it is first looked at.
class TestLateIcon : public QObject
{
    Q_OBJECT

private slots:
    void fileIsReadWhenTheIconIsUsed();
    void showsWhatAnOrdinaryIconShows();
    void missingFile_showsNothing();
};

void TestLateIcon::fileIsReadWhenTheIconIsUsed()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("icon.png"));
    const QIcon icon = lateIcon(file);
    QVERIFY(!icon.isNull());
    QImage picture(24, 24, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(file)); // after the icon was made
    QCOMPARE(icon.pixmap(24, 24).toImage().pixelColor(12, 12), QColor(Qt::red));
}

void TestLateIcon::showsWhatAnOrdinaryIconShows()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("icon.png"));
    QImage picture(128, 128, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    QVERIFY(picture.save(file));
    const QIcon late = lateIcon(file);
    QIcon copy;
    copy = late;
    const QIcon ordinary(file);
    QCOMPARE(late.availableSizes(), ordinary.availableSizes());
    QCOMPARE(late.actualSize({256, 256}), ordinary.actualSize({256, 256}));
    QCOMPARE(late.pixmap(32, 32).toImage(), ordinary.pixmap(32, 32).toImage());
    QCOMPARE(copy.pixmap(32, 32).toImage(), ordinary.pixmap(32, 32).toImage());
}

void TestLateIcon::missingFile_showsNothing()
{
    const QIcon icon = lateIcon(QStringLiteral(":/nothing.png"));
    QVERIFY(icon.pixmap(16, 16).isNull());
    QVERIFY(icon.availableSizes().isEmpty());
}

QTEST_MAIN(TestLateIcon)

#include "tst_lateicon.moc"
