#pragma once

#include <QByteArray>
#include <QtEndian>

/// The checksum of the PNG chunk \a chunk, its type and data (CRC-32 of ISO 3309, big endian).
inline QByteArray pngChecksum(const QByteArray &chunk)
{
    quint32 crc = 0xffffffff;
    for (const char byte : chunk) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xedb88320 : crc >> 1;
        }
    }
    const quint32 bigEndian = qToBigEndian(~crc);
    return {reinterpret_cast<const char *>(&bigEndian), sizeof bigEndian};
}
