#pragma once

#include <QtGlobal>

/// While it lives, this process and those that it starts meanwhile have the rights of an ordinary
/// user: a root user, whom no permissions keep out, bows as nobody for that time. On Windows it
/// does nothing.
class OrdinaryUser final
{
    Q_DISABLE_COPY_MOVE(OrdinaryUser)

public:
    OrdinaryUser();
    ~OrdinaryUser();

    /// Whether the rights are an ordinary user's.
    [[nodiscard]] bool isOrdinary() const { return m_isOrdinary; }

private:
    unsigned m_user = 0; ///< whose rights come back
    bool m_isOrdinary = true;
};
