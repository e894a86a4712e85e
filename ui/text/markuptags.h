#pragma once

#include <QPair>
#include <QString>
#include <QVector>

/// A tag as Qt's rich text reads it: names and values may stand in quotes and hold entities.
struct MarkupTag
{
    int begin;    ///< place of its "<"
    int end;      ///< behind its ">"
    QString name; ///< in lower case; empty for a comment or a declaration
    bool closes;
    QVector<QPair<QString, QString>> attributes; ///< names in lower case, in their order

    /// The number that the last attribute \a attribute gives that is one, at least 1; else 1.
    [[nodiscard]] int numberOf(QLatin1String attribute) const;
};

/// The first tag of \a html from \a from on. Where there is none it begins and ends at its end.
[[nodiscard]] MarkupTag nextMarkupTag(const QString &html, int from);

/// Whether names and numbers in \a html may be written in other characters than their own: as
/// entities, or as escapes of a style.
[[nodiscard]] bool mayBeDisguised(const QString &html);
