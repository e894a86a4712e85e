#pragma once

#include <QByteArray>
#include <QNetworkReply>
#include <QObject>

/// The longest body of a reply that is read, in bytes, as it is sent and after its compression is
/// undone. The longest answer that is shown, with its pictures, is far shorter.
inline constexpr int longestReplyBody = 128 * 1024 * 1024;

/// The body of one reply. A reply that goes on beyond longestReplyBody is given up, so that no
/// service can fill the memory. Made before the reply's first byte, used on the reply's thread and
/// destroyed before the reply.
class ReplyBody final
{
    Q_DISABLE_COPY_MOVE(ReplyBody)

public:
    explicit ReplyBody(QNetworkReply &reply);

    /// Takes the bytes of the finished reply, its compression undone. Nothing when there are too
    /// many, which is logged.
    [[nodiscard]] QByteArray take();

    /// What went wrong, known after take(): the reply's own error, OperationCanceledError for a
    /// body that is too long, ProtocolFailure for one whose compression is broken.
    [[nodiscard]] QNetworkReply::NetworkError error() const { return m_error; }

private:
    void giveUpWhenTooLong();
    [[nodiscard]] QByteArray withoutCompression(const QByteArray &body);
    void reportTooLong();

    QNetworkReply &m_reply;
    QNetworkReply::NetworkError m_error = QNetworkReply::NoError;
    bool m_tooLong = false;
    QObject m_watch; // the connections end with it
};
