#pragma once

#include "service/gateway/libraryreport.h"

#include <QString>

#include <cstddef>
#include <optional>

/// What is known of the record that the VPN client's library owns and returns, as it lies in
/// memory.
struct KorInfoBlock
{
    qint32 port;       ///< in the machine's byte order
    char unknown[160]; ///< not read
    char address[1];   ///< 8-bit text that goes on up to a NUL: host name or IP address
};
static_assert(offsetof(KorInfoBlock, port) == 0);
static_assert(offsetof(KorInfoBlock, address) == 164);

/// The gateway that the desktop's VPN client has selected.
struct KorGateway
{
    QString address; ///< host name or IP address text; may be empty
    qint32 port = 0;
};

/// Asks the VPN client's library "KorVpnTool" for the selected gateway. Nothing when no gateway is
/// selected, when the library is absent or when it lacks one of its two functions; nothing, and
/// once a warning with the system's reason, when it is there but cannot be loaded.
///
/// The library is looked for beside the program, then on the system's search path, until one is
/// found that can be used; once found it stays loaded for the rest of the process, until then every
/// call looks again. It promises no thread safety, so calls are made one at a time: a call waits at
/// most \a turnLimitMs for its turn and gives up, with a warning, when the library still has not
/// answered an earlier one. Any thread; blocks as long as the library does.
[[nodiscard]] std::optional<KorGateway> selectedKorGateway(int turnLimitMs);

/// Copies the two known fields of \a record, whose address is read as UTF-8.
[[nodiscard]] KorGateway gatewayOf(const KorInfoBlock &record);

/// What selectedKorGateway() would find, without asking for a gateway. Any thread.
[[nodiscard]] LibraryReport examineKorVpnTool();
