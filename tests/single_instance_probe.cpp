// A program that is nothing but its start-up: says "first" when it is the first copy, and "knock"
// each time a later copy wakes it. Its argument is the application's name, so that tests do not
// meet a real copy. Ends when its standard input is closed.
#include "app/SingleApplication.h"

#include <cstdio>
#include <thread>

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QString::fromLocal8Bit(argv[1]));
    SingleApplication application(argc, argv);
    std::puts("first");
    std::fflush(stdout);
    QObject::connect(&application, &SingleApplication::showUp, [] {
        std::puts("knock");
        std::fflush(stdout);
    });
    std::thread input([&application] {
        while (std::getchar() != EOF) {
        }
        QMetaObject::invokeMethod(&application, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    const int status = SingleApplication::exec();
    input.join();
    return status;
}
