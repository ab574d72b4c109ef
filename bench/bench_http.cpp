// Compares the HTTP service with nginx, which serves the same files. Phones ask both in turn, round
// by round, so that other load on the machine affects both alike.
//   bench_http [FOLDER [SECONDS [log]]]     FOLDER chooses the disk, SECONDS is the length of a
//   round; "log" measures only the cost of the request log
//
// The service runs in its own process, as in the program, with the report box on an offscreen
// display.
#include "HttpLoad.h"
#include "Measure.h"
#include "app/ReportBox.h"
#include "net/HttpdServer.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"

#include <QApplication>
#include <QDir>
#include <QHostAddress>
#include <QLoggingCategory>
#include <QProcess>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

constexpr int rounds = 5;
constexpr int clients = 32;
constexpr int askedDevices = 1000;
constexpr int stormDevices = 10000;
constexpr int stormClients = 200;
constexpr int storms = 10;
constexpr int idleConnections = 1000;
constexpr int logRounds = 9;

/// A report by the process of the service.
struct Report
{
    std::uint16_t port = 0;
    int silenceMs = 0; ///< longest gap between two timer events since the last report
    qint64 memoryKiB = 0;
};

qint64 memoryKiB()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE) / 1024;
}

/// The processor time that a process and its children have used so far, in seconds.
double processorTime(qint64 process)
{
    const QString folder = QStringLiteral("/proc/%1/").arg(process);
    QFile stat(folder + QStringLiteral("stat"));
    QFile children(folder + QStringLiteral("task/%1/children").arg(process));
    if (!stat.open(QIODevice::ReadOnly) || !children.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = stat.readAll().split(' ');
    double time = (fields.value(13).toDouble() + fields.value(14).toDouble()) /
                  static_cast<double>(::sysconf(_SC_CLK_TCK));
    const QList<QByteArray> processes = children.readAll().simplified().split(' ');
    for (const QByteArray &child : processes) {
        if (!child.isEmpty())
            time += processorTime(child.toLongLong());
    }
    return time;
}

/// The process of the service. Answers each byte of its input with a report, and ends with the
/// input. `isLogged` adds the request log and all that the window shows of a request's end.
int serve(const QString &path, int devices, bool isLogged)
{
    DBOperator dbOperator(path);
    DataMgr mgr(dbOperator, path);
    HttpdServer server(mgr, path);
    if (!mgr.openDatabase() || !server.listen(QHostAddress::LocalHost, 0))
        return 1;
    mgr.addContacts(benchDevices(devices));
    while (mgr.isBusy() || mgr.devices().size() < devices)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ReportBox box;
    QObject::connect(&server, &HttpdServer::requestServer, &box, &ReportBox::addReport);
    PhonesSeen seen(mgr.devices());
    if (isLogged) {
        mgr.requestLog().start();
        QObject::connect(&server, &HttpdServer::requestEnded, &box, &ReportBox::addEnd);
        QObject::connect(&server, &HttpdServer::requestEnded, &seen, &PhonesSeen::note);
    }
    box.resize(1024, box.height());
    box.show();

    int longestSilence = 0;
    QElapsedTimer silence;
    silence.start();
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, &beat, [&] {
        longestSilence = std::max(longestSilence, static_cast<int>(silence.restart()));
    });
    beat.start(5);
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
        char command = 0;
        if (::read(STDIN_FILENO, &command, 1) != 1) {
            QCoreApplication::quit();
            return;
        }
        std::printf("%d %d %lld\n", server.serverPort(), std::exchange(longestSilence, 0),
                    static_cast<long long>(memoryKiB()));
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}

/// Runs the service in a process of its own.
class Service
{
public:
    Service(const QString &path, int devices, bool isLogged = true)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(),
                        {QStringLiteral("--serve"), path, QString::number(devices),
                         QString::number(isLogged ? 1 : 0)});
    }
    ~Service()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished(-1);
    }
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    /// Asks for a report and waits for it.
    Report report()
    {
        m_process.write("?");
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(-1))
                qFatal("the service does not start");
        }
        const QList<QByteArray> words = m_process.readLine().simplified().split(' ');
        return {words.value(0).toUShort(), words.value(1).toInt(), words.value(2).toLongLong()};
    }

    qint64 process() const { return m_process.processId(); }

private:
    QProcess m_process;
};

/// nginx, minimally configured, with one process for each core, serving a folder of documents.
class Nginx
{
public:
    Nginx(const QString &folder, const QString &documents)
    {
        {
            QTcpServer free;
            free.listen(QHostAddress::LocalHost, 0);
            m_port = free.serverPort();
        }
        const QString user = ::geteuid() == 0 ? QStringLiteral("user root;\n") : QString();
        const QString text =
            user + QStringLiteral("daemon off; pid %1/nginx.pid; error_log %1/nginx.log;\n"
                                  "worker_processes auto; worker_rlimit_nofile 8192;\n"
                                  "events { worker_connections 4096; }\n"
                                  "http { access_log off; keepalive_timeout 0; sendfile on;\n"
                                  "client_body_temp_path %1/t; proxy_temp_path %1/t;\n"
                                  "fastcgi_temp_path %1/t; uwsgi_temp_path %1/t; scgi_temp_path "
                                  "%1/t;\n"
                                  "server { listen 127.0.0.1:%2 backlog=2048; root %3; } }\n")
                       .arg(folder)
                       .arg(m_port)
                       .arg(documents);
        QFile file(folder + QStringLiteral("/nginx.conf"));
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            qFatal("no room for nginx's settings");
        file.close();
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.start(QStringLiteral("nginx"), {QStringLiteral("-c"), file.fileName()});
        if (!m_process.waitForStarted())
            qFatal("nginx is missing: see scripts/packages.txt");
        QThread::msleep(500);
    }
    ~Nginx()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }
    Nginx(const Nginx &) = delete;
    Nginx &operator=(const Nginx &) = delete;

    std::uint16_t port() const { return m_port; }
    qint64 process() const { return m_process.processId(); }

private:
    QProcess m_process;
    std::uint16_t m_port = 0;
};

/// The requests of `count` phones, whose devices are spread over a list of `listed` devices.
std::vector<LoadRequest> phones(int count, int listed)
{
    std::vector<LoadRequest> requests;
    for (int i = 0; i < count; ++i) {
        const ContactInfo device = benchDevice(i * (listed / count));
        requests.push_back({"GET /" + benchFileName(device).toLatin1() +
                                " HTTP/1.1\r\nHost: pc\r\nUser-Agent: Velloran KTP1601\r\n\r\n",
                            "<P35>" + device.sip_user_id.toLatin1() + "</P35>"});
    }
    return requests;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

void tellFaults(const char *who, const LoadResult &result)
{
    if (result.faults > 0)
        std::printf("    %s: %lld of %lld requests brought no whole right document\n", who,
                    static_cast<long long>(result.faults),
                    static_cast<long long>(result.faults + result.answers));
}

/// Compares the answers per second of the service and of nginx.
void compareRates(const char *what, Service &service, const Nginx &nginx,
                  const std::vector<LoadRequest> &requests, double seconds)
{
    const std::uint16_t port = service.report().port;
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> ownTime; // processor time for each answer
    std::vector<double> otherTime;
    for (int round = 0; round < rounds; ++round) {
        const double ownBefore = processorTime(service.process());
        const double otherBefore = processorTime(nginx.process());
        const LoadResult own = playPhones(port, requests, clients, seconds);
        const LoadResult other = playPhones(nginx.port(), requests, clients, seconds);
        ownTime.push_back((processorTime(service.process()) - ownBefore) * 1e6 /
                          static_cast<double>(own.answers));
        otherTime.push_back((processorTime(nginx.process()) - otherBefore) * 1e6 /
                            static_cast<double>(other.answers));
        tellFaults("service", own);
        tellFaults("nginx", other);
        ours.push_back(own.perSecond());
        theirs.push_back(other.perSecond());
    }
    const Report report = service.report();
    std::printf(
        "%-38s %6.0f answers/s, nginx %6.0f: ratio %.2f; processor %3.0f us each, nginx %3.0f; "
        "longest silence %d ms\n",
        what, median(ours), median(theirs), median(ours) / median(theirs), median(ownTime),
        median(otherTime), report.silenceMs);
    std::fflush(stdout);
}

void compareStorms(const QString &folder)
{
    const QString path = folder + QStringLiteral("/storm/");
    const QString documents = path + QStringLiteral("HTTPD/MACCFG");
    QDir().mkpath(documents);
    Service service(path, stormDevices);
    const std::uint16_t port = service.report().port;
    const Nginx nginx(folder, documents);
    const std::vector<LoadRequest> requests = phones(stormDevices, stormDevices);

    std::vector<double> missing;
    for (int round = 0; round < rounds; ++round) {
        // The documents are moved, not removed: some file systems are slow to create files in a
        // folder from which many have just been removed.
        if (!QDir().rename(documents, path + QString::number(round)))
            qFatal("the documents cannot be put aside");
        const LoadResult result = playPhones(port, requests, stormClients);
        tellFaults("service", result);
        missing.push_back(result.seconds);
    }
    const Report first = service.report();
    std::vector<double> present;
    std::vector<double> theirs;
    for (int round = 0; round < storms; ++round) {
        const LoadResult own = playPhones(port, requests, stormClients);
        const LoadResult other = playPhones(nginx.port(), requests, stormClients);
        tellFaults("service", own);
        tellFaults("nginx", other);
        present.push_back(own.seconds);
        theirs.push_back(other.seconds);
    }
    const Report last = service.report();
    const double reference = median(theirs);
    std::printf("10,000 different phones, 200 at a time; nginx %.2f s:\n"
                "  no document there yet                      %5.2f s, ratio %.2f; longest silence "
                "%d ms, memory then %lld KiB\n"
                "  all documents there                        %5.2f s, ratio %.2f; longest silence "
                "%d ms, memory after %d more storms %lld KiB\n",
                reference, median(missing), median(missing) / reference, first.silenceMs,
                static_cast<long long>(first.memoryKiB), median(present),
                median(present) / reference, last.silenceMs, storms,
                static_cast<long long>(last.memoryKiB));
    std::fflush(stdout);
}

void compareLists(const QString &folder, int devices, const char *what, double seconds)
{
    const QString path = folder + QStringLiteral("/%1/").arg(devices);
    QDir().mkpath(path);
    Service service(path, devices);
    const std::vector<LoadRequest> requests = phones(askedDevices, devices);
    playPhones(service.report().port, requests, clients); // makes the service write the documents
    const Nginx nginx(folder, path + QStringLiteral("HTTPD/MACCFG"));
    service.report();
    compareRates(what, service, nginx, requests, seconds);
    if (devices > askedDevices)
        return;
    const IdleConnections idleHere(service.report().port, idleConnections);
    const IdleConnections idleThere(nginx.port(), idleConnections);
    QThread::sleep(3); // by then, connections without room have been closed
    compareRates("the same beside idle connections", service, nginx, requests, seconds);
    std::printf("    of %d idle ones opened, ours holds %d and nginx %d\n", idleConnections,
                idleHere.standing(), idleThere.standing());
}

/// Compares the answers per second with and without the request log. First all phones are on one
/// host, which soon gets only summary rows; then each phone has its own host and its own rows.
void compareLogs(const QString &folder, double seconds)
{
    const QString path = folder + QStringLiteral("/log%1/");
    QDir().mkpath(path.arg(0));
    QDir().mkpath(path.arg(1));
    Service without(path.arg(0), askedDevices, false);
    Service with(path.arg(1), askedDevices);
    for (const bool isEachOwn : {false, true}) {
        std::vector<LoadRequest> requests = phones(askedDevices, askedDevices);
        for (std::size_t i = 0; isEachOwn && i < requests.size(); ++i)
            requests[i].host = static_cast<int>(i) + 1;
        std::vector<double> rates[2];
        std::vector<double> ratios;
        playPhones(without.report().port, requests, clients); // writes the documents
        playPhones(with.report().port, requests, clients);
        for (int round = 0; round < logRounds; ++round) {
            const LoadResult plain = playPhones(without.report().port, requests, clients, seconds);
            const LoadResult logged = playPhones(with.report().port, requests, clients, seconds);
            tellFaults("without the log", plain);
            tellFaults("with the log", logged);
            rates[0].push_back(plain.perSecond());
            rates[1].push_back(logged.perSecond());
            ratios.push_back(logged.perSecond() / plain.perSecond());
        }
        std::printf("%-38s %6.0f answers/s with the log, %6.0f without: ratio %.3f\n",
                    isEachOwn ? "each phone on its own host" : "all phones on one host",
                    median(rates[1]), median(rates[0]), median(ratios));
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--serve"))
        return serve(arguments.value(2), arguments.value(3).toInt(),
                     arguments.value(4).toInt() != 0);
    const QTemporaryDir folder(arguments.value(1, QDir::tempPath()) +
                               QStringLiteral("/bench-XXXXXX"));
    const double seconds = arguments.value(2, QStringLiteral("2")).toDouble();
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 8192);
    setrlimit(RLIMIT_NOFILE, &limit);

    compareLogs(folder.path(), seconds / 2);
    if (arguments.value(3) == QLatin1String("log"))
        return 0;
    compareLists(folder.path(), askedDevices, "32 clients, 1,000 devices", seconds);
    compareLists(folder.path(), 100000, "32 clients, 100,000 devices", seconds);
    compareStorms(folder.path());
    return 0;
}
