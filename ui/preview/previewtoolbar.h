#pragma once

#include <QWidget>

#include <array>

class QPushButton;

/// The bar below the previewed picture: four tool buttons, and between them the two buttons that
/// page through the pictures of the conversation.
class PreviewToolBar : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(PreviewToolBar)

public:
    explicit PreviewToolBar(QWidget *parent);

    /// Enables what can be done with a still picture (everything) or with an animated one (only to
    /// show it at its own size).
    void setAnimated(bool animated);

    [[nodiscard]] QPushButton *oneToOneButton() const { return m_tools[0]; }
    [[nodiscard]] QPushButton *fitButton() const { return m_tools[1]; }
    [[nodiscard]] QPushButton *zoomInButton() const { return m_tools[2]; }
    [[nodiscard]] QPushButton *zoomOutButton() const { return m_tools[3]; }
    [[nodiscard]] QPushButton *previousButton() const { return m_previous; }
    [[nodiscard]] QPushButton *nextButton() const { return m_next; }

private:
    std::array<QPushButton *, 4> m_tools;
    QPushButton *m_previous;
    QPushButton *m_next;
};
