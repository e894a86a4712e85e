#include "demoprocess.h"
#include "resources/resources.h"
#include "signedcall.h"
#include "tests/ui/support/answerfold.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

/// How the answers of the demo service look in the conversation.
class TestDemoAnswers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void fold_cutsNoRow_data();
    void fold_cutsNoRow();
    void steps_hangBehindTheirNumbers();

private:
    QJsonObject result(const QString &question);

    DemoProcess m_service;
};

void TestDemoAnswers::initTestCase()
{
    initResources();
    QVERIFY(m_service.start());
}

void TestDemoAnswers::cleanupTestCase()
{
    QCOMPARE(m_service.stop(), 0);
}

void TestDemoAnswers::fold_cutsNoRow_data()
{
    QTest::addColumn<QString>("question");
    QFile file(DemoProcess::knowledgeFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject document = QJsonDocument::fromJson(file.readAll()).object();
    for (const QJsonValue value : document.value(QLatin1String("entries")).toArray()) {
        const QJsonObject entry = value.toObject();
        if (!entry.value(QLatin1String("noHit")).toBool()) {
            const QString question = entry.value(QLatin1String("question")).toString();
            QTest::newRow(qPrintable(question)) << question;
        }
    }
}

QJsonObject TestDemoAnswers::result(const QString &question)
{
    const QByteArray body = compactJson(askBody(question, 0, 15));
    return sendSigned(m_service.httpUrl(askPath), body).result().toObject();
}

void TestDemoAnswers::fold_cutsNoRow()
{
    QFETCH(QString, question);
    const QJsonObject found = result(question);
    QCOMPARE(found.value(QLatin1String("standardQuestion")).toString(), question);
    const QString reply = found.value(QLatin1String("reply")).toString();
    const bool hasRecommends = !found.value(QLatin1String("recommends")).toArray().isEmpty();
    const AnswerFold fold = measureFold(question, reply, hasRecommends);
    QVERIFY2(fold.mistake().isEmpty(), qPrintable(fold.mistake()));
    // A step is a block of its own that hangs behind its number.
    static const QRegularExpression flatStep(QStringLiteral("<(p|div|br/?)>(<b>)?\\d+\\. "));
    QVERIFY(!reply.contains(flatStep));
}

void TestDemoAnswers::steps_hangBehindTheirNumbers()
{
    const QString reply
        = result(QStringLiteral("磁盘空间不足怎么办？")).value(QLatin1String("reply")).toString();
    const QRegularExpression step(
        QStringLiteral("<div style=\"margin-left:14px;text-indent:-14px;[^\"]*\">[123]\\. "));
    QCOMPARE(reply.count(step), 3);
}

QTEST_MAIN(TestDemoAnswers)
#include "tst_demoanswers.moc"
