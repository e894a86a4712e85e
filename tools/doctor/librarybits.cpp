#include "tools/doctor/librarybits.h"

#include <QFile>
#include <QtEndian>

namespace {

/// A library of Windows names the machine that it is made for behind the mark "PE", whose place is
/// told at its beginning.
std::optional<int> bitsOfWindowsLibrary(const QByteArray &head)
{
    constexpr int placeOfMark = 0x3c;
    constexpr int machineBehindMark = 4;
    constexpr quint16 machine32 = 0x014c;
    constexpr quint16 machine64 = 0x8664;
    if (head.size() < placeOfMark + 4) {
        return std::nullopt;
    }
    const auto mark = qFromLittleEndian<quint32>(head.constData() + placeOfMark);
    const quint32 end = mark + machineBehindMark + sizeof(quint16);
    if (mark > static_cast<quint32>(head.size()) || end > static_cast<quint32>(head.size())) {
        return std::nullopt;
    }
    const char *const place = head.constData() + mark;
    const auto machine = qFromLittleEndian<quint16>(place + machineBehindMark);
    if (qstrncmp(place, "PE", 2) != 0 || (machine != machine32 && machine != machine64)) {
        return std::nullopt;
    }
    return machine == machine64 ? 64 : 32;
}

} // namespace

std::optional<int> libraryBits(const QString &file)
{
    constexpr int enough = 4096;
    constexpr int classInElf = 4; // 1 for 32 bits, 2 for 64
    QFile library(file);
    if (!library.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray head = library.read(enough);
    if (head.startsWith("MZ")) {
        return bitsOfWindowsLibrary(head);
    }
    if (head.startsWith("\x7f"
                        "ELF")
        && head.size() > classInElf) {
        return head.at(classInElf) == 2 ? 64 : 32;
    }
    return std::nullopt;
}
