#pragma once

#include <QImage>
#include <QString>

#include <algorithm>

/// Where a picture lies in the resources.
inline QString path(const QString &name)
{
    return QStringLiteral(":/Images/") + name;
}

/// A picture of the resources; null when it is missing.
inline QImage load(const QString &name)
{
    return QImage(path(name)).convertToFormat(QImage::Format_ARGB32);
}

/// Row `number` of a strip of `rows` equal rows.
inline QImage row(const QImage &strip, int number, int rows)
{
    const int height = strip.height() / rows;
    return strip.copy(0, number * height, strip.width(), height);
}

/// The transparency of a picture alone.
inline QImage shape(const QImage &picture)
{
    return picture.convertToFormat(QImage::Format_Alpha8);
}

/// Whether nothing of the picture shows.
inline bool isEmpty(const QImage &picture)
{
    QImage nothing(picture.size(), QImage::Format_Alpha8);
    nothing.fill(0);
    return shape(picture) == nothing;
}

/// Whether the outermost pixels show nothing, i.e. nothing is cut off.
inline bool borderIsClear(const QImage &picture)
{
    QImage inside = shape(picture);
    QImage framed(inside.size(), QImage::Format_Alpha8);
    framed.fill(0);
    for (int y = 1; y < inside.height() - 1; ++y) {
        const uchar *from = inside.constScanLine(y);
        std::copy(from + 1, from + inside.width() - 1, framed.scanLine(y) + 1);
    }
    return framed == inside;
}
