#include "FilePermissions.h"
#include "HttpPhone.h"
#include "net/HttpdServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/resource.h>
#endif

#include <ctime>
#include <future>

/// The server over real connections: what is on the wire, what happens to clients that do not
/// behave, and how it ends.
class TestHttpdServer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void answer_data();
    void answer();
    void noAnswer_data();
    void noAnswer();
    void foldersAreThePrivateOwners();
    void unchangedDocument();
    void requestInSegments();
    void overlongRequest_data();
    void overlongRequest();
    void slowClientIsClosed();
    void namesDoNotWaitForEachOther();
    void manyTelephonesAtOnce();
    void idleClientsMakeRoom();
    void hostileHost_data();
    void hostileHost();
    void folderHasABound();
    void logAccountsForAStorm();
    void logRow_data();
    void logRow();
    void logFiles();
    void outOfDescriptors();
    void stopWithOpenConnections();
    void destroyWhileGenerating();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakeSource> m_source;
    std::unique_ptr<HttpdServer> m_server;
    quint16 m_port = 0;
};

namespace {

/// What Qt warned of on any thread since the last look.
class Warnings
{
public:
    static void install() { qInstallMessageHandler(&Warnings::handle); }
    static QStringList take()
    {
        const std::lock_guard<std::mutex> guard(mutex());
        return std::exchange(list(), {});
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        fprintf(stderr, "%s\n", qPrintable(text));
        if (type == QtDebugMsg || type == QtInfoMsg)
            return;
        const std::lock_guard<std::mutex> guard(mutex());
        list().append(text);
    }
    static std::mutex &mutex()
    {
        static std::mutex instance;
        return instance;
    }
    static QStringList &list()
    {
        static QStringList instance;
        return instance;
    }
};

/// What takes a fraction of a second here. Far more is allowed, as a test machine may be busy with
/// other things: what these tests catch is waiting for a client's time-out, which is 30 seconds.
constexpr qint64 soon = 10000;

const char docName[] = "cfg0200a7aabbcc.xml";

int entryCount(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int threadCount()
{
    return entryCount(QStringLiteral("/proc/self/task"));
}

[[maybe_unused]] int descriptorCount()
{
    return entryCount(QStringLiteral("/proc/self/fd"));
}

/// From so many hosts by turns, the first of them 127.0.0.`firstHost`.
std::vector<Phone> connectMany(quint16 port, int count, int firstHost = 1, int hosts = 1)
{
    std::vector<Phone> phones;
    phones.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        phones.emplace_back(port, firstHost + i % hosts);
    return phones;
}

[[maybe_unused]] double cpuSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace

void TestHttpdServer::init()
{
    Warnings::take();
    m_folder = std::make_unique<QTemporaryDir>();
    m_source = std::make_unique<FakeSource>();
    m_server = std::make_unique<HttpdServer>(*m_source, m_folder->path() + QLatin1Char('/'));
    QVERIFY(m_server->listen(QHostAddress::LocalHost, 0));
    m_port = m_server->serverPort();
}

void TestHttpdServer::cleanup()
{
    m_server.reset();
    QCOMPARE(Warnings::take(), QStringList());
}

void TestHttpdServer::answer_data()
{
    QTest::addColumn<QByteArray>("agent");
    QTest::addColumn<QString>("product");
    QTest::addColumn<int>("type");
    QTest::newRow("cordless") << QByteArray("Velloran DK715") << QStringLiteral("DK") << 14;
    QTest::newRow("video phone") << QByteArray("KTV3275 KTP") << QStringLiteral("KTV3275") << 13;
}

void TestHttpdServer::answer()
{
    QFETCH(QByteArray, agent);
    QFETCH(QString, product);
    QFETCH(int, type);
    QSignalSpy reports(m_server.get(), &HttpdServer::requestServer);

    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    bool reset = true;
    const QByteArray answer = ask(m_port, request(docName, agent), &reset);

    const QByteArray stamp = answer.mid(answer.indexOf("Last-Modified: ") + 15, 24).split('\r')[0];
    // English, although main() made the system speak Chinese.
    QCOMPARE(QLocale::system().language(), QLocale::Chinese);
    const QString format = QStringLiteral("ddd MMM d HH:mm:ss yyyy");
    const QDateTime modified = QLocale::c().toDateTime(QString::fromLatin1(stamp), format);
    QCOMPARE(QLocale::c().toString(modified, format).toLatin1(), stamp);
    QVERIFY(modified >= before && modified <= QDateTime::currentDateTime());
    QCOMPARE(answer, "HTTP/1.0 200 Ok\r\n"
                     "Server: Fortune/1.0\r\n"
                     "Last-Modified: " +
                         stamp +
                         "\r\n"
                         "Accept-Ranges: bytes\r\n"
                         "Content-Type: application/xml\r\n"
                         "\r\n" +
                         FakeSource::document(type, QLatin1String(docName)));
    QVERIFY(!reset);
    QCOMPARE(m_source->exports(),
             QStringList(QStringLiteral("%1 UTF-8 %2").arg(type).arg(QLatin1String(docName))));
    QCOMPARE(m_source->saves(), 1);
    QTRY_COMPARE(m_source->ends(), QStringList(QStringLiteral("sent %1").arg(answer.size())));
    QTRY_COMPARE(reports.size(), 1);
    QCOMPARE(reports[0][0].toString(),
             QStringLiteral("One device request cfg.\nProduct:%1\nFileName:%2")
                 .arg(product, QLatin1String(docName)));
}

void TestHttpdServer::noAnswer_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("reported");
    QTest::addColumn<int>("exports");
    QTest::addColumn<QString>("end");
    const auto get = [](const QByteArray &name) { return request(name, "KTP"); };
    QTest::newRow("firmware") << get("ktp2140fw.bin") << false << 0 << QStringLiteral("no name 0");
    QTest::newRow("unknown device")
        << get("cfgunknown.xml") << true << 1 << QStringLiteral("not listed 0");
    QTest::newRow("file gone after generation")
        << get("cfgvanishing.xml") << true << 1 << QStringLiteral("not written 0");
    QTest::newRow("line without end") << QByteArray("GET /cfg0200a7aabbcc.xml HTTP/1.1") << false
                                      << 0 << QStringLiteral("no name 0");
    QTest::newRow("binary") << QByteArray("\0\xff\xfe\n\0\n\n", 7) << false << 0
                            << QStringLiteral("no name 0");
    QTest::newRow("NUL") << get(QByteArray("cfgx.xml\0y", 10)) << true << 0
                         << QStringLiteral("refused name 0");
    QTest::newRow("traversal by query form after a plain one")
        << "GET /cfg0a.xml HTTP/1.1\r\n" + get("../x.xml?pro=KTP") << true << 0
        << QStringLiteral("refused name 0");
    QTest::newRow("name split by the line limit")
        << get("cfg" + QByteArray(1100, 'a') + ".xml") << false << 0 << QStringLiteral("no name 0");
}

void TestHttpdServer::noAnswer()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, reported);
    QSignalSpy reports(m_server.get(), &HttpdServer::requestServer);
    QElapsedTimer timer;
    timer.start();
    bool reset = true;
    QCOMPARE(ask(m_port, bytes, &reset), QByteArray());
    QVERIFY(!reset);
    QVERIFY(timer.elapsed() < soon);
    QTEST(m_source->exports().size(), "exports");
    // The report is on its way before the connection is closed.
    QCoreApplication::processEvents();
    QCOMPARE(reports.size(), reported ? 1 : 0);
    QTRY_COMPARE(m_source->ends().size(), 1);
    QTEST(m_source->ends().first(), "end");

    const QStringList left = QDir(m_folder->filePath(QStringLiteral("HTTPD/MACCFG")))
                                 .entryList(QDir::Files | QDir::Hidden | QDir::System);
    QCOMPARE(left, QStringList());
}

void TestHttpdServer::foldersAreThePrivateOwners()
{
    ask(m_port, request(docName, "KTP"));
    const QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    for (const char *path : {"HTTPD", "HTTPD/MACCFG"})
        QCOMPARE(filePermissions(m_folder->filePath(QLatin1String(path))), owner);
    // Made anew when somebody cleans up between two requests.
    QVERIFY(QDir(m_folder->filePath(QStringLiteral("HTTPD"))).removeRecursively());
    QVERIFY(!ask(m_port, request(docName, "KTP")).isEmpty());
}

void TestHttpdServer::unchangedDocument()
{
    int exports = 0;
    const auto fetch = [&](const char *agent, int type, int made) {
        QCOMPARE(bodyOf(ask(m_port, request(docName, agent))),
                 FakeSource::document(type, QLatin1String(docName)));
        QCOMPARE(m_source->exports().size(), exports += made);
    };
    m_source->setListVersion(1);
    fetch("KTP", DeskPhoneXml, 1);
    fetch("KTP", DeskPhoneXml, 0);
    fetch("DK", CordlessXml, 1);
    fetch("KTP", DeskPhoneXml, 1);
    m_source->setListVersion(2);
    fetch("KTP", DeskPhoneXml, 1);
    fetch("KTP", DeskPhoneXml, 0);
    // Somebody else's change, or removal, is made good.
    const QString path =
        m_folder->filePath(QLatin1String("HTTPD/MACCFG/") + QLatin1String(docName));
    QVERIFY(QFile::resize(path, 1));
    fetch("KTP", DeskPhoneXml, 1);
    QVERIFY(QFile::remove(path));
    fetch("KTP", DeskPhoneXml, 1);
}

void TestHttpdServer::requestInSegments()
{
    // The second client has closed its end, and never sends the empty line.
    for (const char *end : {"K715\r\n\r\n", "K715\r\n"}) {
        Phone phone(m_port);
        for (const char *part :
             {"GET /cfg0200a7", "aabbcc.xml HTTP/1.1\r\nHost: x\r", "\nUser-Agent: D", end}) {
            phone.send(part);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        phone.endInput();
        const QByteArray answer = phone.receiveAll();
        QCOMPARE(bodyOf(answer), FakeSource::document(CordlessXml, QLatin1String(docName)));
    }
}

void TestHttpdServer::overlongRequest_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("answered");
    const QByteArray get = "GET /" + QByteArray(docName) + " HTTP/1.1\r\n";
    QTest::newRow("10 MB without a line end") << QByteArray(10 * 1024 * 1024, 'a') << false;
    QTest::newRow("10 MB of lines") << QByteArray("X: y\r\n").repeated(1700000) << false;
    // What fits is taken, and the answer arrives although the rest is never read.
    QTest::newRow("more than fits after the request")
        << get + QByteArray("X: y\r\n").repeated(16 * 1024) << true;
    // The rest of a line that is too long counts as a line.
    QTest::newRow("request in the rest of a line") << QByteArray(1023, 'a') + get + "\r\n" << true;
}

void TestHttpdServer::overlongRequest()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, answered);
    QElapsedTimer timer;
    timer.start();
    bool reset = false;
    const QByteArray answer = ask(m_port, bytes, &reset);
    QCOMPARE(!answer.isEmpty(), answered);
    // A reset could have overtaken the answer.
    QVERIFY(!answered || !reset);
    QVERIFY(timer.elapsed() < soon);
}

void TestHttpdServer::slowClientIsClosed()
{
    QElapsedTimer timer;
    timer.start();
    Phone phone(m_port);
    while (!phone.hasNews() && phone.send("G"))
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    QVERIFY(timer.elapsed() < soon);
}

void TestHttpdServer::namesDoNotWaitForEachOther()
{
    m_source->hold(QLatin1String(docName));
    Phone held(m_port);
    held.send(request(docName, "KTP"));
    QTRY_COMPARE(m_source->exports().size(), 1);

    // A few names, as one may share its lock with the held one by chance.
    std::vector<Phone> others;
    for (int i = 0; i < 8; ++i) {
        others.emplace_back(m_port);
        others.back().send(request("cfg" + QByteArray::number(i) + ".xml", "KTP"));
    }
    QTRY_VERIFY(std::count_if(others.begin(), others.end(),
                              [](const Phone &phone) { return phone.hasNews(); }) >= 4);
    QVERIFY(!held.hasNews());
    m_source->hold(QString());
    QVERIFY(!held.receiveAll().isEmpty());
}

void TestHttpdServer::manyTelephonesAtOnce()
{
    // More than may be served at a time: all are real, so none is turned away.
    const int count = HttpdServer::maxConnections + 100;
    std::vector<Phone> phones = connectMany(m_port, count);
    for (int i = 0; i < count; ++i)
        phones[static_cast<std::size_t>(i)].send(
            request("cfg" + QByteArray::number(i % 50) + ".xml", "KTP"));
    int answered = 0;
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("cfg%1.xml").arg(i % 50);
        if (bodyOf(phones[static_cast<std::size_t>(i)].receiveAll()) ==
            FakeSource::document(DeskPhoneXml, name))
            ++answered;
    }
    QCOMPARE(answered, count);
}

void TestHttpdServer::idleClientsMakeRoom()
{
    const int threadsBefore = threadCount();
    const auto open = [](const std::vector<Phone> &phones) {
        return std::count_if(phones.begin(), phones.end(),
                             [](const Phone &phone) { return !phone.hasNews(); });
    };
    const std::vector<Phone> old = connectMany(m_port, 600, 2, 10);
    QTRY_VERIFY(open(old) <= HttpdServer::maxConnections);
    const std::vector<Phone> young = connectMany(m_port, 400, 2, 10);

    const QByteArray answer = ask(m_port, request(docName, "KTP"));
    QCOMPARE(bodyOf(answer), FakeSource::document(DeskPhoneXml, QLatin1String(docName)));

    // The oldest have gone, the newest are still there: nobody waited for their time to run out.
    QTRY_VERIFY(open(old) + open(young) <= HttpdServer::maxConnections);
    QVERIFY(open(old) + open(young) >= HttpdServer::maxConnections - 2);
    QCOMPARE(static_cast<std::size_t>(open(young)), young.size());
    QTRY_VERIFY(m_source->ends().count(QStringLiteral("dropped 0")) >= 486);
    QVERIFY(threadCount() - threadsBefore <= HttpdServer::maxConnections);
}

void TestHttpdServer::hostileHost_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("holds connections") << QByteArray();
    QTest::newRow("asks at once for what is slow to write") << request("cfg%1.xml", "KTP");
    QTest::newRow("asks at once for the telephone's document") << request(docName, "DK715");
}

void TestHttpdServer::hostileHost()
{
    QFETCH(QByteArray, bytes);
    m_source->setWriteTime(std::chrono::milliseconds(20));
    std::vector<Phone> hostile = connectMany(m_port, 900);
    int number = 0;
    for (Phone &phone : hostile)
        phone.send(QByteArray(bytes).replace("%1", QByteArray::number(++number)));
    QElapsedTimer timer;
    timer.start();
    Phone phone(m_port, 2);
    phone.send(request(docName, "KTP"));
    const QByteArray answer = phone.receiveAll();
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(bodyOf(answer), FakeSource::document(DeskPhoneXml, QLatin1String(docName)));
}

void TestHttpdServer::folderHasABound()
{
    const QString folder = m_folder->filePath(QStringLiteral("HTTPD/MACCFG/"));
    const auto document = [&](int number) {
        return folder + QStringLiteral("cfg%1.xml").arg(number, 12, 10, QLatin1Char('0'));
    };
    QDir().mkpath(folder);
    for (int i = 0; i < 1200; ++i) {
        QFile file(document(i));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-1).addSecs(i),
                                 QFileDevice::FileModificationTime));
    }
    ask(m_port, request("cfg0a.xml", "KTP"));
    QTRY_VERIFY(entryCount(folder) <= 1000);
    QVERIFY(!QFile::exists(folder + QStringLiteral("cfg0a.xml"))); // the only odd one
    QVERIFY(!QFile::exists(document(0)));
    QVERIFY(QFile::exists(document(1199)));

    int number = 0;
    while (number < 2000) {
        std::vector<Phone> phones = connectMany(m_port, 100);
        for (Phone &phone : phones)
            phone.send(request("cfg0a.xml" + QByteArray::number(++number), "KTP"));
        for (Phone &phone : phones)
            QVERIFY(phone.receiveAll().startsWith("HTTP/1.0 200 Ok"));
        QTRY_VERIFY(entryCount(folder) <= 1000);
    }
    QVERIFY(QFile::exists(document(1199)));

    m_server->clearDocuments(); // nobody asks meanwhile
    QTRY_COMPARE(entryCount(folder), 0);
}

void TestHttpdServer::logAccountsForAStorm()
{
    RequestLog log(m_folder->filePath(QStringLiteral("log")));
    log.start();
    m_source->setLog(&log);
    const int count = 1200;
    for (int sent = 0; sent < count; sent += 100) {
        std::vector<Phone> phones = connectMany(m_port, 100, 1, 3);
        for (Phone &phone : phones)
            phone.send(request(docName, "KTP"));
        for (Phone &phone : phones)
            QVERIFY(!phone.receiveAll().isEmpty());
    }
    QTRY_COMPARE(m_source->ends().size(), count);
    m_server.reset();
    log.stop();

    const QString path = m_folder->filePath(QStringLiteral("log/requests.csv"));
    QCOMPARE(filePermissions(path), QFile::ReadOwner | QFile::WriteOwner);
    const QList<QByteArray> rows = fileContent(path).trimmed().split('\n');
    QCOMPARE(rows.first() + '\n', RequestLogFile::titleRow());
    QVERIFY2(rows.size() < count, "no row stands for several");
    int requests = 0;
    for (const QByteArray &row : rows.mid(1)) {
        requests += row.mid(row.lastIndexOf(',') + 1).toInt();
        QVERIFY2(row.contains(" more from 127.0.0.") ||
                     row.contains(",cfg0200a7aabbcc.xml,KTP,sent,"),
                 row);
    }
    QCOMPARE(requests, count);
}

void TestHttpdServer::logRow_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<int>("several");
    QTest::addColumn<QString>("fields");
    const auto row = [](const char *name, const QString &asked, const char *shown) {
        QTest::newRow(name)
            << asked << 0
            << QStringLiteral("10.0.0.9,%1,KTP,not listed,0,1").arg(QLatin1String(shown));
    };
    row("plain", QStringLiteral("cfg0a.xml"), "cfg0a.xml");
    row("comma and quote", QStringLiteral("a,\"b"), R"("a,""b")");
    row("formula", QStringLiteral("=1+1"), "'=1+1");
    row("line end, backslash", QStringLiteral("a\r\n\\"), R"(a\u000d\u000a\\)");
    row("password in the query", QStringLiteral("cfg0a.xml?password=x"), "cfg0a.xml?...");
    row("password before the host", QStringLiteral("http://me:x@pc/fw.bin"), "pc/fw.bin");
    QTest::newRow("several") << QString() << 1240
                             << R"(10.0.0.9,"1,240 more from 10.0.0.9",KTP,more,0,1240)";
}

void TestHttpdServer::logRow()
{
    QFETCH(QString, asked);
    QFETCH(int, several);
    LogRow row;
    row.request = {1, asked, QStringLiteral("KTP"), {}, 0, 0x0a000009};
    row.request.outcome = RequestOutcome::NotListed;
    row.several = static_cast<quint64>(several);
    const QString text = QString::fromUtf8(RequestLogFile::text(row));
    QTEST(text.section(QStringLiteral(",http,"), 1).trimmed(), "fields");
}

/// A file of 5 MB makes room, five stay; what could not be written is counted later.
void TestHttpdServer::logFiles()
{
    const QString folder = m_folder->filePath(QStringLiteral("log"));
    RequestLogFile log(folder);
    LogRow row;
    row.request.asked = QString(200, QLatin1Char('a'));
    row.several = 0;
    QFile blocker(folder);
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    QVERIFY(!log.add({row, row}));
    QVERIFY(blocker.remove());
    const std::vector<LogRow> many(20000, row);
    for (int i = 0; i < 7; ++i)
        QVERIFY(log.add(many));
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    QCOMPARE(files.size(), RequestLogFile::files);
    QCOMPARE(files.first().fileName(), QStringLiteral("requests-1.csv"));
    for (const QFileInfo &file : files)
        QVERIFY(file.size() <= RequestLogFile::fullSize);
    QVERIFY(fileContent(files.at(3).filePath()).startsWith(RequestLogFile::titleRow()));
}

void TestHttpdServer::outOfDescriptors()
{
#ifndef Q_OS_UNIX
    QSKIP("this system has no limit of descriptors");
#else
    rlimit original{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &original), 0);
    rlimit small = original;
    small.rlim_cur = 400;
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &small), 0);
    std::vector<int> fillers;
    const auto restore = qScopeGuard([&] {
        for (const int fd : fillers)
            ::close(fd);
        setrlimit(RLIMIT_NOFILE, &original);
    });

    const int openBefore = descriptorCount();
    const std::vector<Phone> idle = connectMany(m_port, 30);
    // Of each connection the client's end, and the server's socket and handle.
    QTRY_VERIFY(descriptorCount() >= openBefore + 3 * 30);
    for (int fd = 0; (fd = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;)
        fillers.push_back(fd);
    // The last descriptor: now a connection waits that cannot be accepted.
    ::close(fillers.back());
    fillers.pop_back();
    Phone late(m_port);
    late.send(request(docName, "KTP"));

    QElapsedTimer timer;
    const double cpu = cpuSeconds();
    timer.start();
    // Idle clients give way until there is enough for the telephone.
    QTRY_VERIFY(late.hasNews());
    const double load = (cpuSeconds() - cpu) * 1000 / static_cast<double>(timer.elapsed());
    QVERIFY2(timer.elapsed() >= 40, "the shortage is not one");
    QVERIFY2(load < 0.5, qPrintable(QString::number(load)));
    QVERIFY(late.receiveAll().startsWith("HTTP/1.0 200 Ok"));
    QVERIFY(!std::all_of(idle.begin(), idle.end(), [](const Phone &p) { return p.hasNews(); }));
#endif
}

void TestHttpdServer::stopWithOpenConnections()
{
    const int openBefore = descriptorCount();
    std::vector<Phone> phones = connectMany(m_port, 500);
    QTRY_VERIFY(descriptorCount() >= openBefore + 2 * 500); // of each, both ends
    phones.emplace_back(m_port);
    phones.back().send("GET /cfg0200a7");
    phones.emplace_back(m_port);
    phones.back().send(request("cfghuge.xml", "KTP")); // an answer that nobody fetches
    QTRY_VERIFY_WITH_TIMEOUT(phones.back().hasNews(), 10000);

    QElapsedTimer timer;
    timer.start();
    m_server->shutDown();
    QVERIFY(!m_server->isListening());
    m_server->deleteLater();
    QSignalSpy destroyed(m_server.release(), &QObject::destroyed);
    QTRY_COMPARE(destroyed.size(), 1);
    QVERIFY(timer.elapsed() < soon);
    for (Phone &phone : phones)
        phone.receiveAll(); // ends, as each connection is closed
    QVERIFY(!Phone(m_port).isConnected());
}

void TestHttpdServer::destroyWhileGenerating()
{
    m_source->hold(QLatin1String(docName));
    Phone phone(m_port);
    phone.send(request(docName, "KTP"));
    QTRY_COMPARE(m_source->exports().size(), 1);
    const std::vector<Phone> idle = connectMany(m_port, 5);

    auto release = std::async(std::launch::async, [this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        m_source->hold(QString());
    });
    QElapsedTimer timer;
    timer.start();
    m_server.reset();
    QVERIFY(timer.elapsed() < soon);
    release.get();
    // Nobody calls the source any more: a use of it would show under the sanitizers.
    m_source.reset();
    QTest::qWait(20);
}

int main(int argc, char **argv)
{
    qputenv("LC_ALL", "zh_CN.UTF-8");
    Warnings::install();
    QCoreApplication app(argc, argv);
    TestHttpdServer test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_httpdserver.moc"
