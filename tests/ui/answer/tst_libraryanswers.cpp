#include "locallibrary/locallibrary.h"
#include "resources/resources.h"
#include "tests/ui/support/answerfold.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

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
    QVERIFY2(fold.mistake().isEmpty(), qPrintable(fold.mistake()));
}

QTEST_MAIN(TestLibraryAnswers)
#include "tst_libraryanswers.moc"
