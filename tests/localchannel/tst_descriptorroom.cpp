#include "localchannel/descriptorroom.h"
#include "tests/localchannel/support/descriptorlimit.h"

#include <QTest>

#include <cstdio>

/// Whether a process may open many more descriptors than it has.
class TestDescriptorRoom : public QObject
{
    Q_OBJECT

private slots:
    void withinTheLimit_thereIsRoom();
#ifdef Q_OS_LINUX
    void limit_data();
    void limit();
    void withoutALimit_thereIsRoom();
    void nothing_isLeftOpen();
#endif
};

void TestDescriptorRoom::withinTheLimit_thereIsRoom()
{
    QVERIFY(hasDescriptorsToSpare(fileno(stderr)));
}

#ifdef Q_OS_LINUX
void TestDescriptorRoom::limit_data()
{
    QTest::addColumn<int>("most");
    QTest::addColumn<bool>("isRoom");
    const int next = DescriptorLimit::nextOne();
    QTest::newRow("less than half is taken") << 2 * (next + 1) << true;
    QTest::newRow("half is taken") << 2 * next + 1 << false;
    QTest::newRow("the last one is free") << next + 1 << false;
    QTest::newRow("all are taken") << next << false;
}

void TestDescriptorRoom::limit()
{
    QFETCH(int, most);
    QFETCH(bool, isRoom);
    bool found = false;
    {
        const DescriptorLimit limit(most);
        found = hasDescriptorsToSpare(STDERR_FILENO);
    }
    QCOMPARE(found, isRoom);
}

void TestDescriptorRoom::withoutALimit_thereIsRoom()
{
    rlimit limit = {};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const DescriptorLimit most(static_cast<int>(qMin<rlim_t>(limit.rlim_max, 1'000'000)));
    QVERIFY(hasDescriptorsToSpare(STDERR_FILENO));
}

void TestDescriptorRoom::nothing_isLeftOpen()
{
    const int before = DescriptorLimit::nextOne();
    QVERIFY(hasDescriptorsToSpare(STDERR_FILENO));
    QCOMPARE(DescriptorLimit::nextOne(), before);
}
#endif

QTEST_GUILESS_MAIN(TestDescriptorRoom)
#include "tst_descriptorroom.moc"
