// How long a telephone waits for its document, over a real connection, by the length of the list.
//   bench_http [folder]         the folder decides which disk is measured
#include "Measure.h"
#include "net/HttpdServer.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"

#include <QCoreApplication>
#include <QDir>
#include <QHostAddress>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <thread>

namespace {

constexpr int telephones = 100;
constexpr int rounds = 21; // the first has every document written
constexpr int requests = telephones * (rounds - 1);

/// Connects, asks and reads until the connection ends. False when no whole document came.
bool get(quint16 port, const QByteArray &name)
{
    const int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    sockaddr generic{};
    static_assert(sizeof generic == sizeof address);
    std::memcpy(&generic, &address, sizeof address);
    const QByteArray request =
        "GET /" + name + " HTTP/1.1\r\nHost: pc\r\nUser-Agent: KTP1601\r\n\r\n";
    QByteArray answer;
    if (::connect(connection, &generic, sizeof generic) == 0 &&
        ::send(connection, request.constData(), static_cast<std::size_t>(request.size()),
               MSG_NOSIGNAL) == request.size()) {
        char buffer[16384];
        ssize_t count = 0;
        while ((count = ::recv(connection, buffer, sizeof buffer, 0)) > 0)
            answer.append(buffer, static_cast<int>(count));
    }
    ::close(connection);
    return answer.contains(" 200 ") && answer.endsWith("</vl_provision>\n");
}

/// Returns the median.
double measure(const QString &parent, int count)
{
    const QTemporaryDir folder(parent + QStringLiteral("/bench-XXXXXX"));
    const QString path = folder.path() + QLatin1Char('/');
    DBOperator dbOperator(path);
    DataMgr mgr(dbOperator, path);
    HttpdServer server(mgr, path);
    if (!mgr.openDatabase() || !server.listen(QHostAddress::LocalHost, 0)) {
        std::printf("the server does not start\n");
        return 0;
    }
    mgr.addContacts(benchDevices(count));
    const quint16 port = server.serverPort();

    Samples first;
    Samples later;
    int failures = 0;
    std::thread client([&] {
        for (int round = 0; round < rounds; ++round) {
            for (int i = 0; i < telephones; ++i) {
                const QByteArray name =
                    benchFileName(benchDevice(i * (count / telephones))).toLatin1();
                (round == 0 ? first : later).measure([&] { failures += get(port, name) ? 0 : 1; });
            }
        }
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
    });
    QCoreApplication::exec();
    client.join();
    std::printf("%7d devices: first answer: median %7.1f us, p99 %7.1f us; then %d answers: "
                "median %7.1f us, p99 %7.1f us\n",
                count, first.median(), first.p99(), requests, later.median(), later.p99());
    if (failures > 0)
        std::printf("%d of %d requests brought no document\n", failures, telephones * rounds);
    return later.median();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const QString parent = QCoreApplication::arguments().value(1, QDir::tempPath());
    const double few = measure(parent, 100);
    const double many = measure(parent, 10000);
    std::printf("10,000 devices against 100: %.2f times the time\n", many / few);
    return 0;
}
