#include "tools/doctor/fontcheck.h"

#include "tools/doctor/surroundings.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>

namespace {

const QLatin1String wanted("Microsoft YaHei");
constexpr uint commonCharacter = 0x7684;

bool hasFont(const QFontDatabase &fonts)
{
    return fonts.families().contains(wanted, Qt::CaseInsensitive);
}

/// Whether Chinese can be shown, with whatever font the system takes for it.
bool showsChinese(const QFontDatabase &fonts)
{
    return !fonts.families(QFontDatabase::SimplifiedChinese).isEmpty()
        && QFontMetrics(QFont(wanted)).inFontUcs4(commonCharacter);
}

} // namespace

Findings checkFont()
{
    const QFontDatabase fonts;
    const QString name = QStringLiteral("the font %1").arg(wanted);
    if (hasFont(fonts)) {
        return {good(name)};
    }
    if (!showsChinese(fonts)) {
        return {toMend(name + QStringLiteral(" is not here, nor another one for Chinese"),
                       QStringLiteral("Install it: the program's texts are empty boxes."))};
    }
    const QString instead = name
                          + QStringLiteral(" is not here, %1 stands in for it")
                                .arg(QFontInfo(QFont(wanted)).family());
    if (!comesWithTheFont()) {
        return {good(instead)};
    }
    return {
        note(instead, QStringLiteral("Install it: with another one some texts are cut sooner."))};
}
