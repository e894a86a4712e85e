#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

/// A running demo service with its ports file and log in a folder of its own. The service ends with
/// the object.
class DemoProcess
{
public:
    DemoProcess();
    ~DemoProcess();
    Q_DISABLE_COPY_MOVE(DemoProcess)

    /// Starts the service with HTTP and HTTPS on free ports and the shipped knowledge file, and
    /// waits until it listens.
    bool start(const QStringList &more = {});

    /// Asks the service to end and returns its exit status; -1 if it crashed or took over 10 s.
    int stop();

    bool isRunning() const;

    /// How many threads the service has now, from /proc.
    int threadCount() const;

    int httpPort() const { return m_httpPort; }
    QUrl httpUrl(const QString &path) const;
    QUrl httpsUrl(const QString &path) const;

    /// The lines that the service wrote so far.
    QStringList logLines() const;

    /// The last line of the log.
    QString lastLogLine() const;

    /// Sets a fault by the control endpoint; empty when that worked, else the answer.
    QByteArray setFault(const QJsonObject &fault);

    /// The recorded requests as the control endpoint shows them.
    QByteArray history();

    /// Runs the program until it ends by itself; its exit status, or -1. `error` gets its
    /// complaint.
    static int runToEnd(const QStringList &arguments, QString &error);

    /// The knowledge file in the source folder.
    static QString knowledgeFile();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    int m_httpPort = 0;
    int m_httpsPort = 0;
};
