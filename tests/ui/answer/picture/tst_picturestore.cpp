#include "tests/support/logcapture.h"
#include "ui/answer/picture/picturestore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#endif

/// What is kept of pictures, in memory and in a file.
class TestPictureStore : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pictures_areReadByTheirNumbers();
    void newestPictures_areInMemory_theOthersInAFile();
    void pictureLargerThanTheMemory_isInTheFile();
    void droppedPicture_isEmpty();
    void file_hasNoName_andIsTheUsersAlone();
    void fileThatIsCut_givesEmptyPictures();
    void folderWithoutAFile_keepsPicturesInMemory_withOneWarning();
    void fullDisc_keepsPicturesInMemory_withOneWarning_untilThereIsRoom();
    void fullFile_keepsPicturesInMemory();
    void memoryWithoutAFile_givesUpTheOldest();
    void leftFiles_areRemoved();
    void filesOfOthers_areLeft();
    void readers_onOtherThreads();

private:
    [[nodiscard]] static QByteArray picture(int number)
    {
        return QByteArray(int(size), char(number));
    }
    void fill(PictureStore &store, int count) const;
    [[nodiscard]] QStringList files() const;
#ifdef Q_OS_LINUX
    /// The descriptors of this process of files in the folder, whose names have gone.
    [[nodiscard]] QVector<int> descriptors() const;
#endif
    void make(const QString &name) const;

    static constexpr qint64 size = 1000; // bytes of a picture

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestPictureStore::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestPictureStore::cleanup()
{
    m_folder.reset();
}

void TestPictureStore::fill(PictureStore &store, int count) const
{
    for (int number = 0; number < count; ++number) {
        store.add(picture(number));
    }
}

QStringList TestPictureStore::files() const
{
    return QDir(m_folder->path())
        .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System | QDir::Hidden);
}

#ifdef Q_OS_LINUX
QVector<int> TestPictureStore::descriptors() const
{
    QVector<int> found;
    const QDir all(QStringLiteral("/proc/self/fd"));
    const auto entries = all.entryList(QDir::Files | QDir::System);
    for (const QString &entry : entries) {
        if (QFile::symLinkTarget(all.filePath(entry)).startsWith(m_folder->path())) {
            found.append(entry.toInt());
        }
    }
    return found;
}
#endif

void TestPictureStore::make(const QString &name) const
{
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("data");
}

void TestPictureStore::pictures_areReadByTheirNumbers()
{
    PictureStore store(m_folder->path());
    store.add("a");
    store.add(QByteArray());
    store.add("c");
    QCOMPARE(store.data(0), QByteArray("a"));
    QCOMPARE(store.data(1), QByteArray());
    QCOMPARE(store.data(2), QByteArray("c"));
    QCOMPARE(files(), QStringList()); // nothing needs one
}

void TestPictureStore::newestPictures_areInMemory_theOthersInAFile()
{
    PictureStore store(m_folder->path(), {5 * size, 1000 * size, 0});
    fill(store, 100);
    QCOMPARE(store.bytesInMemory(), 5 * size);
    for (int number = 0; number < 100; ++number) {
        QCOMPARE(store.data(number), picture(number));
    }
    QCOMPARE(store.bytesInMemory(), 5 * size);
}

void TestPictureStore::pictureLargerThanTheMemory_isInTheFile()
{
    PictureStore store(m_folder->path(), {size / 2, 1000 * size, 0});
    fill(store, 2);
    QCOMPARE(store.bytesInMemory(), qint64(0));
    QCOMPARE(store.data(1), picture(1));
}

void TestPictureStore::droppedPicture_isEmpty()
{
    PictureStore store(m_folder->path(), {size, 1000 * size, 0});
    fill(store, 3);
    store.drop(0); // in the file
    store.drop(2);
    QCOMPARE(store.data(0), QByteArray());
    QCOMPARE(store.data(1), picture(1));
    QCOMPARE(store.data(2), QByteArray());
    QCOMPARE(store.bytesInMemory(), qint64(0));
    fill(store, 3);
    QCOMPARE(store.data(5), picture(2));
}

void TestPictureStore::file_hasNoName_andIsTheUsersAlone()
{
#ifdef Q_OS_LINUX
    PictureStore store(m_folder->path(), {0, 1000 * size, 0});
    fill(store, 3);
    QCOMPARE(files(), QStringList()); // so it goes with the process, however that ends
    QCOMPARE(descriptors().size(), 1);
    struct stat info = {};
    QCOMPARE(::fstat(descriptors().first(), &info), 0);
    QCOMPARE(info.st_mode & 07777, mode_t(0600));
    QCOMPARE(info.st_nlink, nlink_t(0));
    QCOMPARE(info.st_size, off_t(3 * size));
#else
    PictureStore store(m_folder->path(), {0, 1000 * size, 0});
    fill(store, 3);
    QCOMPARE(files().size(), 1);
    QFile file(m_folder->filePath(files().first()));
    QVERIFY(!file.open(QIODevice::ReadOnly)); // shared with nobody
    QVERIFY(!file.remove());
    QCOMPARE(store.data(0), picture(0));
#endif
}

void TestPictureStore::fileThatIsCut_givesEmptyPictures()
{
#ifdef Q_OS_LINUX
    PictureStore store(m_folder->path(), {0, 1000 * size, 0});
    fill(store, 3);
    QCOMPARE(::ftruncate(descriptors().first(), 3 * size / 2), 0);
    QCOMPARE(store.data(0), picture(0));
    QCOMPARE(store.data(1), QByteArray());
    QCOMPARE(store.data(2), QByteArray());
    store.add(picture(3));
    QCOMPARE(store.data(3), picture(3));
#else
    QSKIP("Nobody else can open the file there.");
#endif
}

void TestPictureStore::folderWithoutAFile_keepsPicturesInMemory_withOneWarning()
{
    const LogCapture log;
    PictureStore store(m_folder->filePath(QStringLiteral("none")), {size, 1000 * size, 9 * size});
    fill(store, 5);
    QCOMPARE(store.bytesInMemory(), 5 * size);
    QCOMPARE(store.data(0), picture(0));
    QCOMPARE(log.linesWith(QStringLiteral("warning: pictures stay in memory, their temporary file "
                                          "cannot be written: "))
                 .size(),
             1);
    QCOMPARE(log.lines().size(), 1);
}

void TestPictureStore::fullDisc_keepsPicturesInMemory_withOneWarning_untilThereIsRoom()
{
#ifdef Q_OS_LINUX
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto allow = [&before](rlim_t bytes) {
        const rlimit limit{bytes, before.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    };
    const LogCapture log;
    PictureStore store(m_folder->path(), {size, 1000 * size, 100 * size});
    allow(2 * size + size / 2); // the third is cut off
    fill(store, 8);
    allow(before.rlim_cur);
    QCOMPARE(store.bytesInMemory(), 6 * size);
    QCOMPARE(log.lines().size(), 1);
    store.add(picture(8));
    QCOMPARE(store.bytesInMemory(), size);
    for (int number = 0; number < 9; ++number) {
        QCOMPARE(store.data(number), picture(number));
    }
    QCOMPARE(log.lines().size(), 1);
#else
    QSKIP("only Linux lets a process limit the size of its files");
#endif
}

void TestPictureStore::fullFile_keepsPicturesInMemory()
{
    const LogCapture log;
    PictureStore store(m_folder->path(), {size, 3 * size, 100 * size});
    fill(store, 9);
    QCOMPARE(store.bytesInMemory(), 6 * size);
    QCOMPARE(store.data(4), picture(4));
    QCOMPARE(log.lines().size(), 1);
}

void TestPictureStore::memoryWithoutAFile_givesUpTheOldest()
{
    const LogCapture log;
    PictureStore store(m_folder->filePath(QStringLiteral("none")), {size, 1000 * size, 3 * size});
    fill(store, 9);
    QCOMPARE(store.bytesInMemory(), 3 * size);
    QCOMPARE(store.data(5), QByteArray());
    QCOMPARE(store.data(6), picture(6));
    QCOMPARE(log.lines().size(), 1);
}

void TestPictureStore::leftFiles_areRemoved()
{
    make(QStringLiteral("miravel-pictures-a1b2c3"));
    removeLeftScratchFiles(m_folder->path());
    QCOMPARE(files(), QStringList());
}

void TestPictureStore::filesOfOthers_areLeft()
{
    QStringList names{QStringLiteral("elsewhere"), QStringLiteral("miravel-pictures-folder"),
                      QStringLiteral("pictures-miravel-pictures-1")};
    const QString capitals = QStringLiteral("Miravel-Pictures-a1b2c3");
    make(names.first());
    make(names.last());
    make(capitals);
    QVERIFY(QDir(m_folder->path()).mkdir(names.at(1)));
#ifndef Q_OS_WIN
    const QString link = QStringLiteral("miravel-pictures-link");
    QVERIFY(QFile::link(m_folder->filePath(names.first()), m_folder->filePath(link)));
    names.insert(1, link);
#endif
    names.append(capitals);
    names.sort();
    PictureStore store(m_folder->path(), {0, 1000 * size, 0}); // of a living process
    fill(store, 3);
    removeLeftScratchFiles(m_folder->path());
    QStringList left = files();
    left.sort();
#ifdef Q_OS_WIN
    QCOMPARE(left.size(), names.size() + 1);
#else
    QCOMPARE(left, names);
#endif
    QCOMPARE(store.data(0), picture(0));
}

void TestPictureStore::readers_onOtherThreads()
{
    constexpr int count = 200;
    PictureStore store(m_folder->path(), {5 * size, 1000 * size, 0});
    store.add(picture(0));
    std::atomic<int> wrong{0};
    std::atomic<int> added{1};
    constexpr int readerCount = 3;
    std::vector<std::thread> readers;
    readers.reserve(readerCount);
    for (int reader = 0; reader < readerCount; ++reader) {
        readers.emplace_back([&store, &wrong, &added] {
            for (int round = 0; round < count; ++round) {
                const int number = round % added;
                wrong += store.data(number) == picture(number) ? 0 : 1;
            }
        });
    }
    for (int number = 1; number < count; ++number) {
        store.add(picture(number));
        added = number + 1;
    }
    for (std::thread &reader : readers) {
        reader.join();
    }
    QCOMPARE(wrong.load(), 0);
}

QTEST_GUILESS_MAIN(TestPictureStore)
#include "tst_picturestore.moc"
