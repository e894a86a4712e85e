#pragma once

#include <QTextEdit>

/// A read-only view of a text with markup. Nothing that the text names is loaded, from the net or
/// from a disk, its links lead nowhere, and nothing in it runs.
class LicenseText : public QTextEdit
{
    Q_OBJECT
    Q_DISABLE_COPY(LicenseText)

public:
    explicit LicenseText(QWidget *parent = nullptr);

    QVariant loadResource(int type, const QUrl &name) override;
};
