#include "tools/conformance/options.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QUrl>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int wrongCommandLine = 2;
constexpr int longestWaitS = 800;
constexpr int mostAnswers = 1000;

[[noreturn]] void complain(const QString &sentence)
{
    std::fprintf(stderr, "conformance: %s; --help says more\n", qPrintable(sentence));
    std::exit(wrongCommandLine);
}

QString readAddress(const QString &text)
{
    const QUrl url(text);
    const bool isAddress
        = (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"))
       && !url.host().isEmpty() && url.path().size() <= 1 && url.userInfo().isEmpty();
    if (!text.isEmpty() && !isAddress) {
        complain(QStringLiteral("\"%1\" is no address such as https://host:port").arg(text));
    }
    return text;
}

int readNumber(const QCommandLineParser &parser, const QCommandLineOption &option, int lowest,
               int highest)
{
    bool isNumber = false;
    const int number = parser.value(option).toInt(&isNumber);
    if (!isNumber || number < lowest || number > highest) {
        complain(QStringLiteral("--%1 takes a number from %2 to %3")
                     .arg(option.names().first())
                     .arg(lowest)
                     .arg(highest));
    }
    return number;
}

QCommandLineOption option(const char *name, const char *description, const char *value = nullptr,
                          const char *preset = nullptr)
{
    return {QLatin1String(name), QLatin1String(description), QLatin1String(value),
            QLatin1String(preset)};
}

} // namespace

Options readOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Examines a question service: whether it accepts and answers every call as the protocol "
        "says, keeps the bounds of the client, and refuses what it must. Exit status: 0 when it "
        "conforms, 1 when there is something to mend, 2 for a wrong command line."));
    const auto address = option("address",
                                "Where the service is, such as https://host:port, in "
                                "place of what the settings file says.",
                                "url");
    const auto question = option("question",
                                 "What is asked and typed; without it the first hot "
                                 "question.",
                                 "text");
    const auto answers = option("answers", "How many hot questions are asked.", "number", "5");
    const auto wait = option("wait", "The longest wait for a reply, in seconds.", "seconds", "30");
    const auto json = option("json", "Write the result as JSON; - is the standard output.", "file");
    const auto summary = option("summary", "Write a page for the files.", "file");
    const auto verbose = option("verbose", "Print what the program's own code logs.");
    parser.addOptions({address, question, answers, wait, json, summary, verbose});
    const QCommandLineOption help = parser.addHelpOption();
    parser.addPositionalArgument(
        QStringLiteral("settings"),
        QStringLiteral("A Miravel.ini with the paths, ids and credentials to use."));
    if (!parser.parse(arguments)) {
        complain(parser.errorText());
    }
    if (parser.isSet(help)) {
        parser.showHelp();
    }
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1 || !QFileInfo(files.first()).isReadable()
        || !QFileInfo(files.first()).isFile()) {
        complain(QStringLiteral("one settings file that can be read is wanted"));
    }
    return {files.first(),
            readAddress(parser.value(address)),
            parser.value(question),
            parser.value(json),
            parser.value(summary),
            readNumber(parser, wait, 1, longestWaitS) * 1000,
            readNumber(parser, answers, 0, mostAnswers),
            parser.isSet(verbose)};
}
