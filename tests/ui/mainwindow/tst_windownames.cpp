#include "ui/mainwindow/miravel.h"

#include <QMetaMethod>
#include <QTest>

#include <type_traits>

/// The names by which other programs and documents know the window's operations, with their
/// signatures and, for signals and slots, their order.
class TestWindowNames : public QObject
{
    Q_OBJECT

private slots:
    void className();
    void signalsInOrder();
    void slotsInOrder();
    void slotsArePublic();
    void results();
};

namespace {

/// Whether \a member is exactly of the type \a Signature. Only public members can be named here.
template <typename Signature, typename Member>
constexpr bool is(Member)
{
    return std::is_same_v<Signature, Member>;
}

using Plain = void (Miravel::*)();
using WithQuestion = void (Miravel::*)(QString, qint64);
using WithArray = void (Miravel::*)(QJsonArray);

static_assert(std::is_base_of_v<QWidget, Miravel>);
static_assert(std::is_default_constructible_v<Miravel>);
static_assert(std::is_constructible_v<Miravel, QWidget *>);

static_assert(is<Plain>(&Miravel::beginGetHotQuests));
static_assert(is<Plain>(&Miravel::rightRegionSuccess));
static_assert(is<Plain>(&Miravel::QAFinished));

static_assert(is<Plain>(&Miravel::close_windows));
static_assert(is<Plain>(&Miravel::delete_gif));
static_assert(is<Plain>(&Miravel::assoclose_windows));
static_assert(is<Plain>(&Miravel::min_windows));
static_assert(is<Plain>(&Miravel::send_messages));
static_assert(is<WithQuestion>(&Miravel::hotRecom_list_click));
static_assert(is<int (Miravel::*)(QString)>(&Miravel::getLocationQuest_Num));
static_assert(is<WithQuestion>(&Miravel::association_list_click));
static_assert(is<Plain>(&Miravel::showAssociation));
static_assert(is<Plain>(&Miravel::TextInput_color));
static_assert(is<Plain>(&Miravel::showAssociation_process));
static_assert(is<Plain>(&Miravel::itReport_url));
static_assert(is<Plain>(&Miravel::switchHotQuestionLocation_change));
static_assert(is<Plain>(&Miravel::JudgeUser_ifLogined_ByConfig));
static_assert(is<Plain>(&Miravel::detectionProcess_VdiAndOmbra));
static_assert(is<Plain>(&Miravel::cut_slots));
static_assert(is<Plain>(&Miravel::copy_slots));
static_assert(is<Plain>(&Miravel::paste_slots));
static_assert(is<Plain>(&Miravel::inputEdit_rightMenu));
static_assert(is<Plain>(&Miravel::slotResize));
static_assert(is<void (Miravel::*)(int, int)>(&Miravel::slotResize_ImagePreviewWid));
static_assert(is<Plain>(&Miravel::OnLogicalDotsPerInchChanged));
static_assert(is<Plain>(&Miravel::about_clicked));
static_assert(is<Plain>(&Miravel::about_menuClicked));
static_assert(is<Plain>(&Miravel::refreshHotQuestionsTimer));
static_assert(is<Plain>(&Miravel::refreshLocalQA));

static_assert(is<void (Miravel::*)(QJsonObject)>(&Miravel::sendSysguardQuest));
static_assert(is<Plain>(&Miravel::listenSysguardMessage_thread));
static_assert(is<Plain>(&Miravel::getHotQuestion_thread_right));
static_assert(is<WithArray>(&Miravel::getHotQuestion_right));
static_assert(is<WithArray>(&Miravel::refreshHotQuestions));
static_assert(is<Plain>(&Miravel::switchHotQuestionLocation_show));
static_assert(is<Plain>(&Miravel::parseLocalQA));
static_assert(is<Plain>(&Miravel::showLocalQA));
static_assert(is<const QStringList &(Miravel::*)() const>(&Miravel::questLocation));
static_assert(is<const QStringList &(Miravel::*)() const>(&Miravel::answerLocation));

const QStringList namedSignals{
    QStringLiteral("beginGetHotQuests()"),
    QStringLiteral("rightRegionSuccess()"),
    QStringLiteral("QAFinished()"),
};

// qlonglong is what qint64 stands for.
const QStringList namedSlots{
    QStringLiteral("close_windows()"),
    QStringLiteral("delete_gif()"),
    QStringLiteral("assoclose_windows()"),
    QStringLiteral("min_windows()"),
    QStringLiteral("send_messages()"),
    QStringLiteral("hotRecom_list_click(QString,qlonglong)"),
    QStringLiteral("getLocationQuest_Num(QString)"),
    QStringLiteral("association_list_click(QString,qlonglong)"),
    QStringLiteral("showAssociation()"),
    QStringLiteral("TextInput_color()"),
    QStringLiteral("showAssociation_process()"),
    QStringLiteral("itReport_url()"),
    QStringLiteral("switchHotQuestionLocation_change()"),
    QStringLiteral("JudgeUser_ifLogined_ByConfig()"),
    QStringLiteral("detectionProcess_VdiAndOmbra()"),
    QStringLiteral("cut_slots()"),
    QStringLiteral("copy_slots()"),
    QStringLiteral("paste_slots()"),
    QStringLiteral("inputEdit_rightMenu()"),
    QStringLiteral("slotResize()"),
    QStringLiteral("slotResize_ImagePreviewWid(int,int)"),
    QStringLiteral("OnLogicalDotsPerInchChanged()"),
    QStringLiteral("about_clicked()"),
    QStringLiteral("about_menuClicked()"),
    QStringLiteral("refreshHotQuestionsTimer()"),
    QStringLiteral("refreshLocalQA()"),
};

const QMetaObject &window = Miravel::staticMetaObject;

/// The signatures of the window's own methods of one \a type, as they are declared.
QStringList declared(QMetaMethod::MethodType type)
{
    QStringList signatures;
    for (int i = window.methodOffset(); i < window.methodCount(); ++i) {
        const QMetaMethod method = window.method(i);
        if (method.methodType() == type) {
            signatures.append(QString::fromLatin1(method.methodSignature()));
        }
    }
    return signatures;
}

} // namespace

void TestWindowNames::className()
{
    QCOMPARE(window.className(), "Miravel");
}

void TestWindowNames::signalsInOrder()
{
    QCOMPARE(declared(QMetaMethod::Signal), namedSignals);
}

void TestWindowNames::slotsInOrder()
{
    QCOMPARE(declared(QMetaMethod::Slot), namedSlots);
}

void TestWindowNames::slotsArePublic()
{
    for (const QString &name : namedSlots) {
        const QMetaMethod slot = window.method(window.indexOfSlot(name.toLatin1().constData()));
        QVERIFY2(slot.access() == QMetaMethod::Public, qUtf8Printable(name));
    }
}

void TestWindowNames::results()
{
    for (const QString &name : namedSlots) {
        const QMetaMethod slot = window.method(window.indexOfSlot(name.toLatin1().constData()));
        const bool counts = name.startsWith(QStringLiteral("getLocationQuest_Num"));
        QVERIFY2(slot.returnType() == (counts ? QMetaType::Int : QMetaType::Void),
                 qUtf8Printable(name));
    }
}

QTEST_APPLESS_MAIN(TestWindowNames)
#include "tst_windownames.moc"
