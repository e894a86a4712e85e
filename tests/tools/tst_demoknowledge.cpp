#include "demoprocess.h"
#include "signedcall.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

/// What the shipped knowledge file holds, and what the service makes of it.
class TestDemoKnowledge : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void entries_areManyAndHaveIdsOfTheirOwn();
    void everyRecommendation_existsAndIsAnswered();
    void hotQuestions_fillMoreThanOnePage();
    void hotQuestions_areNeverMoreThanAskedFor_data();
    void hotQuestions_areNeverMoreThanAskedFor();
    void suggestions_holdTheTextAndAreAtMost21();
    void suggestions_ignoreCaseOfLatinLettersAndBlanksAround();
    void everyEntry_isFoundByIdQuestionAndAlias();
    void everyReply_isParagraphsThatSplitCleanly();
    void everyPicture_decodesAndIsOfModestSize();
    void recommendations_fillTwoPagesOrNone();
    void animations_areDrawnAsHighAsTheyAreShown();
    void recommendations_areNeverMoreThanAskedFor();
    void allThreeResultTypes_areReachable_data();
    void allThreeResultTypes_areReachable();
    void differentWording_findsTheRightAnswer_data();
    void differentWording_findsTheRightAnswer();

private:
    QJsonObject result(const QString &question, qint64 id = 0, int recommendSize = 15);

    DemoProcess m_service;
    QList<QJsonObject> m_entries;
};

namespace {

bool isNoHit(const QJsonObject &entry)
{
    return entry.value(QLatin1String("noHit")).toBool();
}

qint64 idOf(const QJsonObject &entry)
{
    return qRound64(entry.value(QLatin1String("id")).toDouble());
}

QString questionOf(const QJsonObject &entry)
{
    return entry.value(QLatin1String("question")).toString();
}

/// The pieces between the paragraph tags, as a client takes a reply apart.
QStringList pieces(const QString &reply)
{
    return reply.split(QRegularExpression(QStringLiteral("(<p>|</p>)")), Qt::SkipEmptyParts);
}

} // namespace

void TestDemoKnowledge::initTestCase()
{
    QFile file(DemoProcess::knowledgeFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject document = QJsonDocument::fromJson(file.readAll()).object();
    for (const QJsonValue entry : document.value(QLatin1String("entries")).toArray()) {
        m_entries.append(entry.toObject());
    }
    QVERIFY(m_service.start());
}

void TestDemoKnowledge::cleanupTestCase()
{
    QCOMPARE(m_service.stop(), 0);
}

QJsonObject TestDemoKnowledge::result(const QString &question, qint64 id, int recommendSize)
{
    const QByteArray body = compactJson(askBody(question, id, recommendSize));
    return sendSigned(m_service.httpUrl(askPath), body).result().toObject();
}

void TestDemoKnowledge::entries_areManyAndHaveIdsOfTheirOwn()
{
    QVERIFY(m_entries.size() >= 60);
    QSet<qint64> ids;
    QSet<QString> questions;
    for (const QJsonObject &entry : qAsConst(m_entries)) {
        ids.insert(idOf(entry));
        questions.insert(questionOf(entry));
    }
    QCOMPARE(ids.size(), m_entries.size());
    QCOMPARE(questions.size(), m_entries.size());
}

void TestDemoKnowledge::everyRecommendation_existsAndIsAnswered()
{
    QSet<qint64> answered;
    for (const QJsonObject &entry : qAsConst(m_entries)) {
        if (!isNoHit(entry)) {
            answered.insert(idOf(entry));
        }
    }
    for (const QJsonObject &entry : qAsConst(m_entries)) {
        QSet<qint64> seen;
        for (const QJsonValue value : entry.value(QLatin1String("recommends")).toArray()) {
            const qint64 id = qRound64(value.toDouble());
            QVERIFY2(answered.contains(id), qPrintable(questionOf(entry)));
            QVERIFY2(!seen.contains(id) && id != idOf(entry), qPrintable(questionOf(entry)));
            seen.insert(id);
        }
    }
}

void TestDemoKnowledge::hotQuestions_fillMoreThanOnePage()
{
    const CallReply reply = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody(1000)));
    QVERIFY(reply.result().toArray().size() >= 40);
}

void TestDemoKnowledge::hotQuestions_areNeverMoreThanAskedFor_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("a page") << 16;
    QTest::newRow("two pages and a half") << 40;
}

void TestDemoKnowledge::hotQuestions_areNeverMoreThanAskedFor()
{
    QFETCH(int, size);
    const CallReply reply = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody(size)));
    QVERIFY(reply.result().isArray());
    QCOMPARE(reply.result().toArray().size(), size);
}

void TestDemoKnowledge::suggestions_holdTheTextAndAreAtMost21()
{
    const QString text = QStringLiteral("怎么");
    const CallReply reply
        = sendSigned(m_service.httpUrl(associationPath), compactJson(associationBody(text, 500)));
    const QJsonArray all = reply.result().toArray();
    QCOMPARE(all.size(), 21);
    for (const QJsonValue &value : all) {
        QVERIFY(questionOf(value.toObject()).contains(text));
        QVERIFY(idOf(value.toObject()) > 0);
    }
    const CallReply four
        = sendSigned(m_service.httpUrl(associationPath), compactJson(associationBody(text, 4)));
    QCOMPARE(four.result().toArray().size(), 4);
    const CallReply none = sendSigned(m_service.httpUrl(associationPath),
                                      compactJson(associationBody(QString(), 4)));
    QCOMPARE(none.result().toArray().size(), 0);
}

void TestDemoKnowledge::suggestions_ignoreCaseOfLatinLettersAndBlanksAround()
{
    const auto count = [this](const char *text) {
        return sendSigned(m_service.httpUrl(associationPath),
                          compactJson(associationBody(QString::fromUtf8(text))))
            .result()
            .toArray()
            .size();
    };
    QVERIFY(count("VPN") > 0);
    QCOMPARE(count("vpn"), count("VPN"));
    QCOMPARE(count("  vPn "), count("VPN"));
}

void TestDemoKnowledge::everyEntry_isFoundByIdQuestionAndAlias()
{
    for (const QJsonObject &entry : qAsConst(m_entries)) {
        const QString title = isNoHit(entry) ? QString() : questionOf(entry);
        const auto found = [&](const QString &question, qint64 id) {
            return result(question, id).value(QLatin1String("standardQuestion")).toString();
        };
        QCOMPARE(found(QStringLiteral("?"), idOf(entry)), title);
        QCOMPARE(found(questionOf(entry), 0), title);
        for (const QJsonValue alias : entry.value(QLatin1String("aliases")).toArray()) {
            QCOMPARE(found(alias.toString(), 0), title);
        }
    }
}

void TestDemoKnowledge::everyReply_isParagraphsThatSplitCleanly()
{
    int shortest = 1000;
    int longest = 0;
    for (const QJsonObject &entry : qAsConst(m_entries)) {
        const QString reply = result(questionOf(entry)).value(QLatin1String("reply")).toString();
        QVERIFY2(reply.startsWith(QLatin1String("<p>")) && reply.endsWith(QLatin1String("</p>")),
                 qPrintable(questionOf(entry)));
        QVERIFY(!reply.contains(QLatin1String("{{")));
        const QStringList all = pieces(reply);
        shortest = qMin(shortest, all.size());
        longest = qMax(longest, all.size());
        for (const QString &piece : all) {
            // "img" marks a picture wherever it stands, and only inline pictures are shown.
            QCOMPARE(piece.contains(QLatin1String("img")),
                     piece.startsWith(QLatin1String("<img src=\"data:image/")));
            QVERIFY(!piece.simplified().isEmpty());
        }
    }
    QCOMPARE(shortest, 1);
    QVERIFY(longest >= 10);
}

void TestDemoKnowledge::everyPicture_decodesAndIsOfModestSize()
{
    const QRegularExpression form(QStringLiteral(
        "^<img src=\"data:image/(png|jpeg|gif);base64,([A-Za-z0-9+/]+=*)\" style=\"[^\"]*\"/>$"));
    int stills = 0;
    int animated = 0;
    int photographs = 0;
    for (const QJsonObject &entry : qAsConst(m_entries)) {
        const QString reply = result(questionOf(entry)).value(QLatin1String("reply")).toString();
        QSet<QString> types;
        for (const QString &piece : pieces(reply).filter(QStringLiteral("<img"))) {
            const QRegularExpressionMatch match = form.match(piece);
            QVERIFY2(match.hasMatch(), qPrintable(questionOf(entry)));
            QByteArray data = QByteArray::fromBase64(match.captured(2).toLatin1());
            QBuffer buffer(&data);
            QImageReader reader(&buffer);
            QCOMPARE(reader.format(), match.captured(1).toLatin1());
            QVERIFY(reader.size().width() >= 200 && reader.size().width() <= 480);
            if (match.captured(1) == QLatin1String("gif")) {
                QVERIFY(reader.imageCount() > 1);
            }
            QVERIFY(!reader.read().isNull());
            types.insert(match.captured(1));
        }
        animated += types.contains(QStringLiteral("gif")) ? 1 : 0;
        photographs += types.contains(QStringLiteral("jpeg")) ? 1 : 0;
        types.remove(QStringLiteral("gif"));
        stills += types.isEmpty() ? 0 : 1;
    }
    QVERIFY(stills >= 6);
    QVERIFY(animated >= 2);
    QVERIFY(photographs >= 1);
}

void TestDemoKnowledge::recommendations_fillTwoPagesOrNone()
{
    // A client shows five, and skips five with the first switch.
    QSet<int> sizes;
    for (const QJsonObject &entry : qAsConst(m_entries)) {
        sizes.insert(entry.value(QLatin1String("recommends")).toArray().size());
    }
    QCOMPARE(sizes, QSet<int>({0, 15}));
}

void TestDemoKnowledge::animations_areDrawnAsHighAsTheyAreShown()
{
    constexpr int shownHeight = 110;
    const QDir folder(
        QFileInfo(DemoProcess::knowledgeFile()).dir().filePath(QStringLiteral("pictures")));
    const QStringList files = folder.entryList({QStringLiteral("*.gif")});
    QVERIFY(files.size() >= 2);
    for (const QString &file : files) {
        QVERIFY2(QImageReader(folder.filePath(file)).size().height() <= shownHeight,
                 qPrintable(file));
    }
}

void TestDemoKnowledge::recommendations_areNeverMoreThanAskedFor()
{
    const QString question = QStringLiteral("云桌面新手入门指南");
    const auto recommends = [&](int size) {
        return result(question, 0, size).value(QLatin1String("recommends")).toArray();
    };
    QCOMPARE(recommends(15).size(), 15);
    QCOMPARE(recommends(4).size(), 4);
    QCOMPARE(recommends(0).size(), 0);
    const QJsonObject first = recommends(1).at(0).toObject();
    QCOMPARE(questionOf(first), QStringLiteral("如何登录云桌面？"));
    QCOMPARE(first.value(QLatin1String("questionId")).toInt(), 1001);
}

void TestDemoKnowledge::allThreeResultTypes_areReachable_data()
{
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("recommends");
    const auto row = [](const char *question, const char *type, bool recommends) {
        QTest::newRow(question) << QString::fromUtf8(question) << QString::fromUtf8(type)
                                << recommends;
    };
    row("怎样进入和退出全屏？", "QA_NORMAL_RESULT", false);
    row("登录后黑屏怎么办？", "MULTI_QA_RESULT", true);
    row("我的电脑坏了", "NO_RESULT", true);
    row("今天天气怎么样？", "NO_RESULT", false);
    row("打印纸放在什么地方领", "NO_RESULT", true);
    row("zzz qqq", "NO_RESULT", false);
    row("？！。", "NO_RESULT", false);
    row("", "NO_RESULT", false);
}

void TestDemoKnowledge::allThreeResultTypes_areReachable()
{
    QFETCH(QString, question);
    QFETCH(QString, type);
    QFETCH(bool, recommends);
    const QJsonObject found = result(question);
    QCOMPARE(found.value(QLatin1String("resultType")).toString(), type);
    QCOMPARE(!found.value(QLatin1String("recommends")).toArray().isEmpty(), recommends);
}

void TestDemoKnowledge::differentWording_findsTheRightAnswer_data()
{
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("title");
    const auto row = [](const char *question, const char *title) {
        QTest::newRow(question) << QString::fromUtf8(question) << QString::fromUtf8(title);
    };
    row("请问我的云桌面黑屏了该怎么办啊", "登录后黑屏怎么办？");
    row("打印机不能打印", "打印机无法打印怎么办？");
    row("ｖｐｎ 连不上", "VPN 连接失败怎么办？");
    row("忘了密码怎么办", "忘记登录密码怎么办？");
    row("麦克风用不了", "麦克风不能用怎么办？");
    row("云桌面好卡啊", "云桌面运行很慢怎么办？");
    row("我的云桌面黑屏了，客户端版本 7.2", "登录后黑屏怎么办？");
    row("今天云桌面特别慢，打开文件要半天", "云桌面运行很慢怎么办？");
    row("桌面太卡了，什么都做不了", "云桌面运行很慢怎么办？");
    row("登录以后一直黑屏，只看到鼠标", "登录后黑屏怎么办？");
    row("密码忘了，怎么办", "忘记登录密码怎么办？");
    row("我想把登录密码改一下", "如何修改登录密码？");
    row("账号被锁了，能帮我解锁吗", "提示账号被锁定怎么办？");
    row("提示用户名或密码错误，可是我没输错", "登录时提示“用户名或密码错误”");
    row("手机收不到验证码", "收不到短信验证码或动态码怎么办？");
    row("登录后说没有可用的桌面", "登录后提示“没有可用的桌面”");
    row("云桌面连不上了", "云桌面连接不上怎么办？");
    row("早上开始云桌面连接失败", "云桌面连接不上怎么办？");
    row("云桌面老是掉线", "云桌面经常断线重连是什么原因？");
    row("我在家里怎么用云桌面办公", "在家里如何使用云桌面？");
    row("家里的 wifi 很卡怎么解决", "无线网络下云桌面很卡怎么办？");
    row("服务器地址填什么", "客户端的服务器地址怎么填？");
    row("断开和注销有啥区别", "断开连接和注销有什么区别？");
    row("怎么把云桌面扩展到两个显示器上", "如何设置双屏或多屏显示？");
    row("分辨率怎么调", "如何调整分辨率？");
    row("字体太小了看不清", "字体和图标太小看不清怎么办？");
    row("怎么退出全屏", "怎样进入和退出全屏？");
    row("屏幕一直闪烁，还花屏", "画面颜色发白或花屏怎么办？");
    row("软件卡死了没有反应", "程序没有响应、卡死了怎么办？");
    row("看视频卡，一顿一顿的", "看视频不流畅怎么办？");
    row("从本机复制的文字粘贴不了", "无法复制粘贴怎么办？");
    row("怎么把本地文件传到云桌面里去", "怎样把本地文件传到云桌面？");
    row("想把云桌面的文件下载到自己电脑", "怎样把云桌面的文件下载到本地？");
    row("文件不小心删了，还能恢复吗", "文件误删了能找回吗？");
    row("C 盘满了怎么清理", "磁盘空间不足怎么办？");
    row("插上 U 盘没有反应", "U 盘在云桌面里看不到怎么办？");
    row("打印机打不出来", "打印机无法打印怎么办？");
    row("不能打中文，输入法没了", "中文输入法切换不了怎么办？");
    row("云桌面听不到声音", "云桌面没有声音怎么办？");
    row("开会时对方听不到我说话", "麦克风不能用怎么办？");
    row("云桌面里摄像头用不了", "摄像头在云桌面里打不开");
    row("VPN 连不上", "VPN 连接失败怎么办？");
    row("弹出证书过期的提示", "提示证书不受信任或已过期");
    row("怎么截图", "为什么不能截屏？");
    row("我要装个软件", "桌面里的软件怎么安装？");
    row("云桌面怎么重启", "如何重启云桌面？");
    row("内存不够用，想申请扩容", "如何申请增加内存或磁盘？");
    row("客户端怎么升级到最新版", "如何更新桌面客户端？");
    row("手机上能用云桌面吗", "手机和平板能登录云桌面吗？");
    row("服务台的电话是多少", "怎么联系服务台和报障？");
    row("我要转人工", "怎么联系服务台和报障？");
    row("你好", "你好");
    row("您好，在吗？", "你好");
    row("谢谢你！", "谢谢");
    row("好的，谢谢，问题解决了", "谢谢");
    row("再见", "再见");
    row("中午食堂有什么菜", "");
    row("股票涨了吗", "");
}

void TestDemoKnowledge::differentWording_findsTheRightAnswer()
{
    QFETCH(QString, question);
    QFETCH(QString, title);
    QCOMPARE(result(question).value(QLatin1String("standardQuestion")).toString(), title);
}

QTEST_GUILESS_MAIN(TestDemoKnowledge)
#include "tst_demoknowledge.moc"
