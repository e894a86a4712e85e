#include "tests/service/support/receivedrequest.h"

namespace {

const QByteArray headEnd("\r\n\r\n");

void readHead(const QByteArray &head, ReceivedRequest &request)
{
    QByteArrayList lines = head.split('\n');
    const QByteArrayList words = lines.takeFirst().trimmed().split(' ');
    request.method = words.value(0);
    request.target = words.value(1);
    request.headers.clear();
    for (const QByteArray &line : qAsConst(lines)) {
        const int colon = line.indexOf(':');
        request.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
    }
}

} // namespace

QByteArray ReceivedRequest::header(const QByteArray &name) const
{
    for (const auto &field : headers) {
        if (field.first == name) {
            return field.second;
        }
    }
    return {};
}

QByteArrayList ReceivedRequest::headerNames() const
{
    QByteArrayList names;
    for (const auto &field : headers) {
        names.append(field.first);
    }
    return names;
}

bool readRequest(const QByteArray &bytes, ReceivedRequest &request)
{
    const int end = bytes.indexOf(headEnd);
    if (end < 0) {
        return false;
    }
    readHead(bytes.left(end), request);
    request.body = bytes.mid(end + headEnd.size());
    return request.body.size() >= request.header("Content-Length").toInt();
}
