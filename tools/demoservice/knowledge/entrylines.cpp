#include "tools/demoservice/knowledge/entrylines.h"

#include <algorithm>

namespace demo {

namespace {

/// How deep an element of the list lies: inside the object and the list.
constexpr int elementDepth = 2;

/// Goes through JSON that is known to be right, from one place that matters to the next.
class Scanner
{
public:
    explicit Scanner(const std::string &text)
        : m_text(text)
    {
    }

    std::vector<std::size_t> linesOfEntries()
    {
        for (; m_at < m_text.size(); ++m_at) {
            take(m_text[m_at]);
        }
        return std::move(m_lines);
    }

private:
    void take(char c)
    {
        if (c == '"') {
            noteElement();
            takeText();
        } else if (c == '{' || c == '[') {
            noteElement();
            m_inEntries = (m_depth == 1 && m_member == "entries") || (m_depth > 1 && m_inEntries);
            ++m_depth;
            m_expected = m_depth == elementDepth && m_inEntries;
        } else if (c == '}' || c == ']') {
            --m_depth;
            m_expected = false;
        } else if (c == ',') {
            m_expected = m_depth == elementDepth && m_inEntries;
        } else if (c != ' ' && c != '\t' && c != '\r' && c != '\n' && c != ':') {
            noteElement();
        }
    }

    /// The first sign of an element that is expected.
    void noteElement()
    {
        if (m_expected) {
            const auto end = m_text.begin() + static_cast<std::ptrdiff_t>(m_at);
            m_lines.push_back(static_cast<std::size_t>(std::count(m_text.begin(), end, '\n')) + 1);
            m_expected = false;
        }
    }

    /// Passes a text; one directly inside the object is the name of a member, or its value.
    void takeText()
    {
        const std::size_t begin = m_at;
        for (++m_at; m_at < m_text.size() && m_text[m_at] != '"'; ++m_at) {
            if (m_text[m_at] == '\\') {
                ++m_at;
            }
        }
        if (m_depth == 1) {
            m_member = m_text.substr(begin + 1, m_at - begin - 1);
        }
    }

    const std::string &m_text;
    std::size_t m_at = 0;
    int m_depth = 0;
    bool m_inEntries = false;
    bool m_expected = false; ///< the next sign begins an element
    std::string m_member;
    std::vector<std::size_t> m_lines;
};

} // namespace

std::vector<std::size_t> entryLines(const std::string &text)
{
    return Scanner(text).linesOfEntries();
}

} // namespace demo
