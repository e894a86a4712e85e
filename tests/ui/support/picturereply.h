#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QString>

/// \a image as a PNG file has it.
inline QByteArray encoded(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// The paragraph of a reply that holds a picture: \a data of the kind \a type, such as "png".
inline QString tag(const char *type, const QByteArray &data)
{
    return QStringLiteral("<p><img src=\"data:image/%1;base64,%2\" style=\"\"/></p>")
        .arg(QLatin1String(type), QLatin1String(data.toBase64()));
}
