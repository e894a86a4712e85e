// Asks for the selected gateway once for every line on its standard input and prints "none" or
// "address:port". A process of its own, because a library once found stays loaded.

#include "service/gateway/korvpntool.h"

#include <QCoreApplication>

#include <iostream>
#include <string>

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    std::string line;
    while (std::getline(std::cin, line)) {
        const auto gateway = selectedKorGateway(0);
        if (gateway) {
            std::cout << gateway->address.toStdString() << ':' << gateway->port << std::endl;
        } else {
            std::cout << "none" << std::endl;
        }
    }
    return 0;
}
