#pragma once

#include <QTextEdit>

/// The box in which the user types. Of a long text that is pasted it shows the beginning and holds
/// the rest: wholeText() gives all of it.
class InputBox : public QTextEdit
{
    Q_OBJECT
    Q_DISABLE_COPY(InputBox)

public:
    /// The characters up to which a text that is pasted is shown.
    static constexpr int mostShown = 5000;

    explicit InputBox(QWidget *parent);

protected:
    [[nodiscard]] QMimeData *createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData *source) override;
};
