#include "tests/ui/answer/list/listtest.h"

#include <QLabel>
#include <QTest>

void ListTest::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(width, height);
    m_list = new ConversationList(m_window.get());
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setGeometry(0, 0, width, height);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void ListTest::cleanup()
{
    m_window.reset();
}

Entry *ListTest::append(int itemHeight)
{
    auto *entry = new Entry(itemHeight, m_list->nextParent());
    m_list->append(entry);
    return entry;
}

QRect ListTest::placeOf(const QWidget *widget) const
{
    return {widget->mapTo(m_list, QPoint()), widget->size()};
}

QString ListTest::mistakeAt(int row) const
{
    const QWidget *entry = m_list->itemWidget(m_list->item(row));
    const QLabel *icon = entry->findChild<QLabel *>();
    if (placeOf(entry).topLeft() != QPoint(0, 0)) {
        return QStringLiteral("entry %1 begins at %2").arg(row).arg(placeOf(entry).y());
    }
    if (m_list->indexAt({5, 5}).row() != row) {
        return QStringLiteral("%1 is where %2 is seen").arg(m_list->indexAt({5, 5}).row()).arg(row);
    }
    if (icon == nullptr || icon->visibleRegion() != QRegion(icon->rect())) {
        return QStringLiteral("the icon of entry %1 is not seen whole").arg(row);
    }
    return {};
}
