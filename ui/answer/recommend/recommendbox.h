#pragma once

#include "service/reply/listedquestion.h"
#include "ui/answer/recommend/recommendpage.h"
#include "ui/text/reader/readgroup.h"

#include <QRect>
#include <QVector>
#include <QWidget>

class QLabel;
class QPushButton;

/// A bubble with recommended questions, five to a page, and a button that shows the next page.
class RecommendBox : public QWidget, public ReadGroup
{
    Q_OBJECT
    Q_DISABLE_COPY(RecommendBox)

public:
    /// Where the box stands.
    enum class Kind {
        BelowAnswer, ///< below an answer that may not have helped
        OnItsOwn,    ///< in place of an answer
    };

    /// The page that is seen: the first one, or one that came later, which cuts its texts
    /// differently.
    struct Place
    {
        int cursor = 0;
        bool isLater = false;
    };

    /// A box of \a recommends that shows the page \a place, by default the first. \a measure is the
    /// label that texts are measured in.
    RecommendBox(Kind kind, const QVector<ListedQuestion> &recommends, QLabel *measure,
                 QWidget *parent, const Place &place);
    RecommendBox(Kind kind, const QVector<ListedQuestion> &recommends, QLabel *measure,
                 QWidget *parent)
        : RecommendBox(kind, recommends, measure, parent, Place())
    {
    }

    /// Shows the next page in place of the present one.
    void showNextPage();

    /// The page that is seen, for a box that takes this one's place.
    [[nodiscard]] Place place() const { return {recommendCursor, m_isLater}; }

    [[nodiscard]] QAccessible::Role readRole() const override { return QAccessible::Grouping; }
    [[nodiscard]] QString readName() const override { return tr("推荐问题"); }

    /// Headings, the questions of the page that is seen, hint and button.
    [[nodiscard]] int partCount() override { return parts().size(); }
    [[nodiscard]] QWidget *part(int number) override { return parts().value(number); }

signals:
    void recommendClicked(const QString &question, qint64 questionId);
    void nextPageRequested();

private:
    struct Layout;
    static const Layout &layoutOf(Kind kind);

    void addHeading(const QString &text, const QRect &place, const QString &style);
    void addFoot(const Layout &layout);
    void addPage(int start, RecommendPage::Elision elision);
    void cover(RecommendPage *page);
    [[nodiscard]] QVector<QWidget *> parts() const;

    Kind m_kind;
    QVector<ListedQuestion> m_recommends;
    QLabel *m_measure;
    int recommendCursor = 0;
    bool m_isLater = false;          ///< the page that is seen is not the first that was
    RecommendPage *m_page = nullptr; ///< the one that is seen
    QPushButton *m_next = nullptr;
    QVector<QWidget *> m_headings;
    QVector<QWidget *> m_foot; ///< the hint and the button
};
