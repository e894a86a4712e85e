#include "app/base/settingscontent.h"

#include "app/base/settingstext.h"
#include "app/base/settingsvalue.h"

namespace {

/// What the names of a group's values begin with.
QString groupPrefix(const QByteArray &name)
{
    if (name.compare("general", Qt::CaseInsensitive) == 0) {
        return {};
    }
    const bool isEscaped = name.compare("%general", Qt::CaseInsensitive) == 0;
    return (isEscaped ? QString::fromLatin1(name.mid(1)) : settingsKeyText(name))
         + QLatin1Char('/');
}

QByteArray withoutTrailingBlanks(QByteArray bytes)
{
    while (bytes.endsWith(' ') || bytes.endsWith('\t')) {
        bytes.chop(1);
    }
    return bytes;
}

/// Takes in a file line by line.
class ContentReader
{
public:
    explicit ContentReader(bool isUtf8)
        : m_isUtf8(isUtf8)
    {
    }

    void take(const QByteArray &text, int equals)
    {
        if (text.startsWith('[')) {
            takeGroup(text);
        } else if (equals >= 0) {
            takeValue(text.left(equals), text.mid(equals + 1));
        } else {
            m_content.isWellFormed = false;
        }
    }

    [[nodiscard]] SettingsContent content() const { return m_content; }

private:
    void takeGroup(const QByteArray &text)
    {
        const int end = text.indexOf(']');
        m_content.isWellFormed = m_content.isWellFormed && end >= 0;
        m_prefix = groupPrefix(text.mid(1, end < 0 ? -1 : end - 1).trimmed());
    }

    void takeValue(const QByteArray &key, const QByteArray &value)
    {
        const QString name = settingsKeyText(withoutTrailingBlanks(key));
        if (m_prefix.isEmpty() && name.contains(QLatin1Char('/'))) {
            return; // Qt looks for it in the group that it names
        }
        const QStringList texts = settingsTexts(value, m_isUtf8);
        const auto read = texts.size() > 1 ? QVariant(texts) : settingsValue(texts.first());
        if (read) {
            m_content.values.insert(m_prefix + name, *read);
        } else {
            m_content.values.remove(m_prefix + name);
            m_content.refused.append(m_prefix + name);
        }
    }

    bool m_isUtf8;
    QString m_prefix;
    SettingsContent m_content;
};

} // namespace

SettingsContent readSettings(QByteArray bytes)
{
    const QByteArray utf8Mark = "\xef\xbb\xbf";
    const bool isUtf8 = bytes.startsWith(utf8Mark);
    if (isUtf8) {
        bytes.remove(0, utf8Mark.size());
    }
    ContentReader reader(isUtf8);
    SettingsLine line;
    for (int place = 0; nextSettingsLine(bytes, place, line);) {
        const QByteArray text = bytes.mid(line.start, line.end - line.start);
        reader.take(text, line.equals < 0 ? -1 : line.equals - line.start);
    }
    return reader.content();
}
