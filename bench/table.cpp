#include "bench/table.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTextStream>

#include <cmath>

namespace {

QString number(double value)
{
    return QString::number(value, 'f', value < 10 ? 2 : value < 100 ? 1 : 0);
}

QString withUnit(double value, const QString &unit)
{
    return number(value) + QLatin1Char(' ') + unit;
}

QString result(const Row &row, double value)
{
    return row.bare > 0 ? QString::number(value, 'f', 2) : withUnit(value, row.unit);
}

void printLine(QTextStream &out, const QStringList &cells)
{
    constexpr int widths[] = {51, 38, 10, 10, 10, 10, 10};
    QString line;
    for (int i = 0; i < cells.size(); ++i) {
        const int width = widths[i];
        line += (i < 2 ? cells.at(i).leftJustified(width) : cells.at(i).rightJustified(width))
              + QStringLiteral("  ");
    }
    out << line << '\n';
}

QJsonObject object(const Row &row)
{
    QJsonObject result{{QStringLiteral("id"), row.id},
                       {QStringLiteral("what"), row.what},
                       {QStringLiteral("unit"), row.unit},
                       {QStringLiteral("measured"), row.measured},
                       {QStringLiteral("reachesGoal"), row.reachesGoal()},
                       {QStringLiteral("within"), row.isWithin()}};
    if (std::isfinite(row.atMost)) {
        result.insert(QStringLiteral("atMost"), row.atMost);
    }
    if (row.heldTo > 0) {
        result.insert(QStringLiteral("heldTo"), row.heldTo);
    }
    if (row.bare > 0) {
        result.insert(QStringLiteral("against"), row.against);
        result.insert(QStringLiteral("bare"), row.bare);
        result.insert(QStringLiteral("ratio"), row.value());
    }
    return result;
}

} // namespace

void printTable(const Rows &rows)
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    printLine(out, {QStringLiteral("what"), QStringLiteral("against"), QStringLiteral("ours"),
                    QStringLiteral("bare"), QStringLiteral("result"), QStringLiteral("goal"),
                    QStringLiteral("held to")});
    for (const Row &row : rows) {
        printLine(out, {row.what, row.against, withUnit(row.measured, row.unit),
                        row.bare > 0 ? withUnit(row.bare, row.unit) : QString(),
                        result(row, row.value()),
                        std::isinf(row.atMost) ? QStringLiteral("stated") : result(row, row.atMost),
                        row.heldTo > 0 ? result(row, row.heldTo) : QString()});
    }
    for (const Row &row : rows) {
        if (!row.isWithin()) {
            out << "beyond its limit: " << row.what << '\n';
        } else if (!row.reachesGoal()) {
            out << "misses its goal, within what it is held to: " << row.what << '\n';
        }
    }
}

bool writeResults(const Rows &rows, const QString &path)
{
    QJsonArray array;
    for (const Row &row : rows) {
        array.append(object(row));
    }
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly)
        && file.write(QJsonDocument(array).toJson(QJsonDocument::Indented)) > 0 && file.commit();
}
