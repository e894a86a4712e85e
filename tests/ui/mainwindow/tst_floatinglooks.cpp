#include "service/reply/listedquestion.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/frame/aboutmenu.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"
#include "ui/style/compositor.h"
#include "ui/style/styles.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QToolTip>

#include <algorithm>

namespace {

const QColor hoverOnWhite(243, 244, 247);
const QColor markBlue(42, 100, 244);

const QString longText = QStringLiteral("很长的问题").repeated(40);

/// The tool tip that is seen; null when there is none.
QWidget *toolTip()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto isTip = [](const QWidget *window) {
        return window->isVisible() && window->inherits("QTipLabel");
    };
    const auto tip = std::find_if(windows.cbegin(), windows.cend(), isTip);
    return tip == windows.cend() ? nullptr : *tip;
}

void enter(QWidget *widget)
{
    QEvent event(QEvent::Enter);
    QCoreApplication::sendEvent(widget, &event);
}

void leave(QWidget *widget)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(widget, &event);
}

/// Whether \a floating has round corners: what is below is seen there, or, where the system says
/// that it blends nothing, as Wine does, they are cut off.
bool isRound(QWidget *floating)
{
    return screenIsComposited() ? floating->grab().toImage().pixelColor(0, 0).alpha() == 0
                                : !floating->mask().isEmpty() && !floating->mask().contains({0, 0});
}

/// How far \a one and \a other are apart in their most different part.
int distance(const QColor &one, const QColor &other)
{
    return std::max({qAbs(one.red() - other.red()), qAbs(one.green() - other.green()),
                     qAbs(one.blue() - other.blue())});
}

/// How many pixels of \a widget are about of this \a colour.
int pixelsOf(QWidget *widget, const QColor &colour)
{
    constexpr int alike = 24;
    const QImage image = widget->grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += distance(image.pixelColor(x, y), colour) <= alike ? 1 : 0;
        }
    }
    return count;
}

/// The brightness of the darkest pixel of \a widget.
int darkest(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    int dark = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            dark = std::min(dark, qGray(image.pixel(x, y)));
        }
    }
    return dark;
}

} // namespace

/// What floats above the window or comes and goes with mouse and keyboard: one family of looks.
class TestFloatingLooks : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void toolTip_hasTheLookOfTheMenus_overEveryWidget_data();
    void toolTip_hasTheLookOfTheMenus_overEveryWidget();
    void toolTip_thatMovesOn_keepsItsLook();
    void toolTip_holdsItsText();
    void aboutMenu_hasTheLookOfTheInputMenu();
    void focusMark_comesWithTheKeyboard_andGoesWithTheMouse();
    void focusMark_touchesNoText_data();
    void focusMark_touchesNoText();
    void hoverMark_liesOverTheRow_whileTheMouseIsOnIt_data();
    void hoverMark_liesOverTheRow_whileTheMouseIsOnIt();
    void emptyRows_haveNoHoverMark();
    void hoveredRowThatIsReplaced_leavesNothingBehind();

private:
    /// A widget of the kind \a where names.
    [[nodiscard]] QWidget *widgetAt(const QString &where);

    std::unique_ptr<WindowBench> m_bench;
};

void TestFloatingLooks::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->serveHotQuestions(5);
    m_bench->startGreeted();
    m_bench->timer("associationTick").stop();
}

void TestFloatingLooks::cleanup()
{
    QToolTip::hideText();
    m_bench.reset();
}

QWidget *TestFloatingLooks::widgetAt(const QString &where)
{
    if (where == QLatin1String("hot question")) {
        return m_bench->hotRow(2);
    }
    if (where == QLatin1String("suggestion")) {
        m_bench->input()->setPlainText(QStringLiteral("a"));
        m_bench->window().showAssociation();
        return m_bench->suggestion(2);
    }
    if (where == QLatin1String("recommendation")) {
        m_bench->window().findChild<QARegion *>()->showRecommendOnly({{QStringLiteral("荐"), 7}},
                                                                     QStringLiteral("问"));
        return m_bench->button(QStringLiteral("荐"));
    }
    return m_bench->button(where);
}

void TestFloatingLooks::toolTip_hasTheLookOfTheMenus_overEveryWidget_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("title button") << QStringLiteral("最小化");
    QTest::newRow("hot question") << QStringLiteral("hot question");
    QTest::newRow("suggestion") << QStringLiteral("suggestion");
    QTest::newRow("recommendation") << QStringLiteral("recommendation");
}

void TestFloatingLooks::toolTip_hasTheLookOfTheMenus_overEveryWidget()
{
    QFETCH(QString, where);
    QWidget *widget = widgetAt(where);
    QVERIFY(widget != nullptr);
    QToolTip::showText(QPoint(100, 100), QStringLiteral("短"), widget);
    QTRY_VERIFY(toolTip() != nullptr);
    const QImage image = toolTip()->grab().toImage();
    const QPoint middle(image.width() / 2, image.height() / 2);
    QCOMPARE(image.pixelColor(image.width() - 4, middle.y()), QColor(Qt::white));
    // A fifth of the line's colour on what is below, which is white or, in a picture, nothing.
    const QColor edge = image.pixelColor(middle.x(), 0);
    QVERIFY2(edge.alpha() < 255 || distance(edge, QColor(205, 211, 222)) <= 3,
             qPrintable(edge.name(QColor::HexArgb)));
    QVERIFY(isRound(toolTip()));
    QCOMPARE(toolTip()->palette().color(toolTip()->foregroundRole()), QColor(0x1d, 0x26, 0x33));
    QCOMPARE(toolTip()->font().family(), QStringLiteral("Microsoft YaHei"));
    QCOMPARE(toolTip()->font().pixelSize(), 12);
}

void TestFloatingLooks::toolTip_thatMovesOn_keepsItsLook()
{
    QToolTip::showText(QPoint(100, 100), QStringLiteral("短"),
                       widgetAt(QStringLiteral("hot question")));
    QTRY_VERIFY(toolTip() != nullptr);
    const int narrow = toolTip()->width();
    QToolTip::showText(QPoint(200, 200), longText.left(20), widgetAt(QStringLiteral("关闭")));
    QVERIFY(toolTip()->width() > narrow);
    QCOMPARE(toolTip()->font().pixelSize(), 12);
    QVERIFY(isRound(toolTip()));
}

void TestFloatingLooks::toolTip_holdsItsText()
{
    QToolTip::showText(QPoint(10, 100), longText.left(30), widgetAt(QStringLiteral("最小化")));
    QTRY_VERIFY(toolTip() != nullptr);
    const auto *tip = qobject_cast<QLabel *>(toolTip());
    QVERIFY(tip->width() >= tip->fontMetrics().horizontalAdvance(longText.left(30)) + 16);
    QVERIFY(tip->height() >= tip->fontMetrics().height() + 8);
}

void TestFloatingLooks::aboutMenu_hasTheLookOfTheInputMenu()
{
    m_bench->window().about_menuClicked();
    auto *menu = m_bench->window().findChild<AboutMenu *>();
    QVERIFY(menu->styleSheet().startsWith(styles::menu));
    QVERIFY(menu->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(menu->windowFlags().testFlag(Qt::NoDropShadowWindowHint));
    const QImage image = menu->grab().toImage();
    QVERIFY(isRound(menu));
    QCOMPARE(image.pixelColor(menu->width() / 2, 3), QColor(Qt::white));
    menu->setActiveAction(menu->actions().first());
    const QRect entry = menu->actionGeometry(menu->actions().first());
    QCOMPARE(entry.height(), 27);
    QCOMPARE(menu->grab().toImage().pixelColor(entry.right() - 4, entry.center().y()),
             QColor(0xf4, 0xf5, 0xf8));
}

void TestFloatingLooks::focusMark_comesWithTheKeyboard_andGoesWithTheMouse()
{
    constexpr int fewPixels = 40;
    QPushButton *button = m_bench->hotRow(4);
    QPushButton *next = m_bench->hotRow(5);
    const auto marked = [](const QPushButton *row) {
        return pixelsOf(row->parentWidget(), markBlue);
    };
    button->setFocus(Qt::MouseFocusReason);
    QVERIFY(marked(button) < fewPixels);
    QTest::keyClick(button, Qt::Key_Tab);
    QCOMPARE(m_bench->window().focusWidget(), next);
    QVERIFY2(marked(next) > 150, qPrintable(QString::number(marked(next))));
    QVERIFY(marked(button) < fewPixels);
    QTest::mousePress(next, Qt::LeftButton);
    QVERIFY(marked(next) < fewPixels);
}

void TestFloatingLooks::focusMark_touchesNoText_data()
{
    hoverMark_liesOverTheRow_whileTheMouseIsOnIt_data();
    QTest::newRow("next page") << QStringLiteral("换一换");
    QTest::newRow("send, which is as blue") << QStringLiteral("发送");
}

void TestFloatingLooks::focusMark_touchesNoText()
{
    QFETCH(QString, where);
    QWidget *button = widgetAt(where);
    QVERIFY(button != nullptr);
    m_bench->input()->setFocus();
    const auto look = [this] {
        return m_bench->window().grab().toImage();
    };
    const QImage before = look();
    button->setFocus(Qt::TabFocusReason);
    m_bench->window().setAttribute(Qt::WA_KeyboardFocusChange);
    const QImage after = look();
    const QRect place(button->mapTo(&m_bench->window(), QPoint()), button->size());
    QCOMPARE(after.copy(place), before.copy(place)); // nothing in it
    const auto blueAt = [&after](const QPoint &point) {
        return distance(after.pixelColor(point), markBlue) <= 24;
    };
    QVERIFY(blueAt({place.left() - 6, place.center().y()}));
    QVERIFY(blueAt({place.right() + 6, place.center().y()}));
    QVERIFY(blueAt({place.center().x(), place.top() - 3}));
    QVERIFY(blueAt({place.center().x(), place.bottom() + 3}));
    m_bench->input()->setFocus();
    QCOMPARE(look().copy(place.adjusted(-8, -8, 8, 8)), before.copy(place.adjusted(-8, -8, 8, 8)));
}

void TestFloatingLooks::hoverMark_liesOverTheRow_whileTheMouseIsOnIt_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("hot question") << QStringLiteral("hot question");
    QTest::newRow("suggestion") << QStringLiteral("suggestion");
    QTest::newRow("recommendation") << QStringLiteral("recommendation");
}

void TestFloatingLooks::hoverMark_liesOverTheRow_whileTheMouseIsOnIt()
{
    QFETCH(QString, where);
    QWidget *button = widgetAt(where);
    QVERIFY(button != nullptr);
    QWidget *row = button->parentWidget();
    const QPoint place(row->width() - 20, row->height() / 2);
    const auto colour = [row, place] {
        return row->grab().toImage().pixelColor(place);
    };
    const QString style = row->styleSheet();
    const QColor before = colour();
    const int text = darkest(row);
    enter(button);
    const QColor marked = colour();
    QVERIFY(qAbs(darkest(row) - text) <= 12); // it is still read
    QVERIFY(distance(before, marked) >= 8);
    QVERIFY(distance(before, marked) <= 16);
    if (before == QColor(Qt::white)) {
        QVERIFY(distance(marked, hoverOnWhite) <= 2);
    }
    QCOMPARE(row->childAt(button->geometry().center()), button); // the mouse goes through
    leave(button);
    QCOMPARE(colour(), before);
    QCOMPARE(row->styleSheet(), style);
}

void TestFloatingLooks::emptyRows_haveNoHoverMark()
{
    QWidget *button = m_bench->hotRow(9);
    const int children = button->parentWidget()->findChildren<QWidget *>().size();
    enter(button);
    QCOMPARE(button->parentWidget()->findChildren<QWidget *>().size(), children);
}

void TestFloatingLooks::hoveredRowThatIsReplaced_leavesNothingBehind()
{
    enter(m_bench->hotRow(1));
    m_bench->window().refreshLocalQA();
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_VERIFY(m_bench->messages().contains(refreshedText));
    const QWidget *row = m_bench->hotRow(1)->parentWidget();
    QCOMPARE(row->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).size(), 1);
}

QTEST_MAIN(TestFloatingLooks)
#include "tst_floatinglooks.moc"
