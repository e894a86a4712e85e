#pragma once

/// Hides from Qt the variables of the environment that it would take for its own by their names in
/// small letters: on Windows "qt_scale_factor" is the same name as "QT_SCALE_FACTOR". They stay in
/// the environment of this process, and of what it starts. Elsewhere there is nothing to hide. To
/// be called after clearQtEnvironment(), while no other thread reads the environment.
void hideQtNames();
