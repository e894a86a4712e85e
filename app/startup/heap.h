#pragma once

/// Lets large blocks of memory go back to the system as soon as they are freed, in this process and
/// for good. Call it at start, before other threads exist. Needed with the C library of Linux only,
/// which otherwise keeps them once it has seen some freed: messages of 64 MB would stay for ever.
void giveLargeBlocksBack();
