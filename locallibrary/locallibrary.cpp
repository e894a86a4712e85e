#include "locallibrary/locallibrary.h"

#include "app/base/logstream.h"
#include "app/base/texttools.h"

#include <QFile>

namespace {

constexpr int fileCount = 30;

QString filePath(int number)
{
    return QStringLiteral("LocalQA/%1.txt").arg(number);
}

} // namespace

void LocalLibrary::read()
{
    for (int number = 0; number < fileCount; ++number) {
        QFile file(filePath(number));
        if (!file.exists()) {
            LOG_DEBUG() << "End of reading local QA, Number: " << number;
            continue;
        }
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            continue;
        }
        if (const auto record = readLocalRecord(utf8UpToNul(file.readAll()))) {
            append(*record);
        }
    }
}

void LocalLibrary::append(const LocalRecord &record)
{
    if (!contains(record)) {
        m_questions.append(record.question);
        m_answers.append(record.answer);
    }
}

bool LocalLibrary::contains(const LocalRecord &record) const
{
    for (int i = 1; i < m_questions.size(); ++i) {
        if (m_questions.at(i) == record.question && m_answers.at(i) == record.answer) {
            return true;
        }
    }
    return false;
}
