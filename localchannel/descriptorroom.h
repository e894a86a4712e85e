#pragma once

#include <QtGlobal>

/// Whether this process may open many more descriptors than it has: half of what the system allows
/// it is free. \a descriptor is an open one, of which a copy is made for a moment. Always true
/// where descriptors are not counted. Any thread.
[[nodiscard]] bool hasDescriptorsToSpare(qintptr descriptor);
