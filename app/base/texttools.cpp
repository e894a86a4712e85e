#include "app/base/texttools.h"

#include <QTime>

QString utf8UpToNul(const QByteArray &bytes)
{
    const auto length = qstrnlen(bytes.constData(), static_cast<uint>(bytes.size()));
    return QString::fromUtf8(bytes.constData(), static_cast<int>(length));
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
