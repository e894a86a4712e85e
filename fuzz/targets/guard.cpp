#include "fuzz/support/check.h"
#include "fuzz/support/target.h"
#include "localchannel/guardmessage.h"
#include "localchannel/sysguardqueststhread.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QQueue>
#include <QVector>

namespace {

/// What is done between two slices of the bytes.
enum class Step : uchar { Nothing, Ready, Finished, Count };

/// One byte says how long a slice is and what follows it.
struct Slice
{
    explicit Slice(uchar control)
        : step(static_cast<Step>(control % static_cast<uchar>(Step::Count)))
        , length(control / static_cast<uchar>(Step::Count))
    {
    }

    Step step;
    int length; ///< bytes
};

/// The channel's queue as it is told: what is handed over when.
class PlainQueue
{
public:
    void take(const QByteArray &slice)
    {
        QByteArray bytes = slice.trimmed();
        const int nul = bytes.indexOf('\0');
        bytes = nul < 0 ? bytes : bytes.left(nul);
        const QByteArray clean = QString::fromUtf8(bytes).toUtf8();
        QJsonParseError problem;
        const QJsonDocument document = QJsonDocument::fromJson(clean, &problem);
        if (problem.error == QJsonParseError::NoError) {
            m_waiting.enqueue(document.object());
            if (m_ready && m_waiting.size() == 1) {
                handOver();
            }
        }
    }

    void follow(Step step)
    {
        m_ready = m_ready || step == Step::Ready;
        if (step != Step::Nothing) {
            handOver();
        }
    }

    QVector<QJsonObject> handedOver;

private:
    void handOver()
    {
        if (!m_waiting.isEmpty()) {
            handedOver.append(m_waiting.dequeue());
        }
    }

    QQueue<QJsonObject> m_waiting;
    bool m_ready = false;
};

void checkQuestion(const QJsonObject &message)
{
    const QString question = guardQuestion(message);
    check(!question.contains(QChar(QChar::Null)), "a question ends at its NUL");
    const QString sent = message.value(QLatin1String("question")).toString();
    check(!sent.isEmpty() || question.isEmpty(), "no question comes of nothing");
}

} // namespace

/// The bytes of a guard client in slices of any length, up to the questions that are asked. A slice
/// is what arrives at once; the byte before it says how long it is and what happens after it.
void runTarget(const QByteArray &input)
{
    SysguardQuestsThread channel(nullptr);
    PlainQueue plain;
    QVector<QJsonObject> asked;
    QObject::connect(&channel, &SysguardQuestsThread::sysQuests_signal, &channel,
                     [&asked](const QJsonObject &question) { asked.append(question); });
    for (int at = 0; at < input.size();) {
        const Slice slice(static_cast<uchar>(input.at(at)));
        const QByteArray bytes = input.mid(at + 1, slice.length);
        at += 1 + slice.length;
        channel.socketReadData(bytes);
        plain.take(bytes);
        if (slice.step == Step::Ready) {
            channel.rightRegionIniSuccess();
        } else if (slice.step == Step::Finished) {
            channel.QAFinishedNestQuest();
        }
        plain.follow(slice.step);
        check(asked == plain.handedOver, "questions are handed over as the queue has them");
    }
    for (const QJsonObject &question : qAsConst(asked)) {
        checkQuestion(question);
    }
}
