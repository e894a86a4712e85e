#include "ui/style/motion.h"

#include <qt_windows.h>

bool motionIsWanted()
{
    BOOL wanted = TRUE;
    return SystemParametersInfoW(SPI_GETCLIENTAREAANIMATION, 0, &wanted, 0) == FALSE
        || wanted != FALSE;
}
