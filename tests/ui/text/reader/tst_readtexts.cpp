#include "ui/text/linklabel.h"
#include "ui/text/reader/readerinterfaces.h"
#include "ui/text/reader/readgroup.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// A group of texts as a screen reader meets it, which may ask at any moment and keep what it got.
class TestReadTexts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void group_hasItsParts();
    void whatIsNoPart_isNotFound();
    void linksAreTheTextsChildren();
    void linkOfSeveralLooks_isOne();
    void link_saysWhereItLeads();
    void hiddenLink_saysSo();
    void link_cannotBeWritten();
    void newText_hasNewLinks_theSameOneKeepsThem();
    void pressedLink_isActivated_otherActionsAreNot();
    void linkOfALabelThatIsGone_isHarmless();
    void textWithoutMarkup_hasNoLinks();

private:
    [[nodiscard]] QAccessibleInterface *group() const;
    [[nodiscard]] QAccessibleInterface *text() const { return group()->child(0); }
    void show(const QString &html);

    class Group;
    std::unique_ptr<Group> m_group;
};

/// Two texts.
class TestReadTexts::Group : public QWidget, public ReadGroup
{
public:
    Group()
    {
        forgetEarlyInterface(this);
        for (QLabel *label : {m_first, m_second}) {
            label->setTextInteractionFlags(Qt::TextBrowserInteraction);
            label->setGeometry(0, 0, 300, 40);
        }
    }

    [[nodiscard]] QAccessible::Role readRole() const override { return QAccessible::ListItem; }
    [[nodiscard]] QString readName() const override { return QStringLiteral("组"); }
    [[nodiscard]] int partCount() override { return 2; }
    [[nodiscard]] QWidget *part(int number) override { return number == 0 ? m_first : m_second; }

    [[nodiscard]] QLabel *first() const { return m_first; }
    void endFirst() { delete m_first; }

private:
    // Both are children of this.
    QLabel *m_first = new LinkLabel(this);
    QLabel *m_second = new LinkLabel(this);
};

namespace {

QString link(const QString &address, const QString &text)
{
    return QStringLiteral("<a href=\"%1\">%2</a>").arg(address, text);
}

const QString one = QStringLiteral("https://one.example/");
const QString two = QStringLiteral("https://two.example/");

} // namespace

void TestReadTexts::initTestCase()
{
    installReaderInterfaces();
}

void TestReadTexts::init()
{
    m_group = std::make_unique<Group>();
    m_group->resize(300, 80);
    m_group->show();
}

void TestReadTexts::cleanup()
{
    m_group.reset();
}

QAccessibleInterface *TestReadTexts::group() const
{
    return QAccessible::queryAccessibleInterface(m_group.get());
}

void TestReadTexts::show(const QString &html)
{
    m_group->first()->setText(html);
    m_group->first()->sizeHint(); // has it read
}

void TestReadTexts::group_hasItsParts()
{
    show(QStringLiteral("<b>字</b>"));
    QCOMPARE(group()->role(), QAccessible::ListItem);
    QCOMPARE(group()->text(QAccessible::Name), QStringLiteral("组"));
    QCOMPARE(group()->childCount(), 2);
    QCOMPARE(group()->child(1)->object(), m_group->part(1));
    QCOMPARE(group()->indexOfChild(group()->child(1)), 1);
    QCOMPARE(text()->role(), QAccessible::StaticText);
    QCOMPARE(text()->parent()->object(), m_group.get());
}

void TestReadTexts::whatIsNoPart_isNotFound()
{
    show(link(one, QStringLiteral("甲")));
    QVERIFY(group()->child(-1) == nullptr);
    QVERIFY(group()->child(2) == nullptr);
    QCOMPARE(group()->indexOfChild(nullptr), -1);
    QCOMPARE(group()->indexOfChild(group()), -1);
    QVERIFY(text()->child(-1) == nullptr);
    QVERIFY(text()->child(1) == nullptr);
    QCOMPARE(text()->indexOfChild(group()), -1);
    QAccessibleInterface *found = text()->child(0);
    QCOMPARE(found->childCount(), 0);
    QVERIFY(found->child(0) == nullptr);
    QVERIFY(found->childAt(1, 1) == nullptr);
    QCOMPARE(found->indexOfChild(group()), -1);
    QVERIFY(found->actionInterface()
                ->keyBindingsForAction(QAccessibleActionInterface::pressAction())
                .isEmpty());
    QVERIFY(found->textInterface() == nullptr);
}

void TestReadTexts::linksAreTheTextsChildren()
{
    show(QStringLiteral("先") + link(one, QStringLiteral("甲")) + QStringLiteral("后<p>")
         + link(two, QStringLiteral("乙")));
    QCOMPARE(text()->childCount(), 2);
    QCOMPARE(text()->child(0)->text(QAccessible::Name), QStringLiteral("甲"));
    QCOMPARE(text()->child(1)->text(QAccessible::Name), QStringLiteral("乙"));
    QCOMPARE(text()->indexOfChild(text()->child(1)), 1);
    QCOMPARE(text()->child(1)->parent(), text());
    const QRect first = text()->child(0)->rect();
    const QRect second = text()->child(1)->rect();
    QVERIFY(text()->rect().contains(first));
    QVERIFY(second.top() > first.top());
    QVERIFY(second.left() < first.left()); // nothing stands before it
}

void TestReadTexts::linkOfSeveralLooks_isOne()
{
    show(link(one, QStringLiteral("甲<b>乙</b>丙")) + link(two, QStringLiteral("丁"))
         + QStringLiteral("与") + link(two, QStringLiteral("戊")));
    QCOMPARE(text()->childCount(), 3);
    QCOMPARE(text()->child(0)->text(QAccessible::Name), QStringLiteral("甲乙丙"));
    QCOMPARE(text()->child(1)->text(QAccessible::Name), QStringLiteral("丁"));
    QCOMPARE(text()->child(2)->text(QAccessible::Name), QStringLiteral("戊"));
}

void TestReadTexts::link_saysWhereItLeads()
{
    show(link(QStringLiteral("https://a&#x202e;b.example/"), QStringLiteral("甲")));
    QCOMPARE(text()->child(0)->text(QAccessible::Value),
             QStringLiteral("https://a\\u{202E}b.example/"));
    QCOMPARE(text()->child(0)->text(QAccessible::Help), QString());
}

void TestReadTexts::hiddenLink_saysSo()
{
    show(link(one, QStringLiteral("甲")));
    QAccessibleInterface *found = text()->child(0);
    QVERIFY(!found->state().invisible);
    QVERIFY(found->state().linked);
    m_group->first()->hide();
    QVERIFY(found->state().invisible);
}

void TestReadTexts::link_cannotBeWritten()
{
    show(link(one, QStringLiteral("甲")));
    QAccessibleInterface *found = text()->child(0);
    QVERIFY(found->state().readOnly);
    found->setText(QAccessible::Name, QStringLiteral("乙"));
    QCOMPARE(found->text(QAccessible::Name), QStringLiteral("甲"));
}

void TestReadTexts::newText_hasNewLinks_theSameOneKeepsThem()
{
    show(link(one, QStringLiteral("甲")));
    const QAccessible::Id before = QAccessible::uniqueId(text()->child(0));
    show(link(one, QStringLiteral("甲")) + QStringLiteral("。"));
    QCOMPARE(QAccessible::uniqueId(text()->child(0)), before);
    show(link(two, QStringLiteral("甲")));
    QCOMPARE(text()->childCount(), 1);
    QCOMPARE(text()->child(0)->text(QAccessible::Value), two);
    show(QStringLiteral("没有"));
    QCOMPARE(text()->childCount(), 0);
}

void TestReadTexts::pressedLink_isActivated_otherActionsAreNot()
{
    show(link(QStringLiteral("file:///x"), QStringLiteral("甲")));
    const QSignalSpy activated(m_group->first(), &QLabel::linkActivated);
    QAccessibleActionInterface *actions = text()->child(0)->actionInterface();
    QCOMPARE(actions->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
    actions->doAction(QAccessibleActionInterface::showMenuAction());
    QCOMPARE(activated.size(), 0);
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(activated.size(), 1);
    QCOMPARE(activated.first().first().toString(), QStringLiteral("file:///x"));
}

void TestReadTexts::linkOfALabelThatIsGone_isHarmless()
{
    show(link(one, QStringLiteral("甲")));
    const QAccessible::Id found = QAccessible::uniqueId(text()->child(0));
    QVERIFY(!QAccessible::accessibleInterface(found)->state().invalid);
    m_group->endFirst();
    QVERIFY(QAccessible::accessibleInterface(found) == nullptr);
}

void TestReadTexts::textWithoutMarkup_hasNoLinks()
{
    show(QStringLiteral("https://one.example/"));
    QCOMPARE(text()->childCount(), 0);
    QCOMPARE(text()->text(QAccessible::Name), QStringLiteral("https://one.example/"));
}

QTEST_MAIN(TestReadTexts)
#include "tst_readtexts.moc"
