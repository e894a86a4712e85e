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

void LocalLibrary::parseLocalQA()
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
        m_questLocation.append(record.question);
        m_answerLocation.append(record.answer);
    }
}

bool LocalLibrary::contains(const LocalRecord &record) const
{
    for (int i = 1; i < m_questLocation.size(); ++i) {
        if (m_questLocation.at(i) == record.question && m_answerLocation.at(i) == record.answer) {
            return true;
        }
    }
    return false;
}
