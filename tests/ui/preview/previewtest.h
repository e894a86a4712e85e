#pragma once

#include "ui/preview/imagedisplay.h"

#include <QEvent>
#include <QObject>
#include <QPixmap>
#include <QTemporaryDir>

#include <memory>

class QLabel;
class QPushButton;

/// What the tests of the preview share: a window in a folder of its own for animations, and the
/// hands that use it.
class PreviewTest : public QObject
{
    Q_OBJECT

public:
    PreviewTest();
    ~PreviewTest() override;

private slots:
    void initTestCase();
    void init();
    void cleanup();

protected:
    static constexpr int titleHeight = 56;
    static constexpr int notch = 120;
    static constexpr QPoint onTitle{300, 30};
    static constexpr QPoint onPicture{460, 300};

    [[nodiscard]] static QPixmap picture(const QSize &size);
    [[nodiscard]] static QPixmap picture(int width, int height);
    /// A size that the screen, whichever the platform has, does not hold.
    [[nodiscard]] static QSize widerThanTheDesktop();
    /// Writes animation \a number of \a size.
    static void saveAnimation(int number, const QSize &size = {40, 30});

    /// Opens the preview and waits until it shows.
    void open(const QPixmap &pixmap, bool animated = false, int index = 0);
    /// The button with the accessible name \a name.
    [[nodiscard]] QPushButton *button(const QString &name) const;
    void click(const QString &name) const;
    void paint() const;
    void turnWheel(int delta) const;
    /// Sends a mouse event to whatever lies at a position of the window.
    void mouse(QEvent::Type type, const QPoint &position,
               Qt::MouseButton button = Qt::LeftButton) const;
    [[nodiscard]] QLabel *label() const;
    [[nodiscard]] QSize shownSize() const;

    std::unique_ptr<ImageDisplay> m_window;

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_before;
};
