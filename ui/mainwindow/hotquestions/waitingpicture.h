#pragma once

#include "ui/style/scaledpicture.h"

class QMovie;

/// The moving picture of a wait. A still one that equals its first frame stands for it until that
/// has been on the screen for as long as a frame is: reading an animation is work, which the
/// window's first picture need not wait for, and a wait is often over by then. GUI thread only.
class WaitingPicture : public ScaledPicture
{
    Q_OBJECT
    Q_DISABLE_COPY(WaitingPicture)

public:
    explicit WaitingPicture(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void startMoving();

    QMovie *m_movie;
    bool m_wasPainted = false;
};
