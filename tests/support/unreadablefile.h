#pragma once

#include <QString>

#include <memory>

/// While it lives, this process and those that it starts meanwhile cannot read a file: on Linux by
/// its permissions, to which a root user, whom none keeps out, bows as nobody for that time, on
/// Windows because another program holds it.
class UnreadableFile final
{
    Q_DISABLE_COPY(UnreadableFile)

public:
    /// The file at \a path. Folders on the way must be open to all users.
    explicit UnreadableFile(const QString &path);
    ~UnreadableFile();

    /// Null when the file cannot be read, otherwise why that is not so.
    [[nodiscard]] const char *whyNot() const;

private:
    struct Hold;
    std::unique_ptr<Hold> m_hold;
};
