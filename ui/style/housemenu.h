#pragma once

#include <QMenu>

/// A small white menu with a thin line around it and rounded corners, also where the screen has no
/// compositor. Deletes itself when it closes.
class HouseMenu : public QMenu
{
    Q_OBJECT
    Q_DISABLE_COPY(HouseMenu)

public:
    explicit HouseMenu(QWidget *parent);

protected:
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
