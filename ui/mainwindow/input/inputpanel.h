#pragma once

#include <QPointer>
#include <QWidget>

class InputMenu;
class QTextEdit;

/// The panel below the conversation: the box in which the user types and the send button.
class InputPanel : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(InputPanel)

public:
    explicit InputPanel(QWidget *parent);

    [[nodiscard]] QTextEdit *input() const { return m_input; }

    /// All that is in the box, also what it holds without showing it.
    [[nodiscard]] QString text() const;

    /// Gives the typed text its dark, regular look in place of the grey bold one of the start.
    void applyTypingStyle();

    /// Whether an input method is composing a word in the box.
    [[nodiscard]] bool isComposing() const;

    /// Shows the context menu of the box at the mouse, in place of one that is open.
    void openMenu();

    /// Whether it is showing.
    [[nodiscard]] bool isMenuOpen() const { return menuOpen; }

    // What the menu offers; it closes with it.
    void cut();
    void copy();
    void paste();

signals:
    void sendClicked();
    void menuRequested();
    void cutRequested();
    void copyRequested();
    void pasteRequested();

private:
    void closeMenu();

    QTextEdit *m_input;
    QPointer<InputMenu> m_menu;
    bool menuOpen = false; ///< the context menu of the box is showing
};
