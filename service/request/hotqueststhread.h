#pragma once

#include "service/request/idpinterface.h"

#include <QJsonArray>
#include <QThread>

/// Fetches the hot questions once, away from the GUI thread: made on the GUI thread, started, and
/// connected by its maker from finished() to deleteLater(). Its pointer is not to be used after
/// finished(). quit() cuts the fetch short from any thread, which then reports an empty list.
class HotQuestsThread : public QThread
{
    Q_OBJECT
    Q_DISABLE_COPY(HotQuestsThread)

public:
    /// Does not make \a parent its owner: a fetch may outlive the window, and a thread that still
    /// runs must not be destroyed.
    explicit HotQuestsThread(QObject *parent);

signals:
    /// The questions of the reply, empty on any failure. Emitted once, on the worker thread.
    void hotQuests_signal(QJsonArray questions);

protected:
    void run() override;

private:
    IdpInterface m_idpInterface; // used by the worker thread alone once it runs
};
