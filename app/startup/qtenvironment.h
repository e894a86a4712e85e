#pragma once

/// Removes every environment variable whose name contains "QT" (in capitals, anywhere in the name),
/// so that no scaling, platform or plug-in setting of the caller reaches this process. Call it
/// first of all: Qt reads these variables while the application object is created, and
/// other threads must not read the environment meanwhile.
void clearQtEnvironment();
