#include "fuzz/support/check.h"
#include "fuzz/support/target.h"
#include "tests/ui/text/plainwrap.h"
#include "ui/text/textwrap.h"

#include <QFont>
#include <QFontMetrics>

namespace {

constexpr int mostCharacters = 800; ///< the plain rule takes the square of their number

int widthFrom(const QByteArray &input)
{
    const int low = input.isEmpty() ? 0 : static_cast<uchar>(input.at(0));
    return 2 * low;
}

} // namespace

/// Breaking texts into lines against the rule as it is told. The first byte is half of the width.
void runTarget(const QByteArray &input)
{
    static const QFontMetrics metrics = [] {
        QFont font(QStringLiteral("Microsoft YaHei"));
        font.setPixelSize(14);
        return QFontMetrics(font);
    }();
    const QString text = QString::fromUtf8(input.mid(1)).left(mostCharacters);
    const int width = widthFrom(input);
    check(brokenToWidth(metrics, text, width) == plainlyBroken(metrics, text, width),
          "a text is broken as the rule says");

    const QString once = withoutMarkRuns(text);
    check(withoutMarkRuns(once) == once, "marks are left out at once");
    check(shownPart(text) == once, "a short text is shown whole");
    check(rowPart(text) == text, "a short text has room in a row");
}
