#pragma once

#include <QJsonArray>
#include <QObject>
#include <QPointer>
#include <QVector>

class HotQuestsThread;

/// Fetches hot questions without blocking the GUI thread, on which it lives. Fetches may overlap:
/// each has a worker of its own and tells its own result.
class HotFetch : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(HotFetch)

public:
    HotFetch() = default;

    /// Tells the workers that still fetch to stop, and waits at most 2 s for them.
    ~HotFetch() override;

    /// Begins a fetch.
    void start();

signals:
    /// A fetch has ended, and its worker's run with it; empty on any failure.
    void fetched(const QJsonArray &questions);

private:
    void finish(const QPointer<HotQuestsThread> &worker, const QJsonArray &questions);

    QVector<QPointer<HotQuestsThread>> m_workers;
};
