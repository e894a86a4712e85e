#pragma once

#include <QString>

#include <optional>

/// The gateway that the desktop's VPN client has selected.
struct KorGateway
{
    QString address; ///< host name or IP address text; may be empty
    qint32 port = 0;
};

/// Asks the VPN client's library "KorVpnTool" for the selected gateway. Nothing when no gateway is
/// selected, when the library is absent or when it lacks one of its two functions.
///
/// The library is looked for beside the program, then on the system's search path; once found it
/// stays loaded for the rest of the process, until then every call looks again. It promises no
/// thread safety, so calls are made one at a time: a call waits at most \a turnLimitMs for its turn
/// and gives up, with a warning, when the library still has not answered an earlier one. Any
/// thread; blocks as long as the library does.
[[nodiscard]] std::optional<KorGateway> selectedKorGateway(int turnLimitMs);

/// Reads the two known fields of the library's info record: at byte 0 the port, a 32-bit integer in
/// the machine's byte order, at byte 164 the address, 8-bit text up to a NUL.
[[nodiscard]] KorGateway readKorInfoBlock(const void *record);
