#include "ui/style/screenfit.h"

ScreenFit::ScreenFit(const QSize &window)
    : m_window(window)
{
}
