#include "FilePermissions.h"
#include "HttpPhone.h"
#include "TestDevices.h"
#include "net/HttpdServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

#include <ctime>
#include <future>
#include <vector>

using namespace std::chrono_literals;

namespace {

/// What takes a fraction of a second here. Far more is allowed, as a test machine may be busy with
/// other things: what these tests catch is waiting for a client's time-out, which is 30 seconds.
constexpr qint64 soon = 10000;

const char docName[] = "cfg0200a7aabbcc.xml";
const char ok[] = "HTTP/1.0 200 Ok\r\n";

int entryCount(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

int descriptorCount()
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

auto countNews(const std::vector<Phone> &phones)
{
    return std::count_if(phones.begin(), phones.end(), [](const Phone &p) { return p.hasNews(); });
}

} // namespace

/// The server over real connections: what is on the wire, what happens to clients that do not
/// behave, and how it ends.
class TestHttpdServer : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_source = std::make_unique<FakeSource>();
        m_server = std::make_unique<HttpdServer>(*m_source, m_folder->path() + QLatin1Char('/'));
        QVERIFY(m_server->listen(QHostAddress::LocalHost, 0));
        m_port = m_server->serverPort();
    }

    void cleanup() { m_server.reset(); }

    void answer_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("product");
        QTest::addColumn<int>("type");
        const auto row = [](const char *name, const QByteArray &bytes, const char *product,
                            int type) {
            QTest::newRow(name) << bytes << QString::fromLatin1(product) << type;
        };
        row("cordless", request(docName, "Velloran DK715"), "DK", 14);
        row("video phone", request(docName, "KTV3275 KTP"), "KTV3275", 13);
        // What fits is taken, and the answer arrives although the rest is never read.
        row("more than fits", request(docName, "KTP") + QByteArray("X: y\r\n").repeated(16 * 1024),
            "KTP", 13);
        row("in the rest of a line too long", QByteArray(1023, 'a') + request(docName, "DK"), "DK",
            14);
    }

    void answer()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, product);
        QFETCH(int, type);
        QSignalSpy reports(m_server.get(), &HttpdServer::requestServer);

        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        bool reset = true;
        const QByteArray answer = ask(m_port, bytes, &reset);

        const QByteArray stamp =
            answer.mid(answer.indexOf("Last-Modified: ") + 15, 24).split('\r')[0];
        // English, although main() made the system speak Chinese.
        QCOMPARE(QLocale::system().language(), QLocale::Chinese);
        const QString format = QStringLiteral("ddd MMM d HH:mm:ss yyyy");
        const QDateTime modified = QLocale::c().toDateTime(QString::fromLatin1(stamp), format);
        QCOMPARE(QLocale::c().toString(modified, format).toLatin1(), stamp);
        QVERIFY(modified >= before && modified <= QDateTime::currentDateTime());
        QCOMPARE(answer, ok + ("Server: Fortune/1.0\r\nLast-Modified: " + stamp) +
                             "\r\nAccept-Ranges: bytes\r\nContent-Type: application/xml\r\n\r\n" +
                             FakeSource::document(type, docName));
        QVERIFY(!reset);
        QCOMPARE(m_source->exports(),
                 QStringList(QStringLiteral("%1 UTF-8 %2").arg(type).arg(QLatin1String(docName))));
        QCOMPARE(m_source->saves.load(), 1);
        QTRY_COMPARE(m_source->ends(), QStringList(QStringLiteral("sent %1").arg(answer.size())));
        QTRY_COMPARE(reports.size(), 1);
        QCOMPARE(reports[0][0].toString(),
                 QStringLiteral("One device request cfg.\nProduct:%1\nFileName:%2")
                     .arg(product, QLatin1String(docName)));
    }

    void noAnswer_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("reports");
        QTest::addColumn<int>("exports");
        QTest::addColumn<QString>("end");
        const auto row = [](const char *name, const QByteArray &bytes, int reports, int exports,
                            const char *end) {
            QTest::newRow(name) << bytes << reports << exports << QString::fromLatin1(end);
        };
        const auto get = [](const QByteArray &name) { return request(name, "KTP"); };
        row("firmware", get("ktp2140fw.bin"), 0, 0, "no name 0");
        row("unknown device", get("cfgunknown.xml"), 1, 1, "not listed 0");
        row("file gone after generation", get("cfgvanishing.xml"), 1, 1, "not written 0");
        row("line without end", "GET /cfg0200a7aabbcc.xml HTTP/1.1", 0, 0, "no name 0");
        row("binary", QByteArray("\0\xff\xfe\n\0\n\n", 7), 0, 0, "no name 0");
        row("10 MB without a line end", QByteArray(10 << 20, 'a'), 0, 0, "no name 0");
        row("10 MB of lines", QByteArray("X: y\r\n").repeated(1700000), 0, 0, "no name 0");
        row("NUL", get(QByteArray("cfgx.xml\0y", 10)), 1, 0, "refused name 0");
        row("traversal by query form after a plain one",
            "GET /cfg0a.xml HTTP/1.1\r\n" + get("../x.xml?pro=KTP"), 1, 0, "refused name 0");
        row("name split by the line limit", get("cfg" + QByteArray(1100, 'a') + ".xml"), 0, 0,
            "no name 0");
    }

    void noAnswer()
    {
        QFETCH(QByteArray, bytes);
        QSignalSpy reports(m_server.get(), &HttpdServer::requestServer);
        QElapsedTimer timer;
        timer.start();
        bool reset = true;
        QCOMPARE(ask(m_port, bytes, &reset), QByteArray());
        QVERIFY(!reset || bytes.size() > 1 << 20);
        QVERIFY(timer.elapsed() < soon);
        QTEST(m_source->exports().size(), "exports");
        // The report is on its way before the connection is closed.
        QCoreApplication::processEvents();
        QTEST(reports.size(), "reports");
        QTRY_COMPARE(m_source->ends().size(), 1);
        QTEST(m_source->ends().first(), "end");
        QCOMPARE(entryCount(path("HTTPD/MACCFG")), 0);
    }

    /// They are private, and made anew when somebody cleans up between two requests.
    void folders()
    {
        for (int i = 0; i < 2; ++i) {
            QVERIFY(ask(m_port, request(docName, "KTP")).startsWith(ok));
            for (const char *name : {"HTTPD", "HTTPD/MACCFG"})
                QCOMPARE(filePermissions(path(name)),
                         QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            QVERIFY(QDir(path("HTTPD")).removeRecursively());
        }
    }

    void unchangedDocument()
    {
        int exports = 0;
        const auto fetch = [&](const char *agent, int type, int made) {
            QCOMPARE(bodyOf(ask(m_port, request(docName, agent))),
                     FakeSource::document(type, docName));
            QCOMPARE(m_source->exports().size(), exports += made);
        };
        m_source->version = 1;
        fetch("KTP", DeskPhoneXml, 1);
        fetch("KTP", DeskPhoneXml, 0);
        fetch("DK", CordlessXml, 1);
        fetch("KTP", DeskPhoneXml, 1);
        m_source->version = 2;
        fetch("KTP", DeskPhoneXml, 1);
        fetch("KTP", DeskPhoneXml, 0);
        // Somebody else's change, or removal, is made good.
        const QString file = path("HTTPD/MACCFG/") + QLatin1String(docName);
        QVERIFY(QFile::resize(file, 1));
        fetch("KTP", DeskPhoneXml, 1);
        QVERIFY(QFile::remove(file));
        fetch("KTP", DeskPhoneXml, 1);
    }

    void inSegments()
    {
        // The second client has closed its end, and never sends the empty line.
        for (const char *end : {"K715\r\n\r\n", "K715\r\n"}) {
            Phone phone(m_port);
            for (const char *part :
                 {"GET /cfg0200a7", "aabbcc.xml HTTP/1.1\r\nHost: x\r", "\nUser-Agent: D"}) {
                phone.send(part);
                QVERIFY(!phone.hasNews(20ms));
            }
            phone.send(end);
            phone.endInput();
            QCOMPARE(bodyOf(phone.receiveAll()), FakeSource::document(CordlessXml, docName));
        }
        // An answer that is more than the system takes at once.
        QCOMPARE(bodyOf(ask(m_port, request("cfghuge.xml", "DK"))),
                 FakeSource::document(CordlessXml, "cfghuge.xml"));
        {
            Phone leaving(m_port);
            leaving.send(request("cfghuge.xml", "DK"));
            QTRY_VERIFY(leaving.hasNews());
        }
        QTRY_VERIFY(m_source->ends().last().startsWith(QLatin1String("gave up")));
    }

    void slowClientIsClosed()
    {
        QElapsedTimer timer;
        timer.start();
        Phone phone(m_port);
        while (phone.send("G") && !phone.hasNews(100ms))
            QVERIFY(timer.elapsed() < soon);
    }

    void namesDoNotWaitForEachOther()
    {
        m_source->hold(QLatin1String(docName));
        Phone held(m_port);
        held.send(request(docName, "KTP"));
        QTRY_COMPARE(m_source->exports().size(), 1);

        // A few names, as one may share its lock with the held one by chance.
        std::vector<Phone> others = connectMany(m_port, 8);
        int number = 0;
        for (Phone &other : others)
            other.send(request("cfg" + QByteArray::number(++number) + ".xml", "KTP"));
        QTRY_VERIFY(countNews(others) >= 4);
        QVERIFY(!held.hasNews());
        m_source->hold(QString());
        QVERIFY(!held.receiveAll().isEmpty());
    }

    /// More than may be served at a time: all are real, so none is turned away. The log has not a
    /// row for each, but accounts for all.
    void manyTelephonesAtOnce()
    {
        RequestLog log(path("log"));
        log.start();
        m_source->log = &log;
        const int count = HttpdServer::maxConnections + 100;
        const auto name = [](int i) { return "cfg" + QByteArray::number(i % 50) + ".xml"; };
        for (int round = 0; round < 2; ++round) {
            std::vector<Phone> phones = connectMany(m_port, count, 1, 3);
            int number = 0;
            for (Phone &phone : phones)
                phone.send(request(name(++number), "KTP"));
            number = 0;
            for (Phone &phone : phones)
                QCOMPARE(bodyOf(phone.receiveAll()),
                         FakeSource::document(DeskPhoneXml, name(++number)));
        }
        QTRY_COMPARE(m_source->ends().size(), 2 * count);
        m_server.reset();
        log.stop();

        const QString file = path("log/requests.csv");
        QCOMPARE(filePermissions(file), QFile::ReadOwner | QFile::WriteOwner);
        const QList<QByteArray> rows = fileContent(file).trimmed().split('\n');
        QCOMPARE(rows.first() + '\n', RequestLogFile::titleRow());
        QVERIFY2(rows.size() < 2 * count, "no row stands for several");
        int requests = 0;
        for (const QByteArray &row : rows.mid(1)) {
            requests += row.mid(row.lastIndexOf(',') + 1).toInt();
            QVERIFY2(row.contains(" more from 127.0.0.") || row.contains(".xml,KTP,sent,"), row);
        }
        QCOMPARE(requests, 2 * count);
    }

    void idleClientsMakeRoom()
    {
        const QString threads = QStringLiteral("/proc/self/task");
        const int threadsBefore = entryCount(threads);
        const auto open = [](const std::vector<Phone> &phones) {
            return static_cast<int>(phones.size()) - static_cast<int>(countNews(phones));
        };
        const std::vector<Phone> old = connectMany(m_port, 600, 2, 10);
        QTRY_VERIFY(open(old) <= HttpdServer::maxConnections);
        const std::vector<Phone> young = connectMany(m_port, 400, 2, 10);
        QCOMPARE(bodyOf(ask(m_port, request(docName, "KTP"))),
                 FakeSource::document(DeskPhoneXml, docName));

        // The oldest have gone, the newest are still there: nobody waited for their time to run
        // out.
        QTRY_VERIFY(open(old) + open(young) <= HttpdServer::maxConnections);
        QVERIFY(open(old) + open(young) >= HttpdServer::maxConnections - 2);
        QCOMPARE(open(young), 400);
        QTRY_VERIFY(m_source->ends().count(QStringLiteral("dropped 0")) >= 486);
        QVERIFY(entryCount(threads) - threadsBefore <= HttpdServer::maxConnections);
    }

    void hostileHost_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("holds connections") << QByteArray();
        QTest::newRow("asks at once for what is slow to write") << request("cfg%1.xml", "KTP");
        QTest::newRow("asks at once for the telephone's document") << request(docName, "DK715");
    }

    void hostileHost()
    {
        QFETCH(QByteArray, bytes);
        m_source->writeTime = 20ms;
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
        QCOMPARE(bodyOf(answer), FakeSource::document(DeskPhoneXml, docName));
    }

    void folderHasABound()
    {
        const QString folder = path("HTTPD/MACCFG/");
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

        for (int number = 0; number < 2000;) {
            std::vector<Phone> phones = connectMany(m_port, 100);
            for (Phone &phone : phones)
                phone.send(request("cfg0a.xml" + QByteArray::number(++number), "KTP"));
            for (Phone &phone : phones)
                QVERIFY(phone.receiveAll().startsWith(ok));
            QTRY_VERIFY(entryCount(folder) <= 1000);
        }
        QVERIFY(QFile::exists(document(1199)));

        m_server->clearDocuments(); // nobody asks meanwhile
        QTRY_COMPARE(entryCount(folder), 0);
    }

    void logRow()
    {
        for (const auto &[asked, fields] :
             {std::pair("cfg0a.xml", "cfg0a.xml"), std::pair("a,\"b", R"("a,""b")"),
              std::pair("=1+1", "'=1+1"), std::pair("a\r\n\\", R"(a\u000d\u000a\\)"),
              std::pair("cfg0a.xml?password=x", "cfg0a.xml?..."),
              std::pair("http://me:x@pc/fw.bin", "pc/fw.bin")}) {
            LogRow row;
            row.request = {1, QString::fromLatin1(asked), QStringLiteral("KTP"), {}, 0, 0x0a000009};
            row.request.outcome = RequestOutcome::NotListed;
            const QByteArray text = RequestLogFile::text(row);
            QCOMPARE(text.mid(text.indexOf(",http,")),
                     QByteArray(",http,10.0.0.9,") + fields + ",KTP,not listed,0,1\r\n");
            row.several = 1240;
            QVERIFY(RequestLogFile::text(row).endsWith(
                ",http,10.0.0.9,\"1,240 more from 10.0.0.9\",KTP,more,0,1240\r\n"));
        }
    }

    /// A file of 5 MB makes room, five stay; what could not be written is counted later.
    void logFiles()
    {
        const QString folder = path("log");
        RequestLogFile log(folder);
        LogRow row;
        row.request.asked = QString(200, QLatin1Char('a'));
        QFile blocker(folder);
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        QVERIFY(!log.add({row, row}));
        QVERIFY(blocker.remove());
        const std::vector<LogRow> many(20000, row);
        for (int i = 0; i < 6; ++i)
            QVERIFY(log.add(many));
        const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
        QCOMPARE(files.size(), RequestLogFile::files);
        QCOMPARE(files.first().fileName(), QStringLiteral("requests-1.csv"));
        for (const QFileInfo &file : files)
            QVERIFY(file.size() <= RequestLogFile::fullSize);
        QVERIFY(fileContent(files.at(3).filePath()).startsWith(RequestLogFile::titleRow()));
    }

    void outOfDescriptors()
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
        const std::clock_t cpu = std::clock();
        timer.start();
        // Idle clients give way until there is enough for the telephone.
        QTRY_VERIFY(late.hasNews());
        const double busy = static_cast<double>(std::clock() - cpu) * 1000 / CLOCKS_PER_SEC;
        QVERIFY2(timer.elapsed() >= 40, "the shortage is not one");
        QVERIFY2(busy < static_cast<double>(timer.elapsed()) / 2,
                 qPrintable(QString::number(busy)));
        QVERIFY(late.receiveAll().startsWith(ok));
        QVERIFY(countNews(idle) < 30);
#endif
    }

    void stopWithOpenConnections()
    {
        const int openBefore = descriptorCount();
        std::vector<Phone> phones = connectMany(m_port, 502);
        QTRY_VERIFY(descriptorCount() >= openBefore + 2 * 500); // of each, both ends
        phones.front().send("GET /cfg0200a7");
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

    void destroyWhileGenerating()
    {
        m_source->hold(QLatin1String(docName));
        Phone phone(m_port);
        phone.send(request(docName, "KTP"));
        QTRY_COMPARE(m_source->exports().size(), 1);
        QElapsedTimer timer;
        timer.start();
        auto release = std::async(std::launch::async, [&] {
            // Until the destructor is at work.
            while (Phone(m_port).isConnected() && timer.elapsed() < soon) {
            }
            m_source->hold(QString());
        });
        m_server.reset();
        QVERIFY(timer.elapsed() < soon);
        release.get();
        // Nobody calls the source any more: a use of it would show under the sanitizers.
        m_source.reset();
        QCoreApplication::processEvents();
    }

private:
    QString path(const char *name) const
    {
        return m_folder->filePath(QLatin1String(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakeSource> m_source;
    std::unique_ptr<HttpdServer> m_server;
    quint16 m_port = 0;
};

int main(int argc, char **argv)
{
    qputenv("LC_ALL", "zh_CN.UTF-8");
    qputenv("QT_FATAL_WARNINGS", "1");
    QCoreApplication app(argc, argv);
    TestHttpdServer test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_httpdserver.moc"
