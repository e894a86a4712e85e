#pragma once

#include <QIcon>

/// The icon in the picture \a file, which is read when it is first asked for its pixels. Systems
/// that show no window icon never do.
[[nodiscard]] QIcon lateIcon(const QString &file);
