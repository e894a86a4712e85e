#include "tools/conformance/examination.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QSysInfo>

namespace {

QString gradeName(Finding::Grade grade)
{
    switch (grade) {
    case Finding::Grade::Good:
        return QStringLiteral("good");
    case Finding::Grade::Note:
        return QStringLiteral("note");
    case Finding::Grade::Mend:
        break;
    }
    return QStringLiteral("mend");
}

QJsonObject asJson(const Check &check)
{
    return {{QStringLiteral("id"), check.id},
            {QStringLiteral("grade"), gradeName(check.finding.grade)},
            {QStringLiteral("what"), check.finding.what},
            {QStringLiteral("mend"), check.finding.mend},
            {QStringLiteral("tookMs"),
             check.tookMs < 0 ? QJsonValue(QJsonValue::Null) : QJsonValue(check.tookMs)}};
}

void addFindings(QStringList &lines, const Examination &examination, Finding::Grade grade,
                 const QString &heading)
{
    if (examination.countOf(grade) == 0) {
        return;
    }
    lines += {QString(), heading};
    for (const Check &check : examination.checks) {
        if (check.finding.grade == grade) {
            lines += {QStringLiteral("  %1: %2").arg(check.id, check.finding.what),
                      QStringLiteral("    -> ") + check.finding.mend};
        }
    }
}

void addTimes(QStringList &lines, const Checks &checks)
{
    lines += {QString(), QStringLiteral("Slowest reply")};
    for (const char *call : {"hot", "association", "ask"}) {
        qint64 slowest = -1;
        for (const Check &check : checks) {
            const bool isRefusal = check.id.contains(QLatin1String(".refuses."));
            if (!isRefusal && check.id.startsWith(QLatin1String(call) + QLatin1Char('.'))) {
                slowest = qMax(slowest, check.tookMs);
            }
        }
        if (slowest >= 0) {
            lines += QStringLiteral("  %1: %2 ms").arg(QLatin1String(call)).arg(slowest);
        }
    }
}

void addGood(QStringList &lines, const Checks &checks)
{
    lines += {QString(), QStringLiteral("Good")};
    for (const Check &check : checks) {
        if (check.finding.grade == Finding::Grade::Good) {
            lines += QStringLiteral("  %1: %2").arg(check.id, check.finding.what);
        }
    }
}

} // namespace

int Examination::countOf(Finding::Grade grade) const
{
    int count = 0;
    for (const Check &check : checks) {
        count += check.finding.grade == grade ? 1 : 0;
    }
    return count;
}

QByteArray examinationAsJson(const Examination &examination)
{
    QJsonArray checks;
    for (const Check &check : examination.checks) {
        checks.append(asJson(check));
    }
    const QJsonObject counts = {
        {QStringLiteral("good"), examination.countOf(Finding::Grade::Good)},
        {QStringLiteral("note"), examination.countOf(Finding::Grade::Note)},
        {QStringLiteral("mend"), examination.countOf(Finding::Grade::Mend)},
    };
    const QJsonObject all = {
        {QStringLiteral("address"), examination.address},
        {QStringLiteral("tenant"), examination.tenant},
        {QStringLiteral("started"), examination.started.toString(Qt::ISODate)},
        {QStringLiteral("ended"), examination.ended.toString(Qt::ISODate)},
        {QStringLiteral("conforms"), examination.conforms()},
        {QStringLiteral("counts"), counts},
        {QStringLiteral("checks"), checks},
    };
    return QJsonDocument(all).toJson();
}

QString examinationAsSummary(const Examination &examination)
{
    QStringList lines = {
        QStringLiteral("Conformance of a question service"),
        QString(),
        QStringLiteral("service   ") + examination.address,
        QStringLiteral("tenant    ") + examination.tenant,
        QStringLiteral("examined  %1 to %2, from %3")
            .arg(examination.started.toString(Qt::ISODate), examination.ended.toString(Qt::ISODate),
                 QSysInfo::prettyProductName()),
        QStringLiteral("result    %1: %2 good, %3 noted, %4 to mend")
            .arg(examination.conforms() ? QStringLiteral("it conforms")
                                        : QStringLiteral("it does not conform"))
            .arg(examination.countOf(Finding::Grade::Good))
            .arg(examination.countOf(Finding::Grade::Note))
            .arg(examination.countOf(Finding::Grade::Mend)),
    };
    addFindings(lines, examination, Finding::Grade::Mend, QStringLiteral("To mend"));
    addFindings(lines, examination, Finding::Grade::Note, QStringLiteral("Noted"));
    addTimes(lines, examination.checks);
    addGood(lines, examination.checks);
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}
