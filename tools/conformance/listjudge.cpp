#include "tools/conformance/listjudge.h"

#include "service/reply/listedquestion.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

/// How one kind of list is read.
struct ListKind
{
    const char *idMember;
    int idBits;
    QVector<ListedQuestion> (*read)(const QJsonArray &list);
};

QVector<ListedQuestion> readNarrow(const QJsonArray &list)
{
    return readRecommendations(list);
}

const ListKind wideKind = {"id", 64, readListedQuestions};
const ListKind narrowKind = {"questionId", 32, readNarrow};

QString at(int index, const QString &what)
{
    return QStringLiteral("element %1: ").arg(index) + what;
}

/// Whether the client reads the id as it stands; what does not fit reads as 0.
bool idFits(const QJsonValue &id, qint64 read)
{
    return id.isDouble() && (read != 0 || qIsNull(id.toDouble()));
}

void judgeElement(Findings &findings, const ListKind &kind, int index, const QJsonValue &element,
                  const ListedQuestion &read)
{
    if (!element.isObject()) {
        findings.append(toMend(at(index, QStringLiteral("it is no object")),
                               QStringLiteral("Give it a question and an id.")));
        return;
    }
    const QLatin1String idMember(kind.idMember);
    if (read.text.trimmed().isEmpty()) {
        findings.append(toMend(at(index, QStringLiteral("question is missing, empty or no text")),
                               QStringLiteral("An empty row would be shown.")));
    } else if (read.text.size() > longestListedText) {
        findings.append(
            toMend(at(index, QStringLiteral("question has %1 characters").arg(read.text.size())),
                   QStringLiteral("A row shows a line: keep it below %1.").arg(longestListedText)));
    }
    if (!idFits(element.toObject().value(idMember), read.id)) {
        findings.append(toMend(
            at(index,
               idMember + QStringLiteral(" is no whole number within %1 bits").arg(kind.idBits)),
            QStringLiteral("The client would ask with 0, by the words alone.")));
    }
}

/// One complaint of each sort is enough, with how often it occurs.
Findings firstOfEachSort(const Findings &all)
{
    Findings firsts;
    QVector<int> counts;
    for (const Finding &finding : all) {
        int i = 0;
        while (i < firsts.size() && firsts.at(i).mend != finding.mend) {
            ++i;
        }
        if (i == firsts.size()) {
            firsts.append(finding);
            counts.append(0);
        }
        ++counts[i];
    }
    for (int i = 0; i < firsts.size(); ++i) {
        if (counts.at(i) > 1) {
            firsts[i].what += QStringLiteral(" (and %1 more)").arg(counts.at(i) - 1);
        }
    }
    return firsts;
}

Findings judgeList(const ListKind &kind, const QJsonValue &result, const QString &name)
{
    if (!result.isArray()) {
        return {toMend(name + QStringLiteral(" is missing or no list"),
                       QStringLiteral("It is a list of objects: section 4 of the protocol."))};
    }
    const QJsonArray list = result.toArray();
    const QVector<ListedQuestion> read = kind.read(list);
    Findings findings;
    for (int i = 0; i < list.size(); ++i) {
        judgeElement(findings, kind, i, list.at(i), read.at(i));
    }
    return firstOfEachSort(findings);
}

void noteMoreThanAsked(Findings &findings, int size, int asked)
{
    if (size > asked) {
        findings.append(
            note(QStringLiteral("%1 elements for a recommendSize of %2").arg(size).arg(asked),
                 QStringLiteral("Give no more than is asked for.")));
    }
}

} // namespace

Findings judgeHotList(const QJsonValue &result, int asked)
{
    Findings findings = judgeList(wideKind, result, QStringLiteral("result"));
    if (result.isArray() && asked > 0 && result.toArray().isEmpty()) {
        findings.append(toMend(QStringLiteral("the list is empty"),
                               QStringLiteral("The window then shows its local questions.")));
    }
    noteMoreThanAsked(findings, result.toArray().size(), asked);
    return findings;
}

Findings judgeSuggestionList(const QJsonValue &result, int asked)
{
    Findings findings = judgeList(wideKind, result, QStringLiteral("result"));
    const int size = result.toArray().size();
    if (size > mostSuggestions) {
        findings.append(toMend(QStringLiteral("%1 suggestions").arg(size),
                               QStringLiteral("The window has room for %1: send no more, whatever "
                                              "recommendSize says.")
                                   .arg(mostSuggestions)));
    } else {
        noteMoreThanAsked(findings, size, asked);
    }
    return findings;
}

Findings judgeRecommendations(const QJsonValue &recommends, int asked)
{
    Findings findings = judgeList(narrowKind, recommends, QStringLiteral("recommends"));
    noteMoreThanAsked(findings, recommends.toArray().size(), asked);
    return findings;
}
