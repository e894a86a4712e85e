#include "ui/style/sharppictures.h"

#include "ui/style/displayscale.h"

#include <QRegularExpression>
#include <QWidget>

namespace {

const QLatin1String place("url(:/Images/");

/// As styles::spriteRow() writes them.
const QRegularExpression &strip()
{
    static const QRegularExpression expression(
        QStringLiteral("url\\(:/Images/(large/)?([\\w.-]+)\\) (\\d+) 0 (\\d+) 0;"));
    return expression;
}

} // namespace

QString withStripsFor(bool large, const QString &style)
{
    QString result;
    int end = 0;
    QRegularExpressionMatchIterator matches = strip().globalMatch(style);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const bool wasLarge = !match.captured(1).isEmpty();
        const auto cut = [large, wasLarge, &match](int number) {
            const int stated = match.captured(number).toInt() / (wasLarge ? 2 : 1);
            return QString::number(large ? 2 * stated : stated);
        };
        result += style.midRef(end, match.capturedStart() - end);
        result += QStringLiteral("url(:/Images/%1%2) %3 0 %4 0;")
                      .arg(large ? QStringLiteral("large/") : QString(), match.captured(2), cut(3),
                           cut(4));
        end = match.capturedEnd();
    }
    return result + style.midRef(end);
}

void sharpenPictures(QWidget &window)
{
    const bool large = anyScreenIsScaled();
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const QString style = widget->styleSheet();
        if (style.contains(place)) {
            widget->setStyleSheet(withStripsFor(large, style)); // also where the text stays
        }
    }
}
