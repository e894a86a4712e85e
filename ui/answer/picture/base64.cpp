#include "ui/answer/picture/base64.h"

#include <array>

namespace {

constexpr quint8 foreign = 0xff; ///< no character of Base64
constexpr int tableSize = 128;

constexpr std::array<quint8, tableSize> makeTable()
{
    std::array<quint8, tableSize> table{};
    for (quint8 &value : table) {
        value = foreign;
    }
    const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (quint8 value = 0; value < 64; ++value) {
        table[static_cast<uchar>(digits[value])] = value;
    }
    return table;
}

constexpr std::array<quint8, tableSize> valueTable = makeTable();

quint8 valueOf(ushort character)
{
    return character < tableSize ? valueTable[character] : foreign;
}

char low(quint32 value)
{
    return static_cast<char>(value & 0xff);
}

} // namespace

QByteArray bytesOfBase64(const QStringRef &text)
{
    QByteArray bytes(text.size() / 4 * 3 + 3, Qt::Uninitialized);
    char *out = bytes.data();
    const auto *in = reinterpret_cast<const ushort *>(text.unicode());
    const ushort *const end = in + text.size();
    quint32 bits = 0;
    int count = 0; // of bits that wait for the rest of their byte
    while (in < end) {
        // Four at a time while nothing foreign comes between: any set high bit says so.
        while (count == 0 && end - in >= 4) {
            const quint32 a = valueOf(in[0]);
            const quint32 b = valueOf(in[1]);
            const quint32 c = valueOf(in[2]);
            const quint32 d = valueOf(in[3]);
            if (((a | b | c | d) & 0x80) != 0) {
                break;
            }
            const quint32 group = a << 18 | b << 12 | c << 6 | d;
            *out++ = low(group >> 16);
            *out++ = low(group >> 8);
            *out++ = low(group);
            in += 4;
        }
        if (in == end) {
            break;
        }
        const quint8 value = valueOf(*in++);
        if (value == foreign) {
            continue;
        }
        bits = bits << 6 | value;
        count += 6;
        if (count >= 8) {
            count -= 8;
            *out++ = low(bits >> count);
            bits &= (1U << count) - 1;
        }
    }
    bytes.truncate(static_cast<int>(out - bytes.constData()));
    return bytes;
}
