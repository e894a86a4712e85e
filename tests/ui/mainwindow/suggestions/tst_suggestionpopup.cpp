#include "resources/resources.h"
#include "service/reply/listedquestion.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"
#include "ui/text/textwrap.h"

#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

/// The popup of suggestions: where it is, what its rows show, and what a click says.
class TestSuggestionPopup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void place_data();
    void place();
    void lookAndCloseButton();
    void rows_haveTheirHeightAndStyle();
    void noRowNeedsScrolling();
    void moreThanTheCapacity_areLeftOut();
    void typedText_isHighlighted();
    void invalidPattern_showsTheTextAlone();
    void markup_isShownAsItIs();
    void widthOf574_isWhole_and575IsElided();
    void endlessText_isElidedAtOnce();
    void suggestionWithoutText_makesARowToo();
    void click_saysQuestionAndId();
    void closeButton_asksToClose();

private:
    SuggestionPopup &show(const QVector<ListedQuestion> &suggestions,
                          const QString &typed = QString());
    [[nodiscard]] QListWidget *list() const { return m_popup->findChild<QListWidget *>(); }
    [[nodiscard]] QWidget *row(int number) const;
    [[nodiscard]] QLabel *label(int number) const { return row(number)->findChild<QLabel *>(); }
    [[nodiscard]] QPushButton *button(int number) const
    {
        return row(number)->findChild<QPushButton *>();
    }
    [[nodiscard]] QPushButton *closeButton() const;

    std::unique_ptr<QWidget> m_window;
    SuggestionPopup *m_popup = nullptr;
};

namespace {

constexpr int widestText = 575;

QVector<ListedQuestion> suggestions(int count)
{
    QVector<ListedQuestion> questions;
    for (int i = 1; i <= count; ++i) {
        questions.append({QStringLiteral("建议%1").arg(i), 100 + i});
    }
    return questions;
}

} // namespace

void TestSuggestionPopup::initTestCase()
{
    initResources();
}

void TestSuggestionPopup::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->setFixedSize(920, 640);
    m_window->show();
}

void TestSuggestionPopup::cleanup()
{
    m_window.reset();
}

SuggestionPopup &TestSuggestionPopup::show(const QVector<ListedQuestion> &suggestions,
                                           const QString &typed)
{
    m_popup = new SuggestionPopup(suggestions, typed, m_window.get());
    return *m_popup;
}

QWidget *TestSuggestionPopup::row(int number) const
{
    return list()->itemWidget(list()->item(number - 1));
}

QPushButton *TestSuggestionPopup::closeButton() const
{
    return m_popup->findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
}

void TestSuggestionPopup::place_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QRect>("place");
    QTest::newRow("1") << 1 << QRect(0, 446, 648, 44);
    QTest::newRow("3") << 3 << QRect(0, 390, 648, 100);
    QTest::newRow("10") << 10 << QRect(0, 194, 648, 296);
    QTest::newRow("21") << 21 << QRect(0, -114, 648, 604);
}

void TestSuggestionPopup::place()
{
    QFETCH(int, count);
    QFETCH(QRect, place);
    show(suggestions(count));
    QVERIFY(m_popup->isVisible());
    QCOMPARE(m_popup->geometry(), place);
    QCOMPARE(m_popup->geometry().bottom(), 489);
    QCOMPARE(list()->geometry(), QRect(16, 10, 600, 28 * count));
    QCOMPARE(list()->count(), count);
    QCOMPARE(list()->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(list()->focusPolicy(), Qt::NoFocus);
    QCOMPARE(list()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

void TestSuggestionPopup::lookAndCloseButton()
{
    show(suggestions(3));
    QCOMPARE(m_popup->styleSheet(), QStringLiteral("QWidget{background-color:white;border:none;}"));
    const auto *shadow = qobject_cast<QGraphicsDropShadowEffect *>(m_popup->graphicsEffect());
    QVERIFY(shadow != nullptr);
    QCOMPARE(shadow->color(), QColor(238, 240, 244));
    QCOMPARE(shadow->blurRadius(), 28.0);
    QCOMPARE(list()->styleSheet(), QStringLiteral("QListWidget{background-color:white;}"));
    QCOMPARE(list()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QVERIFY(list()->verticalScrollBar()->styleSheet().contains(
        QStringLiteral("rgba(207,207,207,70%)")));
    QCOMPARE(closeButton()->geometry(), QRect(622, 10, 16, 16));
    QVERIFY(closeButton()->styleSheet().contains(QStringLiteral(":/Images/btn-close.png")));
    QCOMPARE(closeButton()->accessibleName(), QStringLiteral("关闭"));
}

void TestSuggestionPopup::rows_haveTheirHeightAndStyle()
{
    show(suggestions(3));
    QCOMPARE(list()->item(1)->sizeHint().height(), 28);
    QCOMPARE(list()->visualItemRect(list()->item(1)).height(), 28);
    QCOMPARE(row(2)->size(), QSize(600, 28));
    QCOMPARE(row(2)->styleSheet(), QStringLiteral("background-color:rgb(255, 255, 255);"));
    QCOMPARE(label(2)->styleSheet(),
             QStringLiteral("QLabel{color:rgb(117,117,117);font:12px Microsoft YaHei;text-align: "
                            "left;border:none;}"));
    QCOMPARE(button(2)->styleSheet(),
             QStringLiteral("QPushButton{background-color:transparent;border:none;}"));
    QCOMPARE(button(2)->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button(2)->accessibleName(), QStringLiteral("建议2"));
    QCOMPARE(button(2)->geometry(), QRect(0, 0, 600, 28));
}

void TestSuggestionPopup::noRowNeedsScrolling()
{
    show(suggestions(10));
    QVERIFY(!list()->verticalScrollBar()->isVisible());
    QCOMPARE(list()->viewport()->size(), QSize(600, 280));
}

void TestSuggestionPopup::moreThanTheCapacity_areLeftOut()
{
    show(suggestions(1000));
    QCOMPARE(list()->count(), 21);
    QCOMPARE(m_popup->geometry(), QRect(0, -114, 648, 604));
}

void TestSuggestionPopup::typedText_isHighlighted()
{
    show({{QStringLiteral("VPN 连接失败"), 1}}, QStringLiteral("vpn"));
    QCOMPARE(label(1)->text(),
             QStringLiteral("<font style='font-size:12px; background-color:white; "
                            "color:rgb(41,100,245);'>VPN</font> 连接失败"));
}

void TestSuggestionPopup::invalidPattern_showsTheTextAlone()
{
    show({{QStringLiteral("U [盘]"), 1}}, QStringLiteral("["));
    QCOMPARE(label(1)->text(), QStringLiteral("U [盘]"));
}

void TestSuggestionPopup::markup_isShownAsItIs()
{
    show({{QStringLiteral("<b>a</b>"), 1}}, QStringLiteral("x"));
    QCOMPARE(label(1)->text(), QStringLiteral("<b>a</b>"));
    QCOMPARE(label(1)->textFormat(), Qt::PlainText);
}

void TestSuggestionPopup::widthOf574_isWhole_and575IsElided()
{
    show(suggestions(1));
    const QFontMetrics metrics = label(1)->fontMetrics();
    QString longest;
    while (metrics.horizontalAdvance(longest + QLatin1Char('i')) < widestText) {
        longest += QLatin1Char('i');
    }
    const QString longer = longest + QLatin1Char('i');
    show({{longest, 1}, {longer, 2}}, QStringLiteral("x"));
    QCOMPARE(label(1)->text(), longest);
    QCOMPARE(button(1)->toolTip(), QString());
    QCOMPARE(label(2)->text(), metrics.elidedText(longer, Qt::ElideRight, widestText));
    QCOMPARE(button(2)->toolTip(), longer);
}

void TestSuggestionPopup::endlessText_isElidedAtOnce()
{
    const QString endless(1'000'000, QChar(u'长'));
    show({{endless, 1}}, QStringLiteral("长"));
    QVERIFY(label(1)->text().size() < 10'000);
    QVERIFY(label(1)->text().contains(QStringLiteral("<font style='font-size:12px;")));
    QVERIFY(label(1)->text().endsWith(QChar(u'…')));
    QCOMPARE(button(1)->toolTip(), rowPart(endless)); // a tip of a megabyte takes seconds
}

void TestSuggestionPopup::suggestionWithoutText_makesARowToo()
{
    show({{QString(), 3}});
    QSignalSpy clicked(m_popup, &SuggestionPopup::suggestionClicked);
    QTest::mouseClick(button(1), Qt::LeftButton);
    QCOMPARE(clicked.value(0), (QVariantList{QString(), Q_INT64_C(3)}));
}

void TestSuggestionPopup::click_saysQuestionAndId()
{
    show(suggestions(3));
    QSignalSpy clicked(m_popup, &SuggestionPopup::suggestionClicked);
    QTest::mouseClick(button(2), Qt::LeftButton);
    QTest::keyClick(button(3), Qt::Key_Space);
    QCOMPARE(clicked.value(0), (QVariantList{QStringLiteral("建议2"), Q_INT64_C(102)}));
    QCOMPARE(clicked.value(1), (QVariantList{QStringLiteral("建议3"), Q_INT64_C(103)}));
}

void TestSuggestionPopup::closeButton_asksToClose()
{
    show(suggestions(3));
    QSignalSpy closing(m_popup, &SuggestionPopup::closeClicked);
    QTest::mouseClick(closeButton(), Qt::LeftButton);
    QCOMPARE(closing.count(), 1);
}

QTEST_MAIN(TestSuggestionPopup)
#include "tst_suggestionpopup.moc"
