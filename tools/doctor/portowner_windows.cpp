#include "tools/doctor/portowner.h"

#include <QFileInfo>
#include <QVector>
#include <QtEndian>

#include <winsock2.h>
#include <iphlpapi.h>
#include <ws2tcpip.h>

namespace {

QString programOf(DWORD process)
{
    constexpr DWORD longest = 32768; // characters
    const HANDLE handle = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
    if (handle == nullptr) {
        return {};
    }
    QVector<wchar_t> path(static_cast<int>(longest));
    DWORD length = longest;
    const BOOL known = QueryFullProcessImageNameW(handle, 0, path.data(), &length);
    CloseHandle(handle);
    return known == FALSE
             ? QString()
             : QFileInfo(QString::fromWCharArray(path.constData(), static_cast<int>(length)))
                   .fileName();
}

} // namespace

std::optional<PortOwner> ownerOfPort(quint16 port)
{
    DWORD bytes = 0;
    GetExtendedTcpTable(nullptr, &bytes, FALSE, AF_INET, TCP_TABLE_OWNER_PID_LISTENER, 0);
    // Others may begin to listen meanwhile.
    QVector<char> memory(static_cast<int>(2 * bytes + sizeof(MIB_TCPTABLE_OWNER_PID)));
    bytes = static_cast<DWORD>(memory.size());
    if (GetExtendedTcpTable(memory.data(), &bytes, FALSE, AF_INET, TCP_TABLE_OWNER_PID_LISTENER, 0)
        != NO_ERROR) {
        return std::nullopt;
    }
    const auto *table = reinterpret_cast<const MIB_TCPTABLE_OWNER_PID *>(memory.constData());
    for (DWORD i = 0; i < table->dwNumEntries; ++i) {
        const MIB_TCPROW_OWNER_PID &row = table->table[i];
        if (qFromBigEndian(static_cast<quint16>(row.dwLocalPort)) == port) {
            return PortOwner{static_cast<qint64>(row.dwOwningPid), programOf(row.dwOwningPid)};
        }
    }
    return std::nullopt;
}
