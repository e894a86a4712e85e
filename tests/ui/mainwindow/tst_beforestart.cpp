#include "tests/standins/standinfolder.h"
#include "tests/ui/support/windowbench.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"

#include <QApplication>
#include <QJsonArray>
#include <QMetaMethod>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

namespace {

using Operation = std::function<void(Miravel &)>;

const QJsonArray oneQuestion{QJsonObject{{QStringLiteral("question"), QStringLiteral("问")}}};

/// The operations that are no slots, and the slots that take anything.
const QVector<QPair<const char *, Operation>> &named()
{
    static const QVector<QPair<const char *, Operation>> operations{
        {"hotRecom_list_click(QString,qlonglong)",
         [](Miravel &window) {
             window.hotRecom_list_click(QStringLiteral("问"), 1);
         }},
        {"getLocationQuest_Num(QString)",
         [](Miravel &window) {
             QCOMPARE(window.getLocationQuest_Num(QStringLiteral("问")), -1);
         }},
        {"association_list_click(QString,qlonglong)",
         [](Miravel &window) {
             window.association_list_click(QStringLiteral("问"), 1);
         }},
        {"slotResize_ImagePreviewWid(int,int)",
         [](Miravel &window) {
             window.slotResize_ImagePreviewWid(800, 600);
         }},
        {"sendSysguardQuest",
         [](Miravel &window) {
             window.sendSysguardQuest({{QStringLiteral("question"), QStringLiteral("问")}});
         }},
        {"getHotQuestion_thread_right",
         [](Miravel &window) {
             window.getHotQuestion_thread_right();
         }},
        {"getHotQuestion_right",
         [](Miravel &window) {
             window.getHotQuestion_right(oneQuestion);
         }},
        {"getHotQuestion_right, nothing",
         [](Miravel &window) {
             window.getHotQuestion_right(QJsonArray());
         }},
        {"refreshHotQuestions",
         [](Miravel &window) {
             window.refreshHotQuestions(oneQuestion);
         }},
        {"refreshHotQuestions, nothing",
         [](Miravel &window) {
             window.refreshHotQuestions(QJsonArray());
         }},
        {"switchHotQuestionLocation_show",
         [](Miravel &window) {
             window.switchHotQuestionLocation_show();
         }},
        {"parseLocalQA",
         [](Miravel &window) {
             window.parseLocalQA();
         }},
        {"questLocation",
         [](Miravel &window) {
             QVERIFY(window.questLocation().size() <= 1);
         }},
        {"answerLocation",
         [](Miravel &window) {
             QVERIFY(window.answerLocation().size() <= 1);
         }},
        {"showLocalQA",
         [](Miravel &window) {
             window.showLocalQA();
         }},
    };
    return operations;
}

} // namespace

Q_DECLARE_METATYPE(Operation)

/// The window between its making and its first mode: whatever is called then, nothing happens that
/// would need a mode, and the start that follows is an ordinary one.
class TestBeforeStart : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void operation_doesNothing_andTheStartFollows_data();
    void operation_doesNothing_andTheStartFollows();

private:
    std::unique_ptr<StandInFolder> m_commands;
    std::unique_ptr<WindowBench> m_bench;
};

void TestBeforeStart::init()
{
    m_commands = std::make_unique<StandInFolder>();
    m_bench = std::make_unique<WindowBench>();
}

void TestBeforeStart::cleanup()
{
    m_bench.reset();
    m_commands.reset();
}

void TestBeforeStart::operation_doesNothing_andTheStartFollows_data()
{
    QTest::addColumn<Operation>("operation");
    const QMetaObject &meta = Miravel::staticMetaObject;
    for (const auto &operation : named()) {
        QTest::newRow(operation.first) << operation.second;
    }
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == QMetaMethod::Slot && method.parameterCount() == 0) {
            QTest::newRow(method.methodSignature().constData())
                << Operation([method](Miravel &window) { QVERIFY(method.invoke(&window)); });
        } else if (method.methodType() == QMetaMethod::Slot) {
            const auto isThis = [&method](const QPair<const char *, Operation> &operation) {
                return method.methodSignature() == operation.first;
            };
            QVERIFY2(std::any_of(named().cbegin(), named().cend(), isThis),
                     method.methodSignature().constData());
        }
    }
}

void TestBeforeStart::operation_doesNothing_andTheStartFollows()
{
    QFETCH(Operation, operation);
    const QWidgetList windows = QApplication::topLevelWidgets();
    const int before = m_bench->window().findChildren<QWidget *>().size();
    operation(m_bench->window());
    QVERIFY(m_bench->window().findChild<HotQuestionsColumn *>() == nullptr);
    if (QByteArray(QTest::currentDataTag()).contains("otQuestion")) {
        QCOMPARE(m_bench->window().findChildren<QWidget *>().size(), before);
        QCOMPARE(QApplication::topLevelWidgets().size(), windows.size());
        QVERIFY(m_bench->messages().isEmpty());
    }
    m_bench->startGreeted();
    QCOMPARE(m_bench->hotRows(), WindowBench::firstRows(16));
}

QTEST_MAIN(TestBeforeStart)
#include "tst_beforestart.moc"
