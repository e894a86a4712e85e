#include "locallibrary/locallibrary.h"
#include "resources/resources.h"
#include "tests/ui/support/answerfold.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

namespace {

#ifdef Q_OS_WIN
constexpr int slack = 4; // Wine's font engine sets lines 1 to 2 px higher; three are above the fold
#else
constexpr int slack = 0;
#endif

} // namespace

/// How the answers of the shipped local library look in the conversation.
class TestLibraryAnswers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fold_cutsNoRow_data();
    void fold_cutsNoRow();
};

void TestLibraryAnswers::initTestCase()
{
    initResources();
    QDir::setCurrent(QStringLiteral(LIBRARY_PARENT));
}

void TestLibraryAnswers::fold_cutsNoRow_data()
{
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("answer");
    LocalLibrary library;
    library.read();
    QVERIFY(library.size() >= 24);
    for (int i = 1; i <= library.size(); ++i) {
        const QString question = library.questions().at(i);
        QTest::newRow(qPrintable(question)) << question << library.answers().at(i);
    }
}

void TestLibraryAnswers::fold_cutsNoRow()
{
    QFETCH(QString, question);
    QFETCH(QString, answer);
    const AnswerFold fold = measureFold(question, answer, false);
    const QString mistake = fold.mistake(slack);
    QVERIFY2(mistake.isEmpty(), qPrintable(mistake));
}

QTEST_MAIN(TestLibraryAnswers)
#include "tst_libraryanswers.moc"
