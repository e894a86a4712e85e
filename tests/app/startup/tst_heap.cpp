#include "app/startup/heap.h"

#include <QTest>

#include <malloc.h>

#include <cstdlib>
#include <memory>

/// Large blocks have memory of their own, which the system has back as soon as they are freed.
class TestHeap : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { giveLargeBlocksBack(); }
    void blockOfAMebibyte_isMapped();
    void smallerBlock_isNot();
    void afterAHugeBlock_theBoundIsTheSame();
};

namespace {

constexpr std::size_t mebibyte = 1024UL * 1024;

struct Freeing
{
    void operator()(void *block) const { std::free(block); }
};

/// Whether a block of this many bytes is mapped by itself.
bool isMapped(std::size_t bytes)
{
    const std::size_t before = mallinfo2().hblks;
    const std::unique_ptr<void, Freeing> block(std::malloc(bytes));
    *static_cast<volatile char *>(block.get()) = 1; // or the compiler leaves the block out
    return mallinfo2().hblks > before;
}

} // namespace

void TestHeap::blockOfAMebibyte_isMapped()
{
    QVERIFY(isMapped(mebibyte));
}

void TestHeap::smallerBlock_isNot()
{
    constexpr std::size_t header = 64; // the heap's own bytes count, too
    QVERIFY(!isMapped(mebibyte - header));
}

void TestHeap::afterAHugeBlock_theBoundIsTheSame()
{
    QVERIFY(isMapped(16 * mebibyte)); // freeing it would raise the usual bound
    QVERIFY(isMapped(mebibyte));
}

QTEST_APPLESS_MAIN(TestHeap)
#include "tst_heap.moc"
