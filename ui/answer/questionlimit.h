#pragma once

/// How many questions may wait for their answers at a time. Each takes a thread and some
/// descriptors, of which the system allows a process only so many: 160, and fewer where it allows
/// few, so that log, settings and the rest of the program are never without. Told anew with every
/// call.
[[nodiscard]] int mostQuestionsUnderWay();
