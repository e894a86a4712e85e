#pragma once

#include "ui/answer/picture/picturereading.h"

#include <QImage>
#include <QObject>
#include <QSize>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

class PictureStore;

/// Decodes pictures that would keep the window busy, one after another on a thread of its own, so
/// that no more than one of them is ever whole in memory. Lives on the GUI thread.
class PictureDecoder : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(PictureDecoder)

public:
    enum class Turn {
        Last,  ///< after all that wait
        First, ///< before them: somebody is looking
    };

    /// Decodes pictures of \a store, which must live as long as this.
    explicit PictureDecoder(PictureStore &store);

    /// Drops what waits. The picture that is being decoded is given up at the next of its bytes.
    ~PictureDecoder() override;

    /// Decodes picture \a number for its row on a screen of \a ratio, a moving one if
    /// \a isAnimated; rowDecoded() tells of it.
    void decodeForRow(int number, bool isAnimated, qreal ratio, Turn turn);

    /// Decodes picture \a number, which waits for its row, before the others.
    void hurry(int number);

    /// What a picture is decoded whole for.
    enum class Purpose {
        Preview,
        Clipboard,
    };

    /// Decodes all of picture \a number before the others; wholeDecoded() tells of it. One that was
    /// wanted before for the same \a purpose and still waits is not decoded.
    void decodeWhole(int number, Purpose purpose);

    /// The picture that wholeDecoded() tells of, in the format of pixmaps, null when its data are
    /// none; only then, and once.
    [[nodiscard]] QImage takeWhole() { return std::move(m_whole); }

    /// Looks once for temporary files that a crash left, on the same thread.
    void removeLeftFiles();

signals:
    /// Picture \a number is \a picture, with no size when its data are none.
    void rowDecoded(int number, const RowPicture &picture);

    /// Picture \a number can be taken.
    void wholeDecoded(int number, PictureDecoder::Purpose purpose);

private:
    enum class Kind {
        Row,
        Animation, ///< in a row
        ForPreview,
        ForClipboard,
        LeftFiles,
    };

    struct Job
    {
        Kind kind;
        int number;
        qreal ratio; ///< of the screen of the row
    };

    struct Result
    {
        Job job;
        RowPicture picture; ///< of a whole one, all of it
    };

    [[nodiscard]] static bool isForRow(const Job &job);

    void post(const Job &job, Turn turn);
    void startThread();
    void run();
    [[nodiscard]] Result resultOf(const Job &job);
    void deliver();

    PictureStore &m_store;
    std::thread m_thread; // started with the first job
    std::atomic<bool> m_isEnding{false};
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs; // guarded by m_mutex, as the results
    std::deque<Result> m_results;
    QImage m_whole; ///< while it is told of
};
