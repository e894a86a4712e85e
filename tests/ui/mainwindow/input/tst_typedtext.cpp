#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QTest>
#include <QTextEdit>

/// What people put into the input box, and what becomes of it.
class TestTypedText : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void sentText_data();
    void sentText();
    void blankText_isClearedOnly_data();
    void blankText_isClearedOnly();
    void megabyte_isPasted_ticked_andSent();
    void tenThousandLines_areSentAsOne();
    void whileAWordIsComposed_returnDoesNotSend();
    void composedWord_isSentAfterItsEnd();
    void composition_thatIsTakenBack_leavesReturnToSend();
    void droppedText_isRefused();
    void pastedMarkup_isPlainText();
    void tab_leavesTheBox();

private:
    void compose(const QString &word, const QString &committed = QString()) const;

    std::unique_ptr<WindowBench> m_bench;
};

namespace {

constexpr qint64 patienceMs = 30'000; // a frozen window would take minutes

} // namespace

void TestTypedText::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->timer("associationTick").stop();
    m_bench->startGreeted();
}

void TestTypedText::cleanup()
{
    m_bench.reset();
}

void TestTypedText::compose(const QString &word, const QString &committed) const
{
    QInputMethodEvent event(word, {});
    event.setCommitString(committed);
    QApplication::sendEvent(m_bench->input(), &event);
}

void TestTypedText::sentText_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("sent");
    QTest::newRow("control characters")
        << QStringLiteral("a\x01\x02\x1B[31mb") << QStringLiteral("a\x01\x02\x1B[31mb");
    QTest::newRow("other blanks") << QStringLiteral("\u3000桌面\u00A0黑屏\u3000")
                                  << QStringLiteral("桌面 黑屏");
    QTest::newRow("markup") << QStringLiteral("<b>粗</b> & <img src=x>")
                            << QStringLiteral("<b>粗</b> & <img src=x>");
    QTest::newRow("beyond the basic plane")
        << QStringLiteral("\U0001F600\U00020000") << QStringLiteral("\U0001F600\U00020000");
    QTest::newRow("right to left") << QStringLiteral("\u202Eabc") << QStringLiteral("\u202Eabc");
    QTest::newRow("quotes and backslashes")
        << QStringLiteral(R"("C:\temp" 'x')") << QStringLiteral(R"("C:\temp" 'x')");
}

void TestTypedText::sentText()
{
    QFETCH(QString, typed);
    QFETCH(QString, sent);
    m_bench->input()->setPlainText(typed);
    m_bench->window().showAssociation();
    m_bench->window().send_messages();
    QCOMPARE(m_bench->questions(), QStringList{sent});
    QCOMPARE(m_bench->bodies(WindowBench::askPath).value(0).value(QStringLiteral("rawQuery")),
             QJsonValue(sent));
    QCOMPARE(m_bench->input()->toPlainText(), QString());
}

void TestTypedText::blankText_isClearedOnly_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("nothing") << QString();
    QTest::newRow("spaces") << QStringLiteral("    ");
    QTest::newRow("line breaks") << QStringLiteral("\n\n\n");
    QTest::newRow("tabs and full-width spaces") << QStringLiteral("\t\u3000\t");
}

void TestTypedText::blankText_isClearedOnly()
{
    QFETCH(QString, typed);
    const LogCapture log;
    m_bench->send(typed);
    QCOMPARE(m_bench->input()->toPlainText(), QString());
    QVERIFY(m_bench->questions().isEmpty());
    QCOMPARE(log.lines(), QStringList());
}

void TestTypedText::megabyte_isPasted_ticked_andSent()
{
    QApplication::clipboard()->setText(QString(1'000'000, QChar(u'长')));
    QElapsedTimer clock;
    clock.start();
    m_bench->input()->paste();
    const qint64 pasted = clock.restart();
    m_bench->window().showAssociation();
    const qint64 ticked = clock.restart();
    m_bench->window().send_messages();
    const qint64 sent = clock.restart();
    qInfo("pasted in %lld ms, ticked in %lld ms, sent in %lld ms", pasted, ticked, sent);
    QCOMPARE(m_bench->bodies(WindowBench::askPath)
                 .value(0)
                 .value(QStringLiteral("rawQuery"))
                 .toString()
                 .size(),
             1'000'000);
    QCOMPARE(m_bench->input()->toPlainText(), QString());
    QVERIFY(m_bench->questions().first().endsWith(QStringLiteral("长…"))); // shown in part
    QVERIFY(pasted + ticked + sent < patienceMs);
}

void TestTypedText::tenThousandLines_areSentAsOne()
{
    const QString lines = QStringLiteral("一行\n").repeated(10'000);
    QElapsedTimer clock;
    clock.start();
    m_bench->input()->setPlainText(lines);
    m_bench->window().showAssociation();
    m_bench->window().send_messages();
    qInfo("10,000 lines took %lld ms", clock.elapsed());
    QCOMPARE(m_bench->bodies(WindowBench::askPath).value(0).value(QStringLiteral("rawQuery")),
             QJsonValue(QStringLiteral("一行 ").repeated(10'000).trimmed()));
    QVERIFY(clock.elapsed() < patienceMs);
}

void TestTypedText::whileAWordIsComposed_returnDoesNotSend()
{
    m_bench->input()->setPlainText(QStringLiteral("桌面"));
    m_bench->input()->moveCursor(QTextCursor::End);
    compose(QStringLiteral("heiping"));
    QTest::keyClick(m_bench->input(), Qt::Key_Return);
    QVERIFY(m_bench->questions().isEmpty());
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("桌面")); // nor a new line
}

void TestTypedText::composedWord_isSentAfterItsEnd()
{
    compose(QStringLiteral("heiping"));
    compose(QString(), QStringLiteral("黑屏"));
    QTest::keyClick(m_bench->input(), Qt::Key_Return);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("黑屏")});
}

void TestTypedText::composition_thatIsTakenBack_leavesReturnToSend()
{
    m_bench->input()->setPlainText(QStringLiteral("桌面"));
    compose(QStringLiteral("hei"));
    compose(QString());
    QTest::keyClick(m_bench->input(), Qt::Key_Return);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("桌面")});
}

void TestTypedText::droppedText_isRefused()
{
    QVERIFY(!m_bench->input()->acceptDrops());
    QVERIFY(!m_bench->input()->viewport()->acceptDrops());
}

void TestTypedText::pastedMarkup_isPlainText()
{
    QVERIFY(!m_bench->input()->acceptRichText());
    QApplication::clipboard()->setText(QStringLiteral("<b>粗</b>"));
    m_bench->input()->paste();
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("<b>粗</b>"));
}

void TestTypedText::tab_leavesTheBox()
{
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    QTest::keyClicks(m_bench->input(), QStringLiteral("a"));
    QTest::keyClick(m_bench->input(), Qt::Key_Tab);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("a"));
    QVERIFY(m_bench->window().focusWidget() != m_bench->input());
}

QTEST_MAIN(TestTypedText)
#include "tst_typedtext.moc"
