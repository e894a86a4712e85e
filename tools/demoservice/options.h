#pragma once

#include "tools/demoservice/faults/fault.h"
#include "tools/demoservice/requests/call.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace demo {

/// What the command line asked for.
struct Options
{
    struct PlannedFault
    {
        std::optional<Call> call; ///< no value: every call
        Fault fault;
    };

    std::string knowledgeFile;
    int httpPort = 0;             ///< 0 = a free port
    std::optional<int> httpsPort; ///< 0 = a free port; no value = no HTTPS
    std::string tenant = "demo-tenant";
    std::string key = "demo-key";
    std::string secret = "demo-secret";
    std::string certificateFile;    ///< PEM; empty = a certificate made at start
    std::string certificateKeyFile; ///< PEM
    std::string portsFile;
    std::string logFile; ///< empty = standard output
    std::vector<PlannedFault> faults;
    std::string hotPath = "/robot/v1/hot-questions";
    std::string associationPath = "/robot/v1/associations";
    std::string askPath = "/robot/v1/answers";
    std::int64_t maxSkewMs = 300000;
    bool checkOnly = false; ///< only the knowledge file is looked at
    bool help = false;

    /// The URL path of a call.
    const std::string &pathOf(Call call) const;
};

/// Reads the arguments after the program's name. On a mistake returns nothing and puts one sentence
/// into `error`. After --help nothing more is read.
std::optional<Options> parseOptions(const std::vector<std::string> &arguments, std::string &error);

/// The text of --help.
std::string usage();

} // namespace demo
