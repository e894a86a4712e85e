#include "ui/text/markupscan.h"

#include "ui/text/markuptags.h"

#include <QSet>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <vector>

namespace {

// Measured, in microseconds.
constexpr double costOfLevel = 0.02;   ///< for each element around an element
constexpr double costOfBlock = 25;     ///< or line break
constexpr double costOfCell = 140;     ///< of a table's grid
constexpr double costOfEntries = 0.05; ///< of a list, for each pair of them
constexpr double costOfRule = 0.07;    ///< of a style sheet, for each element

constexpr int mostBreaks = 2000; ///< in a bare text

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

/// The grid of one table, which has a cell wherever a row meets a column.
class TableGrid
{
public:
    void beginRow()
    {
        ++m_row;
        m_columnsOfRow = 0;
        for (Reaching &above : m_above) {
            --above.rows;
            m_columnsOfRow += above.rows > 0 ? above.columns : 0;
        }
        m_above.erase(std::remove_if(m_above.begin(), m_above.end(),
                                     [](const Reaching &above) { return above.rows <= 0; }),
                      m_above.end());
    }

    void addCell(double columns, double rows)
    {
        if (m_row == 0) {
            beginRow();
        }
        m_columnsOfRow += columns;
        m_columns = qMax(m_columns, m_columnsOfRow);
        if (rows > 1) {
            m_above.push_back({columns, rows});
        }
    }

    [[nodiscard]] double cells() const { return m_row * m_columns; }

private:
    /// A cell that reaches into the rows below it.
    struct Reaching
    {
        double columns;
        double rows; ///< from the present one on
    };

    std::vector<Reaching> m_above;
    double m_row = 0;
    double m_columnsOfRow = 0;
    double m_columns = 0;
};

/// Adds up what the tags of a text cost.
class Estimate
{
public:
    void add(const MarkupTag &tag)
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
            addCell(tag.numberOf(QLatin1String("colspan")), tag.numberOf(QLatin1String("rowspan")));
        } else if (tag.name == QLatin1String("tr")) {
            change(m_tables.back().grid, [](TableGrid &grid) { grid.beginRow(); });
        } else if (tag.name == QLatin1String("table")) {
            m_tables.push_back({m_open.size(), TableGrid()});
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
        while (m_tables.back().level >= m_open.size()) {
            m_tables.pop_back();
        }
    }

    void addCell(double columns, double rows)
    {
        change(m_tables.back().grid, [=](TableGrid &grid) { grid.addCell(columns, rows); });
    }

    /// Changes a grid and adds what it costs more.
    template <typename Change>
    void change(TableGrid &grid, Change change)
    {
        const double before = grid.cells();
        change(grid);
        m_cost += costOfCell * (grid.cells() - before);
    }

    struct OpenTable
    {
        int level; ///< how many elements were open around it
        TableGrid grid;
    };

    QVector<QString> m_open;
    std::vector<OpenTable> m_tables{{-1, TableGrid()}}; ///< the first for what stands in none
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
int contentEnd(const QString &html, const MarkupTag &tag)
{
    const int end = html.indexOf(QLatin1String("</") + tag.name, tag.end, Qt::CaseInsensitive);
    return end < 0 ? html.size() : end;
}

} // namespace

double markupCost(const QString &html, double most)
{
    Estimate estimate;
    for (MarkupTag tag = nextMarkupTag(html, 0); tag.begin < html.size() && estimate.cost() <= most;
         tag = nextMarkupTag(html, tag.end)) {
        if (tag.name.isEmpty()) {
            continue;
        }
        estimate.add(tag);
        if (tag.name == QLatin1String("style") && !tag.closes) {
            const int end = contentEnd(html, tag);
            estimate.addRules(html.midRef(tag.end, end - tag.end));
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
        const MarkupTag tag = nextMarkupTag(html, from);
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
