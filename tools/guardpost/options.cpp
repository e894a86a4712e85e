#include "options.h"

#include "channelport.h"

#include <QCommandLineParser>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <limits>

namespace {

const QLatin1String configName("config");
const QLatin1String portName("port");
const QLatin1String rawName("raw");
const QLatin1String timeoutName("timeout");
const QLatin1String helpName("help");

constexpr int highestPort = 65535;
constexpr int longestTimeoutS = 24 * 3600;

/// \a text as a number from 1 to \a highest, or 0.
int number(const QString &text, int highest)
{
    const int value = text.toInt();
    return value > highest ? 0 : qMax(0, value);
}

QByteArray questionMessage(const QString &question)
{
    const QJsonObject object{{QStringLiteral("question"), question},
                             {QStringLiteral("rawquery"), question}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool readFile(const QString &name, QByteArray &bytes)
{
    QFile file(name);
    const bool opened = name == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly)
                                                   : file.open(QIODevice::ReadOnly);
    bytes = opened ? file.readAll() : QByteArray();
    return opened && !bytes.isEmpty();
}

bool readPort(const QCommandLineParser &parser, Options &options, QString &error)
{
    if (parser.isSet(configName) == parser.isSet(portName)) {
        error = QStringLiteral("give either --config or --port");
        return false;
    }
    if (parser.isSet(configName)) {
        options.port = channelPort(parser.value(configName), error).value_or(0);
        return options.port != 0;
    }
    options.port = static_cast<quint16>(number(parser.value(portName), highestPort));
    error = QStringLiteral("\"%1\" is no port").arg(parser.value(portName));
    return options.port != 0;
}

bool readMessages(const QCommandLineParser &parser, Options &options, QString &error)
{
    for (const QString &question : parser.positionalArguments()) {
        options.messages.append(questionMessage(question));
    }
    for (const QString &name : parser.values(rawName)) {
        QByteArray bytes;
        if (!readFile(name, bytes)) {
            error = QStringLiteral("\"%1\" cannot be read or is empty").arg(name);
            return false;
        }
        options.messages.append(bytes);
    }
    error = QStringLiteral("there is nothing to post");
    return !options.messages.isEmpty();
}

bool readTimeout(const QCommandLineParser &parser, Options &options, QString &error)
{
    const int seconds = number(parser.value(timeoutName), longestTimeoutS);
    options.timeoutMs = seconds * 1000;
    error = QStringLiteral("\"%1\" is no number of seconds").arg(parser.value(timeoutName));
    return seconds != 0;
}

} // namespace

bool readOptions(const QStringList &arguments, Options &options, QString &error)
{
    QCommandLineParser parser;
    const QString value = QStringLiteral("value");
    parser.addOptions({{configName, QString(), value},
                       {portName, QString(), value},
                       {rawName, QString(), value},
                       {timeoutName, QString(), value, QStringLiteral("60")},
                       {helpName, QString()}});
    if (!parser.parse(arguments)) {
        error = parser.errorText();
        return false;
    }
    options.help = parser.isSet(helpName);
    return options.help
        || (readPort(parser, options, error) && readMessages(parser, options, error)
            && readTimeout(parser, options, error));
}

QString usage()
{
    return QStringLiteral(
        "Usage: guardpost (--config PLACE | --port N) [option]... [QUESTION]...\n"
        "Posts questions to a running assistant, as the guard tool does, and prints what it\n"
        "acknowledges. All go over one connection, each when the one before is acknowledged.\n"
        "\n"
        "  --config PLACE  the installation: its folder, or its Miravel.ini\n"
        "  --port N        the port itself\n"
        "  --raw FILE      post the bytes of FILE as they are (- = standard input); repeatable\n"
        "  --timeout S     seconds to wait for each acknowledgement (60)\n"
        "  --help          this text\n"
        "\n"
        "Exit status: 0 all acknowledged, 1 something was not, 2 a mistake in the command line or\n"
        "the settings, 3 nobody listens on the port. docs/guard-channel.md describes the channel.\n");
}
