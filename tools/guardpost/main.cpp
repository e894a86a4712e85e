#include "options.h"
#include "post.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

enum ExitStatus { AllAcknowledged = 0, NotAcknowledged = 1, Mistake = 2, NobodyListens = 3 };

int fail(ExitStatus status, const QString &reason)
{
    std::fprintf(stderr, "guardpost: %s\n", qPrintable(reason));
    return status;
}

int postAll(const Options &options)
{
    Post post;
    if (!post.connectTo(options.port)) {
        return fail(NobodyListens, post.error());
    }
    for (const QByteArray &message : options.messages) {
        const QByteArray acknowledgement = post.exchange(message, options.timeoutMs);
        if (acknowledgement.isEmpty()) {
            return fail(NotAcknowledged, post.error());
        }
        std::printf("%s\n", acknowledgement.constData());
        std::fflush(stdout);
    }
    return AllAcknowledged;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    Options options;
    QString error;
    if (!readOptions(QCoreApplication::arguments(), options, error)) {
        return fail(Mistake, error + QStringLiteral(" (--help says more)"));
    }
    if (options.help) {
        std::printf("%s", qPrintable(usage()));
        return AllAcknowledged;
    }
    return postAll(options);
}
