#include "ui/answer/picture/picturedecoder.h"

#include "app/base/logstream.h"
#include "ui/answer/picture/picturestore.h"

#include <QDir>

#include <algorithm>
#include <system_error>

namespace {

/// Results that the window has not taken yet; no more are made before it does.
constexpr std::size_t mostResults = 32;

} // namespace

PictureDecoder::PictureDecoder(PictureStore &store)
    : m_store(store)
{
}

PictureDecoder::~PictureDecoder()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void PictureDecoder::decodeForRow(int number, bool isAnimated, qreal ratio, Turn turn)
{
    post({isAnimated ? Kind::Animation : Kind::Row, number, ratio}, turn);
}

bool PictureDecoder::isForRow(const Job &job)
{
    return job.kind == Kind::Row || job.kind == Kind::Animation;
}

void PictureDecoder::hurry(int number)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto waiting = std::find_if(m_jobs.begin(), m_jobs.end(), [number](const Job &job) {
        return isForRow(job) && job.number == number;
    });
    if (waiting != m_jobs.end()) {
        std::rotate(m_jobs.begin(), waiting, waiting + 1);
    }
}

void PictureDecoder::decodeWhole(int number, Purpose purpose)
{
    const Kind kind = purpose == Purpose::Preview ? Kind::ForPreview : Kind::ForClipboard;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto isEarlier = [kind](const Job &job) {
            return job.kind == kind;
        };
        m_jobs.erase(std::remove_if(m_jobs.begin(), m_jobs.end(), isEarlier), m_jobs.end());
    }
    post({kind, number, 1}, Turn::First);
}

void PictureDecoder::removeLeftFiles()
{
    post({Kind::LeftFiles, 0, 1}, Turn::Last);
}

void PictureDecoder::post(const Job &job, Turn turn)
{
    startThread();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.insert(turn == Turn::Last ? m_jobs.end() : m_jobs.begin(), job);
    }
    m_changed.notify_all();
}

void PictureDecoder::startThread()
{
    if (m_thread.joinable()) {
        return;
    }
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error &error) {
        // The next job tries again; the rows stay empty meanwhile.
        LOG_WARNING() << "no thread for decoding pictures: " << error.what();
    }
}

void PictureDecoder::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isEnding) {
        if (m_jobs.empty() || m_results.size() >= mostResults) {
            m_changed.wait(lock);
            continue;
        }
        const Job job = m_jobs.front();
        m_jobs.pop_front();
        lock.unlock();
        Result result = resultOf(job);
        lock.lock();
        if (!m_isEnding && job.kind != Kind::LeftFiles) {
            m_results.push_back(std::move(result));
            QMetaObject::invokeMethod(this, &PictureDecoder::deliver, Qt::QueuedConnection);
        }
    }
}

PictureDecoder::Result PictureDecoder::resultOf(const Job &job)
{
    Result result{job, {}};
    if (job.kind == Kind::LeftFiles) {
        removeLeftScratchFiles(QDir::tempPath());
        return result;
    }
    const QByteArray data = m_store.data(job.number);
    if (data.isEmpty()) {
        return result; // known to be none, or given up, by now
    }
    if (isForRow(job)) {
        result.picture = ::decodeForRow(data, job.kind == Kind::Animation, job.ratio, &m_isEnding);
    } else {
        result.picture.shown = withPixmapFormat(decodeImage(data, &m_isEnding));
    }
    return result;
}

/// Tells of one result: each was announced by itself.
void PictureDecoder::deliver()
{
    Result result;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_results.empty()) {
            return;
        }
        result = std::move(m_results.front());
        m_results.pop_front();
    }
    m_changed.notify_all();
    const Job job = result.job;
    if (isForRow(job)) {
        emit rowDecoded(job.number, result.picture);
        return;
    }
    m_whole = std::move(result.picture.shown);
    emit wholeDecoded(job.number,
                      job.kind == Kind::ForPreview ? Purpose::Preview : Purpose::Clipboard);
    m_whole = {};
}
