#pragma once

#include <QFontMetrics>
#include <QString>

/// Whether \a shown is \a text cut at the right to \a limit px as Qt cuts it: a beginning of it
/// with an ellipsis, about as long as fits. The last letter that is kept was measured as it stood
/// before the next one, kerned or joined to it, so that the cut text may be some pixels wider.
[[nodiscard]] inline bool isPlainlyElided(const QString &shown, const QString &text,
                                          const QFontMetrics &metrics, int limit)
{
    constexpr int pixelsOfAnEnd = 15;
    constexpr int pixelsOfOneMore = 90; // the widest piece of a generated text, and some
    if (metrics.horizontalAdvance(text) <= limit) {
        return shown == text; // what is cut from some width on may still fit
    }
    if (!shown.endsWith(QChar(u'…'))) {
        return false;
    }
    QString kept = shown.chopped(1);
    if (kept.endsWith(QChar(0x200d))) {
        kept.chop(1); // Qt's, to keep a letter in its joined form
    }
    const int width = metrics.horizontalAdvance(shown);
    return text.startsWith(kept) && width <= limit + pixelsOfAnEnd
        && width > limit - pixelsOfOneMore;
}
