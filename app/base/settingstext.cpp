#include "app/base/settingstext.h"

#include <cstring>

namespace {

bool isSpace(char character)
{
    return std::strchr("\t\n\r ", character) && character != '\0';
}

bool isLineEnd(char character)
{
    return character == '\n' || character == '\r';
}

bool isBlank(char character)
{
    return character == ' ' || character == '\t';
}

/// Behind what is escaped at \a place: one character, or a line end of two.
int behindEscaped(const QByteArray &bytes, int place)
{
    if (place >= bytes.size()) {
        return place;
    }
    const char first = bytes.at(place++);
    const bool isPair = place < bytes.size() && isLineEnd(first) && isLineEnd(bytes.at(place))
                     && bytes.at(place) != first;
    return isPair ? place + 1 : place;
}

/// Behind the comment that \a place is in, and the empty lines below.
int behindComment(const QByteArray &bytes, int place)
{
    while (place < bytes.size() && !isLineEnd(bytes.at(place))) {
        ++place;
    }
    while (place < bytes.size() && isSpace(bytes.at(place))) {
        ++place;
    }
    return place;
}

/// \a digits, hexadecimal ones alone, as a character.
bool readCode(const QByteArray &digits, int count, QChar &character)
{
    bool isNumber = false;
    const int code = digits.toInt(&isNumber, 16);
    character = QChar(static_cast<ushort>(code));
    return digits.size() == count && isNumber;
}

/// Reads one value, character by character.
class ValueReader
{
public:
    ValueReader(const QByteArray &bytes, bool isUtf8)
        : m_bytes(bytes)
        , m_isUtf8(isUtf8)
    {
    }

    QStringList read()
    {
        skipBlanks();
        while (m_place < m_bytes.size()) {
            readNext();
        }
        endPiece();
        return m_pieces;
    }

private:
    void readNext()
    {
        const char character = m_bytes.at(m_place);
        if (character == '\\') {
            ++m_place;
            readEscape();
            m_fixed = m_text.size();
        } else if (character == '"') {
            ++m_place;
            m_wasQuoted = true;
            m_inQuotes = !m_inQuotes;
            if (!m_inQuotes) {
                skipBlanks();
                m_fixed = m_text.size();
            }
        } else if (character == ',' && !m_inQuotes) {
            ++m_place;
            endPiece();
            skipBlanks();
        } else {
            readPlain();
        }
    }

    /// What is written is not escaped: trailing blanks are no part of it.
    void readPlain()
    {
        int end = m_place + 1;
        while (end < m_bytes.size() && !std::strchr("\\\",", m_bytes.at(end))) {
            ++end;
        }
        const QByteArray plain = m_bytes.mid(m_place, end - m_place);
        m_text += m_isUtf8 ? QString::fromUtf8(plain.constData(), plain.size())
                           : QString::fromLatin1(plain.constData(), plain.size());
        m_place = end;
    }

    void readEscape()
    {
        static const char letters[] = "abfnrtv\"?'\\";
        static const char meanings[] = "\a\b\f\n\r\t\v\"?'\\";
        if (m_place >= m_bytes.size()) {
            return;
        }
        const char letter = m_bytes.at(m_place);
        const char *found = letter == '\0' ? nullptr : std::strchr(letters, letter);
        if (found) {
            ++m_place;
            m_text += QLatin1Char(meanings[found - letters]);
        } else if (letter == 'x') {
            ++m_place;
            readNumber(16);
        } else if (letter >= '0' && letter <= '7') {
            readNumber(8);
        } else {
            m_place = isLineEnd(letter) ? behindEscaped(m_bytes, m_place) : m_place + 1;
        }
    }

    /// A character by its number, as long as there are digits.
    void readNumber(uint base)
    {
        uint code = 0;
        const int start = m_place;
        for (int digit = digitAt(m_place, base); digit >= 0; digit = digitAt(m_place, base)) {
            code = code * base + static_cast<uint>(digit);
            ++m_place;
        }
        if (m_place > start) {
            m_text += QChar(static_cast<ushort>(code));
        }
    }

    [[nodiscard]] int digitAt(int place, uint base) const
    {
        if (place >= m_bytes.size()) {
            return -1;
        }
        bool isNumber = false;
        const int digit = QByteArray(1, m_bytes.at(place)).toInt(&isNumber, static_cast<int>(base));
        return isNumber ? digit : -1;
    }

    void endPiece()
    {
        while (!m_wasQuoted && m_text.size() > m_fixed
               && (m_text.endsWith(QLatin1Char(' ')) || m_text.endsWith(QLatin1Char('\t')))) {
            m_text.chop(1);
        }
        m_pieces.append(m_text);
        m_text.clear();
        m_fixed = 0;
        m_wasQuoted = false;
    }

    void skipBlanks()
    {
        while (m_place < m_bytes.size() && isBlank(m_bytes.at(m_place))) {
            ++m_place;
        }
    }

    const QByteArray &m_bytes;
    bool m_isUtf8;
    int m_place = 0;
    QStringList m_pieces;
    QString m_text;
    int m_fixed = 0; ///< so much of the text is kept, although it may be blanks
    bool m_inQuotes = false;
    bool m_wasQuoted = false;
};

} // namespace

bool nextSettingsLine(const QByteArray &bytes, int &place, SettingsLine &line)
{
    bool inQuotes = false;
    while (place < bytes.size() && isSpace(bytes.at(place))) {
        ++place;
    }
    line = {place, place, -1};
    while (place < bytes.size()) {
        const char character = bytes.at(place);
        if (!inQuotes && character == ';' && place == line.start) {
            place = behindComment(bytes, place);
            line.start = place;
            continue;
        }
        if (!inQuotes && (character == ';' || isLineEnd(character))) {
            break;
        }
        if (!inQuotes && character == '=' && line.equals < 0) {
            line.equals = place;
        }
        ++place;
        if (character == '\\') {
            place = behindEscaped(bytes, place);
        } else if (character == '"') {
            inQuotes = !inQuotes;
        }
    }
    line.end = place;
    return line.end > line.start;
}

QString settingsKeyText(const QByteArray &bytes)
{
    QString text;
    for (int place = 0; place < bytes.size(); ++place) {
        const char character = bytes.at(place);
        if (character == '%') {
            const int count = bytes.mid(place + 1, 1) == "U" ? 4 : 2;
            const int start = count == 4 ? place + 2 : place + 1;
            QChar named;
            if (readCode(bytes.mid(start, count), count, named)) {
                text += named;
                place = start + count - 1;
                continue;
            }
        }
        text += character == '\\' ? QLatin1Char('/') : QLatin1Char(character);
    }
    return text;
}

QStringList settingsTexts(const QByteArray &bytes, bool isUtf8)
{
    return ValueReader(bytes, isUtf8).read();
}
