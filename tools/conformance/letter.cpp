#include "tools/conformance/letter.h"

#include "service/request/signedrequest.h"

#include <algorithm>

namespace {

bool isNamed(const QByteArray &left, const QByteArray &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

} // namespace

Letter signedLetter(const QString &path, const QByteArray &body,
                    const RequestCredentials &credentials, const ServiceEndpoint &server)
{
    QNetworkRequest request; // the program's own code fills it
    setSignedHeaders(request, credentials, server);
    Letter letter;
    letter.path = path;
    letter.body = body;
    const QList<QByteArray> names = request.rawHeaderList();
    for (const QByteArray &name : names) {
        letter.headers.append({name, request.rawHeader(name)});
    }
    return letter;
}

void setHeader(Letter &letter, const QByteArray &name, const QByteArray &value)
{
    for (auto &header : letter.headers) {
        if (isNamed(header.first, name)) {
            header.second = value;
            return;
        }
    }
    letter.headers.append({name, value});
}

void removeHeader(Letter &letter, const QByteArray &name)
{
    const auto end
        = std::remove_if(letter.headers.begin(), letter.headers.end(),
                         [&name](const auto &header) { return isNamed(header.first, name); });
    letter.headers.erase(end, letter.headers.end());
}

QByteArray headerOf(const Letter &letter, const QByteArray &name)
{
    for (const auto &header : letter.headers) {
        if (isNamed(header.first, name)) {
            return header.second;
        }
    }
    return {};
}
