#pragma once

#include <QObject>
#include <QString>

/// Diagnoses the user's network. Despite its name it has no thread of its own: every operation
/// blocks the calling thread, up to two seconds a probe (one for the ping program to start, one for
/// its answer). It keeps nothing between runs, so any thread may use it.
class NetStateTestThread : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(NetStateTestThread)

public:
    /// Where the user's machine is, as InternalExternal_netJudg() tells.
    enum NetJudgement {
        InternalNetwork = 0, ///< the maker's host that answered has an address in 10.0.0.0/8
        ExternalNetwork = 1, ///< online, outside the maker's network
        NoNetwork = 2
    };

    explicit NetStateTestThread(QObject *parent = nullptr);

    /// Runs the whole diagnosis, at most seven probes and the VPN client's library, and emits
    /// netStateInfo_signal(). Meant for a worker thread.
    void netStateInfo_get();

    /// Pings \a host \a count times with the system's "ping" and waits \a count seconds at most.
    /// When it answers, fills \a address, \a averageMs (not null) and, unless null, \a lossPercent
    /// as parsePingOutput() reads them; otherwise leaves them alone and returns false.
    static bool Ping(QString host, QString &address, int *averageMs, int count, int *lossPercent);

    /// The network judgement, a NetJudgement, from at most five probes. Called on the GUI thread,
    /// which does not respond meanwhile: about five seconds when nothing answers.
    int InternalExternal_netJudg();

    /// The state of the account that the installed VPN client reports, unchanged; -1 when the
    /// client's library is missing.
    int NORVIK_logState();

signals:
    /// The findings of one diagnosis: a NetJudgement, 1 or 0 for whether the IT host and the
    /// cloud-desktop host answered, and NORVIK_logState(). Emitted on the thread that runs it.
    void netStateInfo_signal(int netJudg, int localState, int desktopServerState, int norvikState);
};
