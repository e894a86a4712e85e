#include "ui/answer/picture/base64.h"

#include "fuzz/support/check.h"
#include "fuzz/support/target.h"

#include <cstring>

namespace {

void compare(const QString &text)
{
    // Qt reads bytes. A character beyond ASCII must not become one that belongs to Base64.
    QByteArray bytes;
    for (const QChar character : text) {
        bytes += character.unicode() < 0x80 ? character.toLatin1() : '\x80';
    }
    check(bytesOfBase64(QStringRef(&text)) == QByteArray::fromBase64(bytes),
          "Base64 is decoded as Qt decodes it");
    const QStringRef tail(&text, text.size() / 2, text.size() - text.size() / 2);
    check(bytesOfBase64(tail) == QByteArray::fromBase64(bytes.mid(text.size() / 2)),
          "a part of a text is decoded by itself");
}

} // namespace

/// Base64 against Qt's own reading: the input as bytes, and as UTF-16.
void runTarget(const QByteArray &input)
{
    compare(QString::fromLatin1(input));
    QString wide(input.size() / 2, Qt::Uninitialized);
    std::memcpy(wide.data(), input.constData(), static_cast<std::size_t>(wide.size()) * 2);
    compare(wide);
}
