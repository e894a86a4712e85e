#include "ui/text/markupscan.h"

#include <QSet>
#include <QStringList>
#include <QVector>

namespace {

// Measured, in microseconds.
constexpr double costOfLevel = 0.02;   ///< for each element around an element
constexpr double costOfBlock = 25;     ///< or line break
constexpr double costOfCell = 140;     ///< of a table, for each column and row that it spans
constexpr double costOfEntries = 0.05; ///< of a list, for each pair of them
constexpr double costOfRule = 0.07;    ///< of a style sheet, for each element

constexpr int mostBreaks = 2000; ///< in a bare text
constexpr int mostOfAName = 20;

/// One tag as it stands in a text: from its "<" to behind its ">".
struct Tag
{
    int begin;
    int end;
    QString name; ///< in lower case; empty for a comment
    bool closes;
};

bool isOneOf(const QString &name, const QSet<QString> &names)
{
    return names.contains(name);
}

const QSet<QString> &emptyElements()
{
    static const QSet<QString> names{QStringLiteral("br"),   QStringLiteral("img"),
                                     QStringLiteral("hr"),   QStringLiteral("meta"),
                                     QStringLiteral("link"), QStringLiteral("input")};
    return names;
}

const QSet<QString> &blockElements()
{
    static const QSet<QString> names{
        QStringLiteral("br"), QStringLiteral("div"),   QStringLiteral("p"),
        QStringLiteral("li"), QStringLiteral("tr"),    QStringLiteral("ul"),
        QStringLiteral("ol"), QStringLiteral("table"), QStringLiteral("blockquote"),
        QStringLiteral("hr"), QStringLiteral("h1"),    QStringLiteral("h2"),
        QStringLiteral("h3"), QStringLiteral("h4"),    QStringLiteral("dd"),
        QStringLiteral("dt"), QStringLiteral("dl"),    QStringLiteral("pre")};
    return names;
}

/// Behind the tag that begins at \a begin: quoted attributes may hold a ">".
int tagEnd(const QString &html, int begin)
{
    QChar quote;
    for (int at = begin + 1; at < html.size(); ++at) {
        const QChar character = html.at(at);
        if (!quote.isNull()) {
            if (character == quote) {
                quote = QChar();
            }
        } else if (character == QLatin1Char('>')) {
            return at + 1;
        } else if ((character == QLatin1Char('"') || character == QLatin1Char('\''))
                   && html.at(at - 1) == QLatin1Char('=')) {
            quote = character;
        }
    }
    return html.size();
}

QString nameAt(const QString &html, int at)
{
    int end = at;
    while (end < html.size() && end - at < mostOfAName && html.at(end).isLetterOrNumber()) {
        ++end;
    }
    return html.mid(at, end - at).toLower();
}

/// The first tag or comment of \a html from \a from on. Where there is none it begins at the end.
Tag nextTag(const QString &html, int from)
{
    const int begin = html.indexOf(QLatin1Char('<'), from);
    if (begin < 0) {
        return {html.size(), html.size(), QString(), false};
    }
    if (html.midRef(begin, 4) == QLatin1String("<!--")) {
        const int end = html.indexOf(QLatin1String("-->"), begin + 4);
        return {begin, end < 0 ? html.size() : end + 3, QString(), false};
    }
    const bool closes = html.midRef(begin + 1, 1) == QLatin1String("/");
    const QString name = nameAt(html, begin + (closes ? 2 : 1));
    return {begin, tagEnd(html, begin), name, closes};
}

/// The number that the attribute \a name of \a tag gives, 1 without it.
double spanOf(const QStringRef &tag, QLatin1String name)
{
    int at = tag.indexOf(name, 0, Qt::CaseInsensitive);
    if (at < 0) {
        return 1;
    }
    for (at += name.size(); at < tag.size() && !tag.at(at).isDigit(); ++at) { }
    double value = 0;
    for (; at < tag.size() && tag.at(at).isDigit(); ++at) {
        value = value * 10 + tag.at(at).digitValue();
    }
    return qMax(value, 1.0);
}

/// Adds up what the tags of a text cost.
class Estimate
{
public:
    void add(const QString &html, const Tag &tag)
    {
        if (tag.closes) {
            close(tag.name);
            return;
        }
        ++m_elements;
        m_cost += costOfLevel * m_open.size() + costOfRule * m_rules;
        if (isOneOf(tag.name, blockElements())) {
            m_cost += costOfBlock;
        }
        if (tag.name == QLatin1String("li")) {
            m_cost += costOfEntries * ++m_entries;
        } else if (tag.name == QLatin1String("td") || tag.name == QLatin1String("th")) {
            const QStringRef whole = html.midRef(tag.begin, tag.end - tag.begin);
            m_cost += costOfCell * spanOf(whole, QLatin1String("colspan"))
                    * spanOf(whole, QLatin1String("rowspan"));
        }
        if (!isOneOf(tag.name, emptyElements())) {
            m_open.append(tag.name);
        }
    }

    /// The rules of the style sheet \a text, which hold for all elements, those before it too.
    void addRules(const QStringRef &text)
    {
        const int rules = text.count(QLatin1Char('{')) + text.count(QLatin1Char(','));
        m_rules += rules;
        m_cost += costOfRule * rules * m_elements;
    }

    [[nodiscard]] double cost() const { return m_cost; }

private:
    void close(const QString &name)
    {
        const int from = m_open.lastIndexOf(name);
        m_cost += costOfLevel * (m_open.size() - qMax(from, 0));
        if (from >= 0) {
            m_open.resize(from);
        }
    }

    QVector<QString> m_open;
    double m_cost = 0;
    double m_elements = 0;
    double m_rules = 0;
    double m_entries = 0;
};

bool isHidden(const QString &name)
{
    return name == QLatin1String("style") || name == QLatin1String("script")
        || name == QLatin1String("title") || name == QLatin1String("head");
}

/// Where the element that begins with \a tag ends, when nothing inside it is read as text.
int contentEnd(const QString &html, const Tag &tag)
{
    const int end = html.indexOf(QLatin1String("</") + tag.name, tag.end, Qt::CaseInsensitive);
    return end < 0 ? html.size() : end;
}

} // namespace

double markupCost(const QString &html, double most)
{
    Estimate estimate;
    for (Tag tag = nextTag(html, 0); tag.begin < html.size() && estimate.cost() <= most;
         tag = nextTag(html, tag.end)) {
        if (tag.name.isEmpty()) {
            continue;
        }
        estimate.add(html, tag);
        if (tag.name == QLatin1String("style") && !tag.closes) {
            const int end = contentEnd(html, tag);
            estimate.addRules(html.midRef(tag.end, end - tag.end));
            tag.end = end;
        }
    }
    return estimate.cost();
}

QString bareText(const QString &html)
{
    QString text;
    int breaks = 0;
    bool breakWaits = false;
    for (int from = 0; from < html.size();) {
        const Tag tag = nextTag(html, from);
        const QStringRef words = html.midRef(from, tag.begin - from);
        if (!words.trimmed().isEmpty()) {
            if (breakWaits && !text.isEmpty()) {
                const bool hasRoom = ++breaks <= mostBreaks;
                text += hasRoom ? QLatin1String("<br>") : QLatin1String(" ");
            }
            breakWaits = false;
            text += words;
        }
        breakWaits = breakWaits || isOneOf(tag.name, blockElements());
        from = isHidden(tag.name) && !tag.closes ? contentEnd(html, tag) : tag.end;
    }
    return text;
}
