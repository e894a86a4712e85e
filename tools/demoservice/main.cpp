#include "tools/demoservice/base/files.h"
#include "tools/demoservice/knowledge/knowledgeloader.h"
#include "tools/demoservice/knowledge/knowledgestore.h"
#include "tools/demoservice/net/certificate.h"
#include "tools/demoservice/net/listener.h"
#include "tools/demoservice/options.h"
#include "tools/demoservice/requests/requestlog.h"
#include "tools/demoservice/service.h"

#include <nlohmann/json.hpp>

#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using demo::Listener;
using demo::Options;

constexpr int exitGood = 0;
constexpr int exitFailed = 1;   ///< the machine does not give what is needed
constexpr int exitBadInput = 2; ///< command line, knowledge or certificate

int complain(int status, const std::string &sentence)
{
    std::cerr << "demoservice: " << sentence << '\n';
    return status;
}

/// The signals that end the service are taken by sigwait(), so no thread may be interrupted by
/// them.
sigset_t blockEndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

bool setUpTls(SSL_CTX &context, const Options &options)
{
    SSL_CTX_set_min_proto_version(&context, TLS1_2_VERSION);
    return options.certificateFile.empty()
             ? demo::useSelfSignedCertificate(context)
             : demo::useCertificateFiles(context, options.certificateFile,
                                         options.certificateKeyFile);
}

std::unique_ptr<httplib::Server> makeTlsServer(const Options &options)
{
    auto server = std::make_unique<httplib::SSLServer>(
        [&options](SSL_CTX &context) { return setUpTls(context, options); });
    return server->is_valid() ? std::move(server) : nullptr;
}

bool announce(const Options &options, const Listener &http, const Listener *https)
{
    nlohmann::json ports = {{"http", http.port()}, {"https", nullptr}};
    std::string line = "listening on http://127.0.0.1:" + std::to_string(http.port());
    if (https != nullptr) {
        ports["https"] = https->port();
        line += " and https://127.0.0.1:" + std::to_string(https->port());
    }
    std::cout << line << std::endl;
    return options.portsFile.empty()
        || demo::writeFileAtomically(options.portsFile, ports.dump() + "\n");
}

int serve(const Options &options, demo::KnowledgeStore &knowledge, demo::RequestLog &log)
{
    const sigset_t endSignals = blockEndSignals();
    demo::Service service(options, knowledge, log);
    Listener http(std::make_unique<httplib::Server>());
    std::unique_ptr<Listener> https;
    if (options.httpsPort) {
        auto server = makeTlsServer(options);
        if (!server) {
            return complain(exitBadInput, "the certificate and its key cannot be used");
        }
        https = std::make_unique<Listener>(std::move(server));
    }
    if (!http.bind(options.httpPort) || (https && !https->bind(*options.httpsPort))) {
        return complain(exitFailed, "a port cannot be had; is it in use?");
    }
    service.install(http.server(), "http");
    http.start();
    if (https) {
        service.install(https->server(), "https");
        https->start();
    }
    if (!announce(options, http, https.get())) {
        return complain(exitFailed, options.portsFile + " cannot be written");
    }
    int signal = 0;
    sigwait(&endSignals, &signal);
    service.stopWaiting();
    return exitGood; // the listeners stop before the service goes
}

int run(const std::vector<std::string> &arguments)
{
    std::string error;
    const auto options = demo::parseOptions(arguments, error);
    if (!options) {
        return complain(exitBadInput, error + "; --help lists the options");
    }
    if (options->help) {
        std::cout << demo::usage();
        return exitGood;
    }
    auto knowledge = demo::loadKnowledge(options->knowledgeFile, error);
    if (!knowledge) {
        return complain(exitBadInput, error);
    }
    if (options->checkOnly) {
        std::cout << options->knowledgeFile << ": " << knowledge->entries().size()
                  << " entries, all good" << std::endl;
        return exitGood;
    }
    demo::KnowledgeStore store(options->knowledgeFile, std::move(knowledge));
    demo::RequestLog log(options->logFile);
    if (!log.isOpen()) {
        return complain(exitBadInput, options->logFile + " cannot be written");
    }
    return serve(*options, store, log);
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception &problem) { // no memory, no thread
        std::fprintf(stderr, "demoservice: %s\n", problem.what());
        return exitFailed;
    }
}
