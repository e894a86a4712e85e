#include "app/base/texttools.h"
#include "fuzz/support/check.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/scratchfolder.h"
#include "fuzz/support/target.h"
#include "locallibrary/locallibrary.h"

#include <QDir>

#include <utility>
#include <vector>

namespace {

constexpr int mostFiles = 4; ///< of the thirty: the others are never there

using Record = std::pair<QString, QString>;

/// What stands between the first two of the tags "<name>" and "</name>" in \a text, whichever they
/// are, or up to the end; and all that follows. Nothing without a tag.
QStringList splitAt(const QString &text, const QString &name)
{
    QStringList pieces;
    QString rest = text;
    const QString open = QLatin1Char('<') + name + QLatin1Char('>');
    const QString close = QLatin1String("</") + name + QLatin1Char('>');
    for (;;) {
        const int opened = rest.indexOf(open);
        const int closed = rest.indexOf(close);
        if (opened < 0 && closed < 0) {
            pieces.append(rest);
            return pieces;
        }
        const bool opensFirst = closed < 0 || (opened >= 0 && opened < closed);
        const int at = opensFirst ? opened : closed;
        pieces.append(rest.left(at));
        rest = rest.mid(at + (opensFirst ? open : close).size());
    }
}

/// The records of one file as they are described.
std::vector<Record> plainRecords(QByteArray bytes)
{
    bytes.replace('\r', QByteArray()); // a file of text
    const int nul = bytes.indexOf('\0');
    const QString text = QString::fromUtf8(nul < 0 ? bytes : bytes.left(nul));
    const QStringList bodies = splitAt(text, QStringLiteral("body"));
    if (bodies.size() < 2) {
        return {};
    }
    const QStringList pieces = splitAt(bodies.at(1), QStringLiteral("p"));
    if (pieces.size() <= 2 || !(pieces.at(1) > QString(QChar(5)))) {
        return {};
    }
    QString answer;
    for (const QString &piece : pieces.mid(2)) {
        if (!piece.simplified().isEmpty()) {
            answer += QLatin1String("<p>") + piece + QLatin1String("</p>");
        }
    }
    return {{pieces.at(1).mid(5), answer}};
}

} // namespace

/// The files of the local library, one for each part of the input, against their description.
void runTarget(const QByteArray &input)
{
    static const ScratchFolder folder;
    QDir().mkdir(QStringLiteral("LocalQA"));
    const QByteArrayList files = partsOf(input, 1).mid(0, mostFiles);
    std::vector<Record> expected;
    for (int i = 0; i < mostFiles; ++i) {
        const QString name = QStringLiteral("LocalQA/%1.txt").arg(i);
        if (i >= files.size()) {
            QFile::remove(name);
            continue;
        }
        (void)folder.write(name, files.at(i));
        for (const Record &record : plainRecords(files.at(i))) {
            const bool known
                = std::find(expected.begin(), expected.end(), record) != expected.end();
            if (!known) {
                expected.push_back(record);
            }
        }
    }

    LocalLibrary library;
    library.read();
    library.read(); // nothing is added twice
    check(library.size() == static_cast<int>(expected.size()), "every record is read once");
    check(library.questions().size() == library.answers().size(), "the lists are parallel");
    for (int i = 0; i < library.size(); ++i) {
        const Record read{library.questions().at(i + 1), library.answers().at(i + 1)};
        check(read == expected.at(static_cast<std::size_t>(i)), "a record is what its file says");
    }
}
