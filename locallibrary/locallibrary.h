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
    void parseLocalQA();

    /// How many questions there are.
    [[nodiscard]] int size() const { return m_questLocation.size() - 1; }

    /// The questions, from index 1 on; the entry before them is empty and never a question.
    [[nodiscard]] const QStringList &questLocation() const { return m_questLocation; }

    /// Their answers, at the same indices.
    [[nodiscard]] const QStringList &answerLocation() const { return m_answerLocation; }

private:
    void append(const LocalRecord &record);
    [[nodiscard]] bool contains(const LocalRecord &record) const;

    QStringList m_questLocation{QString()};
    QStringList m_answerLocation{QString()};
};
