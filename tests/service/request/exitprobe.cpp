// Starts a fetch of hot questions on the installation in its working directory and ends when its
// standard input does, while the fetch is still waiting.

#include "app/base/apppaths.h"
#include "service/request/hotqueststhread.h"

#include <QApplication>

#include <iostream>
#include <string>

int main(int argc, char *argv[])
{
    const QApplication app(argc, argv);
    initAppPaths(QString());
    // Not owned by anybody: it is still running when main() returns.
    auto *const worker = new HotQuestsThread(nullptr);
    worker->start();
    std::string line;
    while (std::getline(std::cin, line)) { }
    return 0;
}
