#pragma once

#include <QWidget>

class QPushButton;

/// The title bar of the frameless window: its picture and the buttons about, minimise and close.
class TitleBar : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(TitleBar)

public:
    /// What a click on the about button leads to.
    enum class AboutButton {
        OpensDialog,
        OpensMenu,
    };

    TitleBar(AboutButton about, QWidget *parent);

    [[nodiscard]] QPushButton *aboutButton() const { return m_about; }

signals:
    void aboutClicked();
    void minimiseClicked();
    void closeClicked();

private:
    QPushButton *m_about;
};
