#pragma once

#include <QString>

/// The folder, relative to the program's, of the files that animated pictures play from.
inline const QLatin1String animationFolder("gif/");

/// The file, relative to the program's folder, that animated picture number \a number of the
/// conversation plays from.
[[nodiscard]] inline QString animationFile(int number)
{
    return animationFolder + QString::number(number) + QLatin1String(".gif");
}
