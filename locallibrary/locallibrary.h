#pragma once

#include "locallibrary/localrecord.h"

#include <QStringList>

/// The prepared questions and answers that come as text files with the program, for when the
/// service is not used. Reads files of the working directory; used on one thread.
class LocalLibrary
{
public:
    /// Reads "LocalQA/0.txt" to "LocalQA/29.txt" and appends the records that are not there yet. A
    /// file that is missing, unreadable or without a record is passed over.
    void read();

    /// How many questions there are.
    [[nodiscard]] int size() const { return m_questions.size() - 1; }

    /// The questions, from index 1 on; the entry before them is empty and never a question.
    [[nodiscard]] const QStringList &questions() const { return m_questions; }

    /// Their answers, at the same indices.
    [[nodiscard]] const QStringList &answers() const { return m_answers; }

private:
    void append(const LocalRecord &record);
    [[nodiscard]] bool contains(const LocalRecord &record) const;

    QStringList m_questions{QString()};
    QStringList m_answers{QString()};
};
