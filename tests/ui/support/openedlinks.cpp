#include "tests/ui/support/openedlinks.h"

#include <QDesktopServices>

OpenedLinks::OpenedLinks(const QStringList &schemes)
    : m_schemes(schemes)
{
    for (const QString &scheme : schemes) {
        QDesktopServices::setUrlHandler(scheme, this, "open");
    }
}

OpenedLinks::~OpenedLinks()
{
    for (const QString &scheme : qAsConst(m_schemes)) {
        QDesktopServices::unsetUrlHandler(scheme);
    }
}
