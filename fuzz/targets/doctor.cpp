#include "app/base/settingsfile.h"
#include "fuzz/support/check.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/scratchfolder.h"
#include "fuzz/support/target.h"
#include "service/reply/answer.h"
#include "service/reply/replyreading.h"
#include "tools/doctor/replyjudgement.h"
#include "tools/doctor/settingscheck.h"

#include <QJsonObject>

namespace {

using Grade = Finding::Grade;

constexpr int shortestTold = 8; ///< characters: a shorter secret may stand in any sentence

void checkSentence(const Finding &finding)
{
    check(!finding.what.isEmpty(), "a finding says what was found");
    check((finding.grade == Grade::Good) == finding.mend.isEmpty(),
          "what is not good says what to do");
}

void checkReply(const CallKind &kind, const QByteArray &reply, const QString &error)
{
    const Finding finding = judgeReply(kind, reply, error);
    checkSentence(finding);
    if (finding.grade == Grade::Good) {
        check(error.isEmpty() && reply.contains("\"errorCode\":\"0\""), "a good reply says so");
        const ParsedReply parsed = parseReply(reply);
        check(readStatus(parsed.document).errorCode == QLatin1String("0"),
              "a good reply has the code of success");
        check(&kind == &askKind ? readAnswer(parsed.document).kind != AnswerKind::Unknown
                                : resultOf(parsed.document).isArray(),
              "a good reply is of use to the program");
    }
}

void checkFile(const QString &path)
{
    const Findings findings = checkSettings(path);
    check(!findings.isEmpty() && findings.first().grade == Grade::Good,
          "the findings begin with what is well");
    const SettingsFile settings(path);
    for (const Finding &finding : findings) {
        checkSentence(finding);
        for (const char *key : {"Authorization/xcafirst", "Authorization/xcasecond"}) {
            const QString value = settings.value(QLatin1String(key)).toString();
            check(!finding.what.startsWith(QLatin1String(key)) || value.size() < shortestTold
                      || !(finding.what + finding.mend).contains(value),
                  "a complaint does not tell the secret");
        }
    }
}

} // namespace

/// What the doctor reads: a settings file, a reply, the name of a network error.
void runTarget(const QByteArray &input)
{
    static ScratchFolder folder;
    const QByteArrayList parts = partsOf(input, 3);
    checkFile(folder.writeSettings(parts.at(0)));
    for (const CallKind *kind : {&hotKind, &associationKind, &askKind}) {
        checkReply(*kind, parts.at(1), QString());
        checkReply(*kind, parts.at(1), QString::fromUtf8(parts.at(2)));
    }
}
