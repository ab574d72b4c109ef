#include "FilePermissions.h"
#include "HttpPhone.h"
#include "Literal.h"
#include "TestDevices.h"
#include "model/PhoneFamily.h"
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

#include <functional>
#include <future>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr qint64 soon = 10000; // far less than a client's time-out, which is 30 seconds

const char docName[] = "cfg0200a7aabbcc.xml";
const QString docFile = "cfg0200a7aabbcc.xml"_s;
const char ok[] = "HTTP/1.0 200 Ok\r\n";

#ifdef Q_OS_WIN
constexpr bool canKeepBack = false; // a connection comes before its client has said something
#else
constexpr bool canKeepBack = true;
#endif

int entryCount(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

/// A request for one of many documents.
QByteArray numbered(int number)
{
    return request("cfg" + QByteArray::number(number) + ".xml", "KTP");
}

/// Phones that connect and then send, on so many hosts in turn from 127.0.0.`firstHost` on.
std::vector<Phone> askMany(quint16 port, int count, const std::function<QByteArray(int)> &bytes,
                           int firstHost = 1, int hosts = 1)
{
    std::vector<Phone> phones;
    phones.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i) {
        phones.emplace_back(port, firstHost + i % hosts);
        if (!canKeepBack)
            phones.back().send(bytes(i));
    }
    for (int i = 0; canKeepBack && i < count; ++i)
        phones[std::size_t(i)].send(bytes(i));
    return phones;
}

int countNews(const std::vector<Phone> &phones)
{
    return int(
        std::count_if(phones.begin(), phones.end(), [](const Phone &p) { return p.hasNews(); }));
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
        QTest::addColumn<int>("type");
        // What fits is taken, and the answer arrives although the rest is never read.
        QTest::newRow("more than fits")
            << request(docName, "KTP") + QByteArray("X: y\r\n").repeated(16 * 1024)
            << int(DeskPhoneXml);
        QTest::newRow("in the rest of a line too long")
            << QByteArray(1023, 'a') + request(docName, "DK") << int(CordlessXml);
    }

    void answer()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, type);
        bool reset = true;
        const QByteArray answer = ask(m_port, bytes, &reset);
        const QByteArray stamp =
            answer.mid(answer.indexOf("Last-Modified: ") + 15, 24).split('\r')[0];
        // English, although main() made the system speak Chinese.
        QCOMPARE(QLocale::system().language(), QLocale::Chinese);
        const QString format = "ddd MMM d HH:mm:ss yyyy"_s;
        const QDateTime modified = QLocale::c().toDateTime(QString::fromLatin1(stamp), format);
        QCOMPARE(QLocale::c().toString(modified, format).toLatin1(), stamp);
        QVERIFY(modified.msecsTo(QDateTime::currentDateTime()) < soon);
        QCOMPARE(answer, ok + ("Server: Fortune/1.0\r\nLast-Modified: " + stamp) +
                             "\r\nAccept-Ranges: bytes\r\nContent-Type: application/xml\r\n\r\n" +
                             FakeSource::document(type, docName));
        QVERIFY(!reset);
        QCOMPARE(m_source->exports(), QStringList("%1 UTF-8 %2"_s.arg(type).arg(docFile)));
        QTRY_COMPARE(m_source->ends(), QStringList("sent %1"_s.arg(answer.size())));
    }

    /// The document that each family gets, whichever way a request names it, and what plug and play
    /// adds to its address.
    void eachFamily()
    {
        QStringList found;
        for (const PhoneFamily &family : families) {
            const QByteArray word = family.word;
            for (const QByteArray &bytes : {request(docName, "Velloran " + word + "99 1.0"),
                                            QByteArray("GET /cfg0200a7aabbcc.xml\r\nGET /") +
                                                docName + "?pro=" + word + " HTTP/1.1\r\n\r\n"})
                QCOMPARE(bodyOf(ask(m_port, bytes)),
                         FakeSource::document(family.document, docName));
            QCOMPARE(urlEnd(QString::fromLatin1(word) + "99"_s), QLatin1String(family.urlEnd));
            found += "%1 %2 %3"_s.arg(QLatin1String(word))
                         .arg(family.document)
                         .arg(QLatin1String(family.urlEnd));
        }
        for (const char *known :
             {"KTV3140 13 ", "KTV3175 13 ", "KTV3275 13 ", "KTV3240 13 ", "KTP 13 /", "DK 14 "})
            QVERIFY2(found.contains(QLatin1String(known)), known);
    }

    void noAnswer_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("end");
        const auto row = [](const char *end, const QByteArray &bytes) {
            QTest::addRow("%s %.25s", end, bytes.constData()) << bytes << QString::fromLatin1(end);
        };
        const auto get = [](const QByteArray &name) { return request(name, "KTP"); };
        row("no name 0", get("ktp2140fw.bin"));
        row("not listed 0", get("cfgunknown.xml"));
        row("no name 0", "GET /cfg0200a7aabbcc.xml HTTP/1.1"); // and no line's end
        row("no name 0", QByteArray("\0\xff\xfe\n\0\n\n", 7));
        row("no name 0", QByteArray(10 << 20, 'a'));
        row("no name 0", QByteArray("X: y\r\n").repeated(1700000));
        row("refused name 0", get(QByteArray("cfgx.xml\0y", 10)));
        row("refused name 0", "GET /cfg0a.xml HTTP/1.1\r\n" + get("../x.xml?pro=KTP"));
    }

    void noAnswer()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, end);
        QSignalSpy reports(m_server.get(), &HttpdServer::requestServer);
        QElapsedTimer timer;
        timer.start();
        bool reset = true;
        QCOMPARE(ask(m_port, bytes, &reset), QByteArray());
        QVERIFY(!reset || bytes.size() > 1 << 20);
        QVERIFY(timer.elapsed() < soon);
        QCOMPARE(m_source->exports().size(), end.startsWith("not "_s) ? 1 : 0);
        // The report is on its way before the connection is closed.
        QCoreApplication::processEvents();
        QCOMPARE(reports.size(), end == "no name 0"_s ? 0 : 1);
        QTRY_COMPARE(m_source->ends(), QStringList(end));
        QCOMPARE(entryCount(path("HTTPD/MACCFG")), 0);
    }

    void unchangedDocument()
    {
        m_source->version = 1;
        const auto isFetched = [&] {
            return bodyOf(ask(m_port, request(docName, "KTP"))) ==
                   FakeSource::document(DeskPhoneXml, docName);
        };
        QVERIFY(isFetched() && isFetched());
        QCOMPARE(m_source->exports().size(), 1);
        // What somebody else did to it is repaired, and the folders are private.
        QVERIFY(QFile::resize(path("HTTPD/MACCFG/") + docFile, 1) && isFetched());
        QVERIFY(QDir(path("HTTPD")).removeRecursively() && isFetched());
        for (const char *name : {"HTTPD", "HTTPD/MACCFG"})
            QCOMPARE(filePermissions(path(name)),
                     QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void inSegments()
    {
        // The second client has closed its end, and never sends the empty line.
        for (const char *end : {"K715\r\n\r\n", "K715\r\n"}) {
            Phone phone(m_port);
            for (const char *part :
                 {"GET /cfg0200a7", "aabbcc.xml HTTP/1.1\r\nHost: x\r", "\nUser-Agent: D"}) {
                phone.send(part);
                // Others are served while the rest is waited for.
                QVERIFY(ask(m_port, numbered(1)).startsWith(ok) && !phone.hasNews());
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
        QTRY_VERIFY(m_source->ends().last().startsWith("gave up"_s));

        QElapsedTimer timer; // a line that never ends, but always goes on, is not waited for
        timer.start();
        Phone slow(m_port);
        while (slow.send("G") && !slow.hasNews(1ms))
            QVERIFY(timer.elapsed() < soon);
    }

    /// More phones than may be served at a time: none is turned away. The log has fewer rows, but
    /// counts every request.
    void manyPhonesAtOnce()
    {
        RequestLog log(path("log"));
        log.start();
        m_source->log = &log;
        const int count = HttpdServer::maxConnections + 100;
        for (int round = 0; round < 2; ++round) {
            int number = 0;
            for (Phone &phone : askMany(m_port, count, numbered, 1, 3)) {
                const QByteArray name = " cfg" + QByteArray::number(number++) + ".xml ";
                QVERIFY(bodyOf(phone.receiveAll()).contains(name));
            }
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
        for (const QByteArray &row : rows) // the title counts as 0
            requests += row.mid(row.lastIndexOf(',') + 1).toInt();
        QCOMPARE(requests, 2 * count);
    }

    /// Idle clients make room, the oldest first, before their time has run out.
    void hostileHosts_data()
    {
        QTest::addColumn<int>("hosts");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("holds connections") << 1 << QByteArray("G");
        QTest::newRow("many hold connections") << 10 << QByteArray();
        QTest::newRow("asks at once for what is slow to write") << 1 << numbered(1);
        QTest::newRow("asks at once for the phone's document") << 1 << request(docName, "DK715");
    }

    void hostileHosts()
    {
        QFETCH(int, hosts);
        QFETCH(QByteArray, bytes);
        m_source->isDiskSlow = true;
        const auto letGo = qScopeGuard([&] { m_source->disk.release(1000); });
        const auto sent = [&](int number) {
            return QByteArray(bytes).replace("cfg1.", "cfg" + QByteArray::number(number) + '.');
        };
        const std::vector<Phone> old = askMany(m_port, 600, sent, 3, hosts);
        if (hosts > 1)
            QTRY_VERIFY(countNews(old) >= 600 - HttpdServer::maxConnections);
        const std::vector<Phone> young = askMany(m_port, 300, sent, 3, hosts);
        Phone phone(m_port, 2);
        phone.send(request(docName, "KTP"));
        // As long as the phone waits, a document is written now and then. A few are before its own.
        for (int written = 0; written < 80 && !phone.hasNews(50ms); ++written)
            m_source->disk.release();
        QVERIFY(phone.hasNews());
        QCOMPARE(bodyOf(phone.receiveAll()), FakeSource::document(DeskPhoneXml, docName));
        if (hosts > 1) {
            QTRY_VERIFY(countNews(old) + countNews(young) >= 900 - HttpdServer::maxConnections);
            QCOMPARE(countNews(young), 0);
        }
    }

    void folderHasABound()
    {
        const QString folder = path("HTTPD/MACCFG/");
        const auto name = [](int number) {
            return "cfg" + QByteArray::number(number).rightJustified(12, '0') + ".xml";
        };
        for (int number = 0; number < 2000; number += 100) {
            const auto asked = [&](int i) { return request(name(number + i), "KTP"); };
            for (Phone &phone : askMany(m_port, 100, asked))
                QVERIFY(phone.receiveAll().startsWith(ok));
            QTRY_VERIFY(entryCount(folder) <= 1000);
        }
        QVERIFY(!QFile::exists(folder + QString::fromLatin1(name(0)))); // the oldest go
        QVERIFY(QFile::exists(folder + QString::fromLatin1(name(1999))));

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
            row.request = {1, QString::fromLatin1(asked), "KTP"_s, {}, 0, 0x0a000009};
            row.request.outcome = RequestOutcome::NotListed;
            const QByteArray text = RequestLogFile::text(row);
            QCOMPARE(text.mid(text.indexOf(",http,")),
                     QByteArray(",http,10.0.0.9,") + fields + ",KTP,not listed,0,1\r\n");
            row.several = 1240;
            QVERIFY(RequestLogFile::text(row).endsWith(
                ",http,10.0.0.9,\"1,240 more from 10.0.0.9\",KTP,more,0,1240\r\n"));
            // Plug and play tells a phone that it is not listed; the service only keeps silent.
            QVERIFY(row.request.line().endsWith(": no answer, not in the list"_s));
            row.request.protocol = RequestEnd::Protocol::Sip;
            QVERIFY(row.request.line().endsWith(": plug and play, refused, not in the list"_s));
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
        QCOMPARE(files.first().fileName(), "requests-1.csv"_s);
        QVERIFY(files.first().size() <= RequestLogFile::fullSize);
        QVERIFY(fileContent(files.at(3).filePath()).startsWith(RequestLogFile::titleRow()));
    }

    void outOfDescriptors()
    {
#ifndef Q_OS_UNIX
        QSKIP("this system has no limit of descriptors");
#else
        rlimit original{};
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &original), 0);
        const rlimit small{400, original.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &small), 0);
        std::vector<int> fillers;
        const auto restore = qScopeGuard([&] {
            for (const int fd : fillers)
                ::close(fd);
            setrlimit(RLIMIT_NOFILE, &original);
        });

        const auto descriptors = [] { return entryCount("/proc/self/fd"_s); };
        const int openBefore = descriptors();
        const std::vector<Phone> idle = askMany(m_port, 30, [](int) { return ""; });
        // Of each connection the client's end, and the server's socket and handle.
        QTRY_VERIFY(descriptors() >= openBefore + 3 * 30);
        for (int fd = 0; (fd = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;)
            fillers.push_back(fd);
        // The last descriptor: now a connection waits that cannot be accepted.
        ::close(fillers.back());
        fillers.pop_back();
        Phone late(m_port);
        late.send(request(docName, "KTP"));

        // Idle clients give way until there is enough for the phone.
        QTRY_VERIFY(late.hasNews());
        QVERIFY(late.receiveAll().startsWith(ok));
        QVERIFY(countNews(idle) < 30);
#endif
    }

    void stopWithOpenConnections()
    {
        std::vector<Phone> phones = askMany(m_port, 502, [](int) { return "GET /cfghuge"; });
        phones.back().send(".xml\r\n\r\n"); // an answer that nobody fetches
        QTRY_VERIFY_WITH_TIMEOUT(phones.back().hasNews(), 10000);

        QElapsedTimer timer;
        timer.start();
        m_server->shutDown();
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
        m_source->hold(docFile);
        Phone held(m_port);
        held.send(request(docName, "KTP"));
        QTRY_COMPARE(m_source->exports().size(), 1);
        // Other documents do not wait for it: a few, as one may share its lock by chance.
        const std::vector<Phone> others = askMany(m_port, 8, numbered);
        QTRY_VERIFY(countNews(others) >= 4);
        QVERIFY(!held.hasNews());

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
