#include "service/gateway/libraryreport.h"

#include "service/gateway/clientlibrary.h"

namespace {

QString missingFunction(const ClientLibrary &library, std::initializer_list<const char *> functions)
{
    for (const char *name : functions) {
        if (!library.resolve(name)) {
            return QLatin1String(name);
        }
    }
    return {};
}

} // namespace

LibraryReport examineLibrary(const QStringList &files,
                             std::initializer_list<const char *> functions)
{
    LibraryReport first;
    for (const QString &file : files) {
        ClientLibrary library(file);
        const bool loaded = library.load();
        const QString missing = loaded ? missingFunction(library, functions) : QString();
        if (loaded && missing.isEmpty()) {
            return {LibraryReport::State::Usable, file, {}};
        }
        const QString reason
            = loaded ? QStringLiteral("it has no function %1").arg(missing) : library.problem();
        library.unload();
        if (first.state == LibraryReport::State::Absent && !reason.isEmpty()) {
            first = {LibraryReport::State::Unusable, file, reason};
        }
    }
    return first;
}
