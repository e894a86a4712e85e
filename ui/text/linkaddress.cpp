#include "ui/text/linkaddress.h"

#include "app/base/logstream.h"
#include "ui/text/plaintooltip.h"

#include <QDesktopServices>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <array>

namespace {

constexpr int mostCharactersShown = 1000;
constexpr int charactersOfALine = 100; ///< of a tool tip

struct CharacterRange
{
    uint first;
    uint last;
};

/// What is drawn as nothing or as a blank although its category does not say so.
constexpr std::array<CharacterRange, 10> unseen{{
    {0x034f, 0x034f},   // combining grapheme joiner
    {0x115f, 0x1160},   // Hangul fillers
    {0x17b4, 0x17b5},   // inherent vowels
    {0x180b, 0x180f},   // Mongolian variation selectors
    {0x2065, 0x2065},   // reserved as ignorable
    {0x2800, 0x2800},   // the empty Braille pattern
    {0x3164, 0x3164},   // Hangul filler
    {0xfe00, 0xfe0f},   // variation selectors
    {0xffa0, 0xffa0},   // half-width Hangul filler
    {0xe0000, 0xe0fff}, // tags and variation selectors
}};

bool isUnseen(uint character)
{
    return std::any_of(unseen.cbegin(), unseen.cend(), [character](const CharacterRange &range) {
        return character >= range.first && character <= range.last;
    });
}

bool isReadable(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    case QChar::Separator_Space:
        return character == ' ';
    default:
        return !isUnseen(character);
    }
}

QString escaped(uint character)
{
    return QStringLiteral("\\u{%1}").arg(QString::number(character, 16).toUpper());
}

} // namespace

bool mayBeOpened(const QUrl &url)
{
    if (!url.isValid()) {
        return false;
    }
    const QString scheme = url.scheme(); // in lower case
    if (scheme == QLatin1String("mailto")) {
        return url.host().isEmpty();
    }
    return (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        && !url.host().isEmpty();
}

QString readableAddress(const QString &address)
{
    const QVector<uint> characters = address.left(mostCharactersShown).toUcs4();
    QString shown;
    for (const uint character : characters) {
        shown += isReadable(character) ? QString::fromUcs4(&character, 1) : escaped(character);
    }
    return address.size() > mostCharactersShown ? shown + QChar(0x2026) : shown;
}

QString linkToolTip(const QString &address)
{
    const QString shown = readableAddress(address);
    QStringList lines;
    for (int start = 0; start < shown.size(); start += charactersOfALine) {
        lines.append(shown.mid(start, charactersOfALine));
    }
    return plainToolTip(lines.join(QLatin1Char('\n')));
}

void followLink(const QString &address)
{
    const QUrl url(address);
    if (mayBeOpened(url)) {
        QDesktopServices::openUrl(url);
    } else {
        refuseLink(address);
    }
}

void refuseLink(const QString &address)
{
    LOG_WARNING() << "link is not opened: " << readableAddress(address);
}
