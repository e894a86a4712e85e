#pragma once

#include <QTextEdit>

/// The box in which the user types. Of a long text that comes at once, pasted, from an input method
/// or from a program that serves the user, it shows the beginning and holds the rest: wholeText()
/// gives all of it.
class InputBox : public QTextEdit
{
    Q_OBJECT
    Q_DISABLE_COPY(InputBox)

public:
    /// The characters up to which a text that comes at once is shown.
    static constexpr int mostShown = 5000;

    explicit InputBox(QWidget *parent);

protected:
    [[nodiscard]] QMimeData *createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData *source) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    [[nodiscard]] int room() const;
    void insertLong(const QString &text);
    void holdExcess(int position, int removed, int added);

    bool m_holding = false; ///< the text is being put into what is held
};
