#pragma once

/// Makes the pictures under ":/Images/" known to Qt's resource system. The pictures sit in a static
/// library whose data the linker drops unless something asks for it: call initResources() first in
/// main() and in each test that shows a widget. A second call does no harm. Any thread; no errors.
void initResources();
