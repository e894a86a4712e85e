#pragma once

#include <QLabel>
#include <QPixmap>

/// A label for a picture or an animation of the program. On a scaled screen it is painted smoothly,
/// and a picture is the one drawn at twice its stated size; elsewhere this is a label like any
/// other.
class ScaledPicture : public QLabel
{
    Q_OBJECT
    Q_DISABLE_COPY(ScaledPicture)

public:
    explicit ScaledPicture(QWidget *parent);

    /// Shows the picture \a name below ":/Images/", which ends in ".png".
    void setPicture(const QString &name);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap shown();

    QString m_name;
    QPixmap m_large; ///< read when it is first needed
};
