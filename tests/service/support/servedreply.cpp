#include "tests/service/support/servedreply.h"

namespace {

constexpr int missingBytes = 100;

QByteArray reply(const QByteArray &status, int announcedLength, const QByteArray &body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: application/json\r\nContent-Length: "
         + QByteArray::number(announcedLength) + "\r\nConnection: close\r\n\r\n" + body;
}

} // namespace

ServedReply httpReply(const QByteArray &body, const QByteArray &status)
{
    return {reply(status, body.size(), body), false};
}

ServedReply truncatedReply(const QByteArray &body)
{
    return {reply("200 OK", body.size() + missingBytes, body), false};
}

ServedReply droppedReply()
{
    return {};
}

ServedReply droppedInHeaders()
{
    return {"HTTP/1.1 200 OK\r\nContent-Ty", false};
}

ServedReply held(ServedReply reply)
{
    reply.hold = true;
    return reply;
}

ServedReply heldInTheMiddle(const QByteArray &body)
{
    ServedReply halves = held(httpReply(body));
    const int early = halves.bytes.size() - body.size() / 2;
    halves.early = halves.bytes.left(early);
    halves.bytes.remove(0, early);
    return halves;
}
