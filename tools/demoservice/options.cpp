#include "tools/demoservice/options.h"

#include "tools/demoservice/base/number.h"

#include <functional>
#include <limits>
#include <map>

namespace demo {

namespace {

constexpr int highestPort = 65535;

using Reader = std::function<bool(Options &, const std::string &value, std::string &error)>;

Reader textInto(std::string Options::*member)
{
    return [member](Options &options, const std::string &value, std::string &) {
        options.*member = value;
        return true;
    };
}

template <typename Port> // int or std::optional<int>
Reader portInto(Port Options::*member)
{
    return [member](Options &options, const std::string &value, std::string &error) {
        const auto port = parseNumber(value, 0, highestPort);
        error = "\"" + value + "\" is no port between 0 and 65535";
        options.*member = static_cast<int>(port.value_or(0));
        return port.has_value();
    };
}

Reader pathInto(std::string Options::*member)
{
    return [member](Options &options, const std::string &value, std::string &error) {
        error = "the path \"" + value + "\" does not begin with a slash";
        options.*member = value;
        return !value.empty() && value.front() == '/';
    };
}

bool readSkew(Options &options, const std::string &value, std::string &error)
{
    const auto skew = parseNumber(value, 1, std::numeric_limits<std::int32_t>::max());
    error = "\"" + value + "\" is no number of milliseconds";
    options.maxSkewMs = skew.value_or(0);
    return skew.has_value();
}

/// A knowledge file that is only looked at.
bool readCheck(Options &options, const std::string &value, std::string &)
{
    options.checkOnly = true;
    options.knowledgeFile = value;
    return true;
}

bool readFault(Options &options, const std::string &value, std::string &error)
{
    const auto equals = value.find('=');
    const std::string name = value.substr(0, equals);
    const auto call = callByName(name);
    if (equals == std::string::npos || (!call && name != "any")) {
        error = "\"" + value
              + "\" is not of the form CALL=KIND[:ARG], CALL being ask, association, "
                "hot or any";
        return false;
    }
    const std::string kind = value.substr(equals + 1);
    const auto colon = kind.find(':');
    const std::string argument = colon == std::string::npos ? "" : kind.substr(colon + 1);
    const auto fault = parseFault(kind.substr(0, colon), argument, error);
    if (fault) {
        options.faults.push_back({call, *fault});
    }
    return fault.has_value();
}

const std::map<std::string, Reader> &readers()
{
    static const std::map<std::string, Reader> all = {
        {"--knowledge", textInto(&Options::knowledgeFile)},
        {"--check", readCheck},
        {"--http-port", portInto(&Options::httpPort)},
        {"--https-port", portInto(&Options::httpsPort)},
        {"--tenant", textInto(&Options::tenant)},
        {"--key", textInto(&Options::key)},
        {"--secret", textInto(&Options::secret)},
        {"--cert", textInto(&Options::certificateFile)},
        {"--cert-key", textInto(&Options::certificateKeyFile)},
        {"--ports-file", textInto(&Options::portsFile)},
        {"--log", textInto(&Options::logFile)},
        {"--fault", readFault},
        {"--hot-path", pathInto(&Options::hotPath)},
        {"--association-path", pathInto(&Options::associationPath)},
        {"--ask-path", pathInto(&Options::askPath)},
        {"--max-skew-ms", readSkew},
    };
    return all;
}

bool readAll(Options &options, const std::vector<std::string> &arguments, std::string &error)
{
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        if (arguments[i] == "--help") {
            options.help = true;
            return true;
        }
        const auto reader = readers().find(arguments[i]);
        if (reader == readers().end()) {
            error = "unknown option \"" + arguments[i] + "\"";
            return false;
        }
        if (i + 1 == arguments.size()) {
            error = "the option " + arguments[i] + " needs a value";
            return false;
        }
        if (!reader->second(options, arguments[i + 1], error)) {
            error.insert(0, arguments[i] + ": ");
            return false;
        }
    }
    return true;
}

bool fitTogether(const Options &options, std::string &error)
{
    if (options.knowledgeFile.empty()) {
        error = "--knowledge FILE is needed";
        return false;
    }
    if (options.certificateFile.empty() != options.certificateKeyFile.empty()) {
        error = "--cert and --cert-key belong together";
        return false;
    }
    if (options.hotPath == options.associationPath || options.hotPath == options.askPath
        || options.associationPath == options.askPath) {
        error = "the three paths must differ";
        return false;
    }
    return true;
}

} // namespace

const std::string &Options::pathOf(Call call) const
{
    switch (call) {
    case Call::Hot:
        return hotPath;
    case Call::Association:
        return associationPath;
    case Call::Ask:
        break;
    }
    return askPath;
}

std::optional<Options> parseOptions(const std::vector<std::string> &arguments, std::string &error)
{
    Options options;
    if (!readAll(options, arguments, error) || (!options.help && !fitTogether(options, error))) {
        return std::nullopt;
    }
    error.clear();
    return options;
}

std::string usage()
{
    return "Usage: demoservice --knowledge FILE [option VALUE]...\n"
           "A question service on 127.0.0.1 that checks every signature.\n"
           "\n"
           "  --knowledge FILE         questions and answers (JSON)\n"
           "  --check FILE             look for mistakes in such a file, and end\n"
           "  --http-port N            listen for HTTP; 0 = a free port (the default)\n"
           "  --https-port N           listen for HTTPS; 0 = a free port\n"
           "  --tenant T               tenant id (demo-tenant)\n"
           "  --key K                  application key (demo-key)\n"
           "  --secret S               application secret (demo-secret)\n"
           "  --cert FILE              certificate chain, PEM (a self-signed one is made)\n"
           "  --cert-key FILE          its private key, PEM\n"
           "  --ports-file FILE        write {\"http\":PORT,\"https\":PORT} once listening\n"
           "  --log FILE               one line a request (standard output)\n"
           "  --fault CALL=KIND[:ARG]  let ask, association, hot or any go wrong; repeatable\n"
           "  --hot-path PATH          (/robot/v1/hot-questions)\n"
           "  --association-path PATH  (/robot/v1/associations)\n"
           "  --ask-path PATH          (/robot/v1/answers)\n"
           "  --max-skew-ms N          oldest and newest timestamp accepted (300000)\n"
           "  --help                   this text\n"
           "\n"
           "Kinds of fault: delay:MS error:CODE http:STATUS empty empty-reply broken-json truncate\n"
           "drop huge:BYTES huge-junk:BYTES not-utf8 nul[:end] deep:N no-answer trickle:MS\n"
           "The protocol and the control endpoint are described in docs/protocol.md.\n";
}

} // namespace demo
