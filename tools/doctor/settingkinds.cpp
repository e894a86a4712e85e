#include "tools/doctor/settingkinds.h"

#include "app/base/loghandler.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QByteArray>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <limits>

namespace {

constexpr int highestPort = 65535;

const Complaint nothing = {};

Complaint empty()
{
    return {QStringLiteral("is empty")};
}

QString quoted(const QString &value)
{
    return QLatin1Char('"') + value + QLatin1Char('"');
}

bool isAscii(const QString &text)
{
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c > u' ' && c.unicode() < 0x7f; });
}

Complaint checkRange(const QString &value, int least, int most)
{
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (!isNumber) {
        return {QStringLiteral("is no whole number: ") + quoted(value)};
    }
    if (number < least || number > most) {
        return {QStringLiteral("is %1, not between %2 and %3").arg(number).arg(least).arg(most)};
    }
    return nothing;
}

} // namespace

Complaint checkText(const QString &value)
{
    return value.isEmpty() ? empty() : nothing;
}

Complaint checkHost(const QString &value)
{
    if (value.isEmpty()) {
        return empty();
    }
    if (value.contains(QLatin1Char('/')) || value != value.trimmed()) {
        return {QStringLiteral("is no host name or address: ") + quoted(value),
                QStringLiteral("Write the host alone, without scheme, path and blanks.")};
    }
    return nothing;
}

Complaint checkPort(const QString &value)
{
    return checkRange(value, 1, highestPort);
}

Complaint checkNumber(const QString &value)
{
    return checkRange(value, 0, std::numeric_limits<int>::max());
}

Complaint checkQuantity(const QString &value)
{
    return checkRange(value, 1, std::numeric_limits<int>::max());
}

Complaint checkSuggestionQuantity(const QString &value)
{
    return checkRange(value, 1, SuggestionPopup::capacity);
}

Complaint checkPath(const QString &value)
{
    if (value.isEmpty()) {
        return empty();
    }
    if (!value.startsWith(QLatin1Char('/')) || !isAscii(value)) {
        return {QStringLiteral("is no path of a service: ") + quoted(value),
                QStringLiteral("Begin it with a slash and write the path alone, without host.")};
    }
    return nothing;
}

Complaint checkAddress(const QString &value)
{
    if (value.isEmpty()) {
        return empty();
    }
    const QUrl url(value, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty()) {
        return {QStringLiteral("is no address: ") + quoted(value),
                QStringLiteral("Write it as in a browser, with https:// in front.")};
    }
    return nothing;
}

Complaint checkBase64(const QString &value)
{
    if (value.isEmpty()) {
        return empty();
    }
    const auto decoded = QByteArray::fromBase64Encoding(
        value.toUtf8(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || !isAscii(QString::fromUtf8(*decoded))) {
        return {QStringLiteral("is not Base64 of a text in ASCII without blanks"),
                QStringLiteral("Encode the text in Base64, without a line end.")};
    }
    return nothing;
}

Complaint checkLevel(const QString &value)
{
    const QStringList levels = logLevelNames();
    if (!levels.contains(value.toUpper())) {
        return {QStringLiteral("is no level, so that only errors are logged: ") + quoted(value),
                QStringLiteral("Write one of ") + levels.join(QStringLiteral(", "))
                    + QLatin1Char('.')};
    }
    return nothing;
}
