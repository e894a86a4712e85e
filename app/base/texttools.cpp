#include "app/base/texttools.h"

#include <QTime>

#include <cstring>

QString utf8UpToNul(const QByteArray &bytes)
{
    // A reply with pictures has millions of bytes. Qt's own searches look at them one by one.
    const char *const begin = bytes.constData();
    const void *const nul = std::memchr(begin, '\0', static_cast<std::size_t>(bytes.size()));
    const auto length = nul == nullptr ? bytes.size() : static_cast<const char *>(nul) - begin;
    return QString::fromUtf8(begin, static_cast<int>(length));
}

QString throughLocalEncoding(const QString &text)
{
    return QString::fromLocal8Bit(text.toLocal8Bit().constData());
}

QString wholeCharacters(QString text)
{
    for (int place = 0; place < text.size(); ++place) {
        const bool isPair = text.at(place).isHighSurrogate() && place + 1 < text.size()
                         && text.at(place + 1).isLowSurrogate();
        if (isPair) {
            ++place;
        } else if (text.at(place).isSurrogate()) {
            text[place] = QChar::ReplacementCharacter;
        }
    }
    return text;
}

QString timeOfDay()
{
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"));
}
