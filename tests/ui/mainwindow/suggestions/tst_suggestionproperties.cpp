#include "resources/resources.h"
#include "service/reply/listedquestion.h"
#include "tests/support/generator.h"
#include "tests/ui/support/plainelision.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

/// The suggestions over generated questions: the popup's place, and how its rows are cut.
class TestSuggestionProperties : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void popup_standsOnTheInputPanel();
    void rows_areCutAtTheirLimit();
};

void TestSuggestionProperties::initTestCase()
{
    initResources();
}

void TestSuggestionProperties::popup_standsOnTheInputPanel()
{
    Generator generator;
    QWidget window;
    for (int i = 0; i < 60; ++i) {
        const int count = generator.between(1, 40);
        const QVector<ListedQuestion> questions(count, {QStringLiteral("问"), 1});
        const SuggestionPopup popup(questions, QString(), &window);
        const int rows = count < 21 ? count : 21;
        QCOMPARE(popup.geometry(), QRect(0, 474 - 28 * rows, 648, 28 * rows + 16));
        QCOMPARE(popup.findChild<QListWidget *>()->geometry(), QRect(16, 10, 600, 28 * rows));
    }
}

void TestSuggestionProperties::rows_areCutAtTheirLimit()
{
    Generator generator;
    QWidget window;
    for (int i = 0; i < 100; ++i) {
        QVector<ListedQuestion> questions;
        for (int row = 0; row < 21; ++row) {
            questions.append({generator.text(60), row});
        }
        // Nothing typed matches, so the labels hold the texts themselves.
        const SuggestionPopup popup(questions, QStringLiteral("\\bzzz"), &window);
        const auto *list = popup.findChild<QListWidget *>();
        for (int row = 0; row < 21; ++row) {
            const QWidget *widget = list->itemWidget(list->item(row));
            const auto *label = widget->findChild<QLabel *>();
            const QString text = questions.at(row).text;
            const QFontMetrics metrics = label->fontMetrics();
            const bool fits = metrics.horizontalAdvance(text) < 575;
            QVERIFY2(fits ? label->text() == text
                          : isPlainlyElided(label->text(), text, metrics, 575),
                     qUtf8Printable(text + QLatin1Char('|') + label->text()));
            QCOMPARE(widget->findChild<QPushButton *>()->toolTip().isEmpty(), fits);
        }
    }
}

QTEST_MAIN(TestSuggestionProperties)
#include "tst_suggestionproperties.moc"
