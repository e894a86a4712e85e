#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/// What is seen while the first hot questions are fetched: placeholders in their column and a veil
/// over the whole window with a moving picture in its centre. The veil lets the mouse through, so
/// that the window can be used and closed meanwhile.
class LoadingOverlay : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(LoadingOverlay)

public:
    /// Shows the placeholders inside \a column and the veil inside \a window.
    LoadingOverlay(QWidget *column, QWidget *window);

    /// Takes all of them away.
    ~LoadingOverlay() override;

private:
    // Column and window own them too, and may go first.
    QPointer<QWidget> m_placeholder;
    QPointer<QWidget> m_placeholderButton;
    QPointer<QWidget> m_veil;
};
