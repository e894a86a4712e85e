#pragma once

/// Makes the pictures under ":/Images/" known to the resource system. They sit in a static library
/// whose data the linker drops unless something asks for it: call this first in main() and in each
/// test that shows a widget. Calling it again does no harm. Any thread; no errors.
void initResources();
