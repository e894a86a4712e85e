#include "tests/support/generator.h"

#include <QtGlobal>

#include <cmath>

namespace {

const char seedVariable[] = "MIRAVEL_TEST_SEED";

unsigned processSeed()
{
    static const unsigned seed = [] {
        bool given = false;
        const QByteArray value = qgetenv(seedVariable);
        const unsigned number = value.toUInt(&given);
        if (!value.isEmpty() && !given) {
            qFatal("%s is no number: %s", seedVariable, value.constData());
        }
        return given ? number : std::random_device()();
    }();
    return seed;
}

/// Pieces that are laid out in different ways.
const QStringList &pieces()
{
    static const QStringList all{
        QStringLiteral("桌"),      QStringLiteral("云桌面"),  QStringLiteral("，"),
        QStringLiteral("a"),       QStringLiteral("W"),       QStringLiteral("i"),
        QStringLiteral("AVAToWa"), QStringLiteral("office"),  QStringLiteral(" "),
        QStringLiteral("0x8000"),  QStringLiteral("&"),       QStringLiteral("<b>"),
        QStringLiteral("é"),       QStringLiteral("e\u0301"), QStringLiteral("\U0001F600"),
        QStringLiteral("\u00ad"),  QStringLiteral("Ωж"),      QStringLiteral("שלום"),
        QStringLiteral("مرحبا"),   QStringLiteral("(1)"),     QStringLiteral("…")};
    return all;
}

} // namespace

Generator::Generator()
    : m_engine(processSeed())
{
    qInfo("the values are those of %s=%u", seedVariable, processSeed());
}

int Generator::between(int least, int most)
{
    return std::uniform_int_distribution<int>(least, most)(m_engine);
}

int Generator::anyOrder(int least, int most)
{
    const double octaves = std::log2(static_cast<double>(most) - least + 1);
    const double exponent = std::uniform_real_distribution<double>(0, octaves)(m_engine);
    return qBound(least, least + static_cast<int>(std::exp2(exponent)) - 1, most);
}

QString Generator::oneOf(const QStringList &values)
{
    return values.at(between(0, values.size() - 1));
}

QString Generator::text(int most)
{
    // One script, or all of them.
    const bool mixed = oneIn(2);
    const QString only = oneOf(pieces());
    QString text;
    for (int left = between(0, most); left > 0; --left) {
        text += mixed ? oneOf(pieces()) : only;
    }
    return text;
}
