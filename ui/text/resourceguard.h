#pragma once

#include <QObject>
#include <QVariant>

class QLabel;
class QUrl;

/// Keeps the rich text of answers from reading anything but itself. Qt's documents would
/// load the pictures and style sheets that a text names, from files and, on Windows, from any
/// machine's shares; a document whose parent has a loadResource() asks that first.
class ResourceGuard : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ResourceGuard)

public:
    explicit ResourceGuard(QObject *parent);

    /// Guards the document of \a label, which has a text by now but has not laid it out yet.
    /// Nothing happens when it is guarded already or has no document.
    static void guard(QLabel *label);

    /// Nothing to be seen, in place of \a name, which is named in the log.
    Q_INVOKABLE QVariant loadResource(int type, const QUrl &name);
};
