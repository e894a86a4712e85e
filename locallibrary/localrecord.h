#pragma once

#include <QString>

#include <optional>

/// A question of the local library and its answer, which is a run of "<p>...</p>" paragraphs.
struct LocalRecord
{
    QString question;
    QString answer;
};

/// Reads the record of one library file from its \a text: what stands between the first "<body>"
/// and the next "</body>", of which the first paragraph is the question behind a prefix of five
/// characters, and every later piece that is not blank is a paragraph of the answer. Tags count
/// only as they are written here: in lower case and without attributes. Nothing when there is no
/// body or its first paragraph is empty. Any thread.
[[nodiscard]] std::optional<LocalRecord> readLocalRecord(const QString &text);
