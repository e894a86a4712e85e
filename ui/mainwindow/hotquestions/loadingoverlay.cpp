#include "ui/mainwindow/hotquestions/loadingoverlay.h"

#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/style/movierest.h"
#include "ui/style/surfaceshadow.h"

#include <QLabel>
#include <QMovie>
#include <QPushButton>

namespace {

constexpr QRect placeholderPlace(24, 53, 224, 496);
constexpr QRect windowPlace(0, 0, 920, 640);
constexpr QSize movieSize(150, 260);

QWidget *makePlaceholder(QWidget *column)
{
    auto *frame = new QFrame(column);
    frame->setGeometry(placeholderPlace);
    frame->setStyleSheet(QStringLiteral("QFrame{background-color:white;border:1px solid rgb(238, "
                                        "240, 244);}"));
    addSurfaceShadow(frame);
    return frame;
}

QWidget *makeVeil(QWidget *window)
{
    auto *veil = new QWidget(window);
    veil->setGeometry(windowPlace);
    veil->setStyleSheet(QStringLiteral("QWidget{background-color: rgba(17,17,17,20%);}"));
    veil->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto *label = new QLabel(veil);
    label->setStyleSheet(QStringLiteral("QLabel{background-color: transparent;}"));
    label->setGeometry(QRect(QPoint((windowPlace.width() - movieSize.width()) / 2,
                                    (windowPlace.height() - movieSize.height()) / 2),
                             movieSize));
    auto *movie = new QMovie(QStringLiteral(":/Images/waiting.gif"), QByteArray(), label);
    label->setMovie(movie);
    new MovieRest(movie, label); // which the movie owns
    movie->start();
    return veil;
}

} // namespace

LoadingOverlay::LoadingOverlay(QWidget *column, QWidget *window)
    : m_placeholder(makePlaceholder(column))
    , m_placeholderButton(makeNextPageButton(column))
    , m_veil(makeVeil(window))
{
    m_placeholderButton->setFocusPolicy(Qt::NoFocus); // it does nothing
    m_placeholder->show();
    m_placeholderButton->show();
    m_veil->show();
    m_veil->raise();
}

LoadingOverlay::~LoadingOverlay()
{
    delete m_placeholder;
    delete m_placeholderButton;
    delete m_veil;
}
