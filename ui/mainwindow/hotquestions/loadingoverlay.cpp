#include "ui/mainwindow/hotquestions/loadingoverlay.h"

#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/style/movierest.h"
#include "ui/style/scaledpicture.h"
#include "ui/style/surfaceshadow.h"
#include "ui/style/windowsize.h"

#include <QMovie>
#include <QPushButton>

namespace {

constexpr QRect placeholderPlace(24, 53, 224, 496);
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
    veil->setGeometry(QRect(QPoint(), windowSize));
    veil->setStyleSheet(QStringLiteral("QWidget{background-color: rgba(17,17,17,20%);}"));
    veil->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto *label = new ScaledPicture(veil);
    label->setStyleSheet(QStringLiteral("QLabel{background-color: transparent;}"));
    label->setGeometry(QRect(QPoint((windowSize.width() - movieSize.width()) / 2,
                                    (windowSize.height() - movieSize.height()) / 2),
                             movieSize));
    const bool scaled = label->devicePixelRatioF() > 1;
    auto *movie = new QMovie(scaled ? QStringLiteral(":/Images/waiting@2x.gif")
                                    : QStringLiteral(":/Images/waiting.gif"),
                             QByteArray(), label);
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
