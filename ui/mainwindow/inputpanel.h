#pragma once

#include <QWidget>

class QPushButton;
class QTextEdit;

/// The panel below the conversation: the box in which the user types and the send button.
class InputPanel : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(InputPanel)

public:
    explicit InputPanel(QWidget *parent);

    [[nodiscard]] QTextEdit *input() const { return m_input; }

    /// Gives the typed text its dark, regular look in place of the grey bold one of the start.
    void applyTypingStyle();

signals:
    void sendClicked();

private:
    QTextEdit *m_input;
};
