#include "ui/mainwindow/hotquestions/hotfetch.h"

#include "service/request/hotqueststhread.h"

#include <QDeadlineTimer>

namespace {

constexpr int stopLimitMs = 2000;

} // namespace

HotFetch::~HotFetch()
{
    for (const QPointer<HotQuestsThread> &worker : qAsConst(m_workers)) {
        if (!worker.isNull()) {
            worker->disconnect(this);
            worker->quit(); // ends the waits inside the worker as well
        }
    }
    const QDeadlineTimer deadline(stopLimitMs);
    for (const QPointer<HotQuestsThread> &worker : qAsConst(m_workers)) {
        if (!worker.isNull() && worker->wait(deadline)) {
            delete worker;
        }
        // One that still runs is left alone: destroying a running thread would abort the program.
    }
}

void HotFetch::start()
{
    // No owner: a worker deletes itself when it has finished.
    const QPointer<HotQuestsThread> worker(new HotQuestsThread(this));
    m_workers.append(worker);
    connect(worker, &HotQuestsThread::hotQuests_signal, this,
            [this, worker](const QJsonArray &questions) { finish(worker, questions); });
    connect(worker, &HotQuestsThread::finished, worker, &QObject::deleteLater);
    worker->start();
}

void HotFetch::finish(const QPointer<HotQuestsThread> &worker, const QJsonArray &questions)
{
    if (!worker.isNull()) {
        worker->quit();
        worker->wait(); // it has sent its result and is about to end
    }
    m_workers.removeAll(worker);
    emit fetched(questions);
}
