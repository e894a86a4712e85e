#include "ui/dialogs/licensetext.h"

#include <QImage>
#include <QTextDocument>
#include <QUrl>
#include <QVariant>

LicenseText::LicenseText(QWidget *parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setAcceptDrops(false);
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
}

QVariant LicenseText::loadResource(int type, const QUrl &name)
{
    Q_UNUSED(name)
    if (type != QTextDocument::ImageResource) {
        return {};
    }
    // No value at all would let the document look for a file of that name itself.
    QImage nothing(1, 1, QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return nothing;
}
