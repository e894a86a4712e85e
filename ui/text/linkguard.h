#pragma once

#include <QObject>

class QUrl;

/// Keeps links of answers that could run a program away from the desktop. While it lives, an
/// address without a scheme, or with one that leads to a file, a script or a program, is not opened
/// (QDesktopServices::setUrlHandler()) but named in the log. GUI thread; one at a time.
class LinkGuard : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(LinkGuard)

public:
    explicit LinkGuard(QObject *parent);
    ~LinkGuard() override;

private slots:
    void refuse(const QUrl &url);
};
