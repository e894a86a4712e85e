#include "app/base/settingsvalue.h"

#include <QDataStream>
#include <QRect>

#include <algorithm>

namespace {

/// What stands between \a opening and the last bracket, if \a text begins and ends so.
std::optional<QString> inBrackets(const QString &text, const char *opening)
{
    const QLatin1String start(opening);
    if (!text.startsWith(start) || !text.endsWith(QLatin1Char(')'))) {
        return std::nullopt;
    }
    return text.mid(start.size(), text.size() - start.size() - 1);
}

bool isGeometry(const QString &text)
{
    const auto isOf = [&text](const char *opening, int numbers) {
        const auto inner = inBrackets(text, opening);
        return inner
            && inner->count(QLatin1Char(' ')) + inner->count(QLatin1Char(')')) == numbers - 1;
    };
    return isOf("@Rect(", 4) || isOf("@Size(", 2) || isOf("@Point(", 2);
}

/// A text or a number in Qt's binary form, as its fourth version has it.
std::optional<QVariant> plainVariant(const QString &binary)
{
    static const quint32 plain[]
        = {QMetaType::UnknownType, QMetaType::Bool,      QMetaType::Int,    QMetaType::UInt,
           QMetaType::LongLong,    QMetaType::ULongLong, QMetaType::Double, QMetaType::QChar,
           QMetaType::QString,     QMetaType::QByteArray};
    const QByteArray bytes = binary.toLatin1();
    quint32 type = 0;
    QDataStream(bytes) >> type;
    if (std::find(std::begin(plain), std::end(plain), type) == std::end(plain)) {
        return std::nullopt;
    }
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_4_0);
    QVariant value;
    stream >> value;
    return value;
}

} // namespace

std::optional<QVariant> settingsValue(const QString &text)
{
    if (!text.startsWith(QLatin1Char('@'))) {
        return text;
    }
    if (const auto bytes = inBrackets(text, "@ByteArray(")) {
        return bytes->toLatin1();
    }
    if (const auto inner = inBrackets(text, "@String(")) {
        return *inner;
    }
    if (const auto binary = inBrackets(text, "@Variant(")) {
        return plainVariant(*binary);
    }
    if (inBrackets(text, "@DateTime(")) {
        return std::nullopt;
    }
    if (isGeometry(text)) {
        return QVariant(QRect());
    }
    if (text == QLatin1String("@Invalid()")) {
        return QVariant();
    }
    return text.startsWith(QLatin1String("@@")) ? text.mid(1) : text;
}
