#include "fuzz/support/target.h"

#include <QApplication>
#include <QFont>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What libFuzzer calls. Its own main() reads the command line.

namespace {

/// Thousands of inputs a second log something; only why the process ends is of interest.
void tellFatalOnly(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", message.toUtf8().constData());
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    static int count = 1;
    static char name[] = "fuzzer";
    static char *arguments[] = {name, nullptr};
    qInstallMessageHandler(tellFatalOnly);
    new QApplication(count, arguments); // never deleted: libFuzzer ends the process by exit()
    QApplication::setFont(QFont(QStringLiteral("Microsoft YaHei")));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    runTarget(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return 0;
}
