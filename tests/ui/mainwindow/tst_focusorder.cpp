#include "ui/mainwindow/focusorder.h"

#include <QPushButton>
#include <QTest>

#include <memory>

/// Where the Tab key goes: by the places of the controls, area after area.
class TestFocusOrder : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void withoutControls_thereIsNoNeighbour();
    void neighbours_followTheirPlaces_andGoRound();
    void onlyControl_isItsOwnNeighbour();
    void fromElsewhere_theFirstOrTheLastIsReached();
    void hiddenDisabledAndPassive_areLeftOut();

private:
    QPushButton *button(QWidget *area, int x, int y);

    std::unique_ptr<QWidget> m_window;
    QWidget *m_first = nullptr;  ///< area; of m_window
    QWidget *m_second = nullptr; ///< likewise
};

void TestFocusOrder::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    // The second one is made first: that is no matter.
    m_second = new QWidget(m_window.get());
    m_second->setGeometry(0, 0, 100, 100);
    m_first = new QWidget(m_window.get());
    m_first->setGeometry(100, 0, 100, 100);
}

void TestFocusOrder::cleanup()
{
    m_window.reset();
}

QPushButton *TestFocusOrder::button(QWidget *area, int x, int y)
{
    auto *made = new QPushButton(area);
    made->setGeometry(x, y, 10, 10);
    made->setFocusPolicy(Qt::StrongFocus);
    return made;
}

void TestFocusOrder::withoutControls_thereIsNoNeighbour()
{
    m_window->show();
    QVERIFY(neighbourInReadingOrder({m_first, nullptr, m_second}, m_window.get(), true) == nullptr);
    QVERIFY(neighbourInReadingOrder({}, nullptr, false) == nullptr);
}

void TestFocusOrder::neighbours_followTheirPlaces_andGoRound()
{
    QPushButton *right = button(m_first, 50, 0);
    QPushButton *below = button(m_first, 0, 1);
    QPushButton *left = button(m_first, 0, 0);
    QPushButton *other = button(m_second, 0, 0);
    m_window->show();
    const QVector<QWidget *> areas{m_first, m_second};
    const QVector<QWidget *> order{left, right, below, other};
    for (int i = 0; i < order.size(); ++i) {
        QWidget *next = order.at((i + 1) % order.size());
        QVERIFY(neighbourInReadingOrder(areas, order.at(i), true) == next);
        QVERIFY(neighbourInReadingOrder(areas, next, false) == order.at(i));
    }
}

void TestFocusOrder::onlyControl_isItsOwnNeighbour()
{
    QPushButton *only = button(m_first, 0, 0);
    m_window->show();
    QVERIFY(neighbourInReadingOrder({m_first, m_second}, only, true) == only);
    QVERIFY(neighbourInReadingOrder({m_first, m_second}, only, false) == only);
}

void TestFocusOrder::fromElsewhere_theFirstOrTheLastIsReached()
{
    QPushButton *first = button(m_first, 0, 0);
    QPushButton *last = button(m_second, 0, 0);
    m_window->show();
    QVERIFY(neighbourInReadingOrder({m_first, m_second}, nullptr, true) == first);
    QVERIFY(neighbourInReadingOrder({m_first, m_second}, m_window.get(), false) == last);
}

void TestFocusOrder::hiddenDisabledAndPassive_areLeftOut()
{
    QPushButton *stop = button(m_first, 0, 0);
    button(m_first, 10, 0)->hide();
    button(m_first, 20, 0)->setEnabled(false);
    button(m_first, 30, 0)->setFocusPolicy(Qt::ClickFocus);
    button(m_first, 40, 0)->setFocusProxy(stop);
    m_window->show();
    QVERIFY(neighbourInReadingOrder({m_first}, stop, true) == stop);
}

QTEST_MAIN(TestFocusOrder)
#include "tst_focusorder.moc"
