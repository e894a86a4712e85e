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

QString timeOfDay()
{
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"));
}
