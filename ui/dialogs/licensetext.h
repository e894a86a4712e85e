#pragma once

#include <QTextEdit>

/// A read-only view of a text with markup. Nothing that the text names is loaded, from the net or
/// from a disk, and nothing in it runs. Its links lead nowhere: one that is clicked is named in the
/// log, and a tool tip says where it would have led.
class LicenseText : public QTextEdit
{
    Q_OBJECT
    Q_DISABLE_COPY(LicenseText)

public:
    explicit LicenseText(QWidget *parent = nullptr);

    QVariant loadResource(int type, const QUrl &name) override;

protected:
    bool viewportEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QString m_pressedLink;
};
