#include "ui/text/markuptags.h"

namespace {

constexpr int longestEntity = 9; ///< characters behind the "&"; what is longer is none
constexpr int hexadecimal = 16;
constexpr int decimal = 10;

/// Reads the inside of a tag, character by character.
class TagReader
{
public:
    TagReader(const QString &html, int from)
        : m_html(html)
        , m_at(from)
    {
    }

    [[nodiscard]] int place() const { return m_at; }
    [[nodiscard]] bool isAt(QLatin1String text) const
    {
        return m_html.midRef(m_at, text.size()) == text;
    }

    void skip(int count) { m_at = qMin(m_at + count, m_html.size()); }
    void skipBlanks()
    {
        while (isBlank()) {
            ++m_at;
        }
    }
    void skipBehind(QLatin1String text)
    {
        const int found = m_html.indexOf(text, m_at);
        m_at = found < 0 ? m_html.size() : found + text.size();
    }

    [[nodiscard]] bool isBlank() const { return !atEnd() && m_html.at(m_at).isSpace(); }

    /// The word here; it may stand in quotes. In single ones an entity is none, and a quote behind
    /// a backslash does not end it.
    QString word()
    {
        if (isAt(QLatin1String("\""))) {
            skip(1);
            QString quoted = charactersUntil([this] { return isAt(QLatin1String("\"")); });
            skip(1);
            return quoted;
        }
        if (isAt(QLatin1String("'"))) {
            return singlyQuoted();
        }
        return charactersUntil([this] { return endsWord(); });
    }

    QVector<QPair<QString, QString>> attributes()
    {
        QVector<QPair<QString, QString>> found;
        for (;;) {
            skipBlanks();
            if (isAt(QLatin1String(">")) || isAt(QLatin1String("/>"))) {
                return found;
            }
            const QString name = word().toLower();
            if (name.isEmpty()) {
                return found;
            }
            found.append({name, valueHere()});
        }
    }

private:
    [[nodiscard]] bool atEnd() const { return m_at >= m_html.size(); }

    [[nodiscard]] bool endsWord() const
    {
        const QChar character = m_html.at(m_at);
        return character == QLatin1Char('>') || character == QLatin1Char('<')
            || character == QLatin1Char('=') || character.isSpace() || isAt(QLatin1String("/>"));
    }

    QString singlyQuoted()
    {
        const int begin = ++m_at;
        do {
            m_at = m_html.indexOf(QLatin1Char('\''), m_at) + 1;
        } while (m_at > 0 && m_html.at(m_at - 2) == QLatin1Char('\\'));
        const bool isClosed = m_at > 0;
        m_at = isClosed ? m_at : m_html.size();
        return m_html.mid(begin, m_at - begin - (isClosed ? 1 : 0));
    }

    QString valueHere()
    {
        skipBlanks();
        if (!isAt(QLatin1String("="))) {
            return QStringLiteral("1");
        }
        skip(1);
        skipBlanks();
        return word();
    }

    template <typename IsEnd>
    QString charactersUntil(IsEnd isEnd)
    {
        QString characters;
        while (!atEnd() && !isEnd()) {
            const QChar character = m_html.at(m_at++);
            if (character == QLatin1Char('&')) {
                characters += entityOrAmpersand();
            } else {
                characters += character;
            }
        }
        return characters;
    }

    /// What the entity behind an "&" stands for when it is a number; an "&" when there is none.
    /// Those with names stand for nothing that a name or a number consists of.
    QString entityOrAmpersand()
    {
        const int end = entityEnd();
        if (end < 2 || m_html.at(m_at) != QLatin1Char('#')) {
            return QStringLiteral("&");
        }
        const bool isHexadecimal = m_html.at(m_at + 1).toLower() == QLatin1Char('x');
        const int digits = isHexadecimal ? 2 : 1;
        bool isNumber = false;
        const uint code = m_html.midRef(m_at + digits, end - digits)
                              .toUInt(&isNumber, isHexadecimal ? hexadecimal : decimal);
        if (!isNumber || code > 0xffff) {
            return QStringLiteral("&");
        }
        m_at += end + 1;
        return QString(QChar(code));
    }

    /// How many characters lie before the ";" of the entity here; -1 when it has none.
    [[nodiscard]] int entityEnd() const
    {
        const QStringRef begin = m_html.midRef(m_at, longestEntity + 1);
        for (int i = 0; i < begin.size() && !begin.at(i).isSpace(); ++i) {
            if (begin.at(i) == QLatin1Char(';')) {
                return i;
            }
        }
        return -1;
    }

    const QString &m_html;
    int m_at;
};

/// Moves \a reader behind the declaration or comment that stands there.
void skipDeclaration(TagReader &reader)
{
    reader.skip(1);
    if (reader.isAt(QLatin1String("--"))) {
        reader.skip(2);
        reader.skipBehind(QLatin1String("-->"));
    } else {
        reader.skipBehind(QLatin1String(">"));
    }
}

} // namespace

int MarkupTag::numberOf(QLatin1String attribute) const
{
    int number = 1;
    for (const auto &[key, value] : attributes) {
        bool isNumber = false;
        const int given = key == attribute ? value.toInt(&isNumber) : 0;
        number = isNumber ? given : number;
    }
    return qMax(number, 1);
}

MarkupTag nextMarkupTag(const QString &html, int from)
{
    const int begin = html.indexOf(QLatin1Char('<'), from);
    if (begin < 0) {
        return {html.size(), html.size(), QString(), false, {}};
    }
    TagReader reader(html, begin + 1);
    reader.skipBlanks();
    if (reader.isAt(QLatin1String("!"))) {
        skipDeclaration(reader);
        return {begin, reader.place(), QString(), false, {}};
    }
    MarkupTag tag{begin, 0, QString(), reader.isAt(QLatin1String("/")), {}};
    reader.skip(tag.closes ? 1 : 0);
    tag.name = reader.word().toLower();
    if (!tag.closes && reader.isBlank()) {
        tag.attributes = reader.attributes();
    }
    reader.skipBehind(QLatin1String(">"));
    tag.end = reader.place();
    return tag;
}

bool mayBeDisguised(const QString &html)
{
    const auto holdsOther = [](const auto &text) {
        return text.contains(QLatin1String("&#")) || text.contains(QLatin1Char('\\'));
    };
    if (!holdsOther(html)) {
        return false;
    }
    // Words between the tags are harmless, except those of a style.
    for (MarkupTag tag = nextMarkupTag(html, 0); tag.begin < html.size();
         tag = nextMarkupTag(html, tag.end)) {
        if (tag.name == QLatin1String("style")
            || holdsOther(html.midRef(tag.begin, tag.end - tag.begin))) {
            return true;
        }
    }
    return false;
}
