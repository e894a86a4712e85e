#include "service/request/gatewayquery.h"

#include "app/base/logstream.h"
#include "service/request/deadlinewait.h"

#include <QThread>

#include <memory>
#include <mutex>

namespace {

/// What a query has brought, for the one that asked as long as it waits.
struct Answer
{
    std::mutex mutex;
    std::optional<KorGateway> gateway; // guarded by mutex
};

} // namespace

std::optional<KorGateway> askGatewayLibrary(int limitMs)
{
    const auto answer = std::make_shared<Answer>();
    // No owner: a running thread must not be destroyed, and this one may hang for good.
    QThread *const query = QThread::create([answer, limitMs] {
        const std::optional<KorGateway> gateway = selectedKorGateway(limitMs);
        const std::lock_guard<std::mutex> lock(answer->mutex);
        answer->gateway = gateway;
    });
    DeadlineWait wait(limitMs);
    wait.endOn(query, &QThread::finished);
    query->start();
    const DeadlineWait::End end = wait.exec();
    QObject::connect(query, &QThread::finished, query, &QObject::deleteLater);
    if (query->isFinished()) {
        query->deleteLater();
    }
    if (end == DeadlineWait::End::TooLate) {
        LOG_WARNING() << "KorVpnTool does not answer, waited ms: " << limitMs;
    }
    const std::lock_guard<std::mutex> lock(answer->mutex);
    return answer->gateway;
}
