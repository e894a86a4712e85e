#include "service/request/replybody.h"

#include "app/base/logstream.h"
#include "service/request/inflate.h"

ReplyBody::ReplyBody(QNetworkReply &reply)
    : m_reply(reply)
{
    QObject::connect(&reply, &QNetworkReply::readyRead, &m_watch, [this] { giveUpWhenTooLong(); });
}

void ReplyBody::giveUpWhenTooLong()
{
    if (!m_tooLong && m_reply.bytesAvailable() > longestReplyBody) {
        m_tooLong = true;
        m_reply.abort();
    }
}

QByteArray ReplyBody::take()
{
    giveUpWhenTooLong();
    m_error = m_reply.error();
    if (m_tooLong) {
        reportTooLong();
        return {};
    }
    const QByteArray body = m_reply.readAll();
    return isCompression(m_reply.rawHeader("Content-Encoding")) ? withoutCompression(body) : body;
}

QByteArray ReplyBody::withoutCompression(const QByteArray &body)
{
    Inflated content = inflated(body, longestReplyBody);
    if (content.end == InflateEnd::TooLong) {
        reportTooLong();
    } else if (content.end == InflateEnd::Broken && m_error == QNetworkReply::NoError) {
        m_error = QNetworkReply::ProtocolFailure;
    }
    return content.bytes;
}

void ReplyBody::reportTooLong()
{
    m_error = QNetworkReply::OperationCanceledError;
    LOG_WARNING() << "reply is longer than " << longestReplyBody << " bytes, it is given up.";
}
