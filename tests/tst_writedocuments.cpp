// The program itself, started with --write-documents in a folder of its own, without a screen.
#include "RawDatabase.h"
#include "TestDevices.h"
#include "export/DkCfgExport.h"
#include "export/MacCfgExport.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString database = QStringLiteral("phonebook.db");
const QString documents = QStringLiteral("documents");
constexpr int killRounds = 10;

struct Ended
{
    int status;
    QString output;
    QString error;
};

ContactInfo device(int number, const QString &product = QString())
{
    ContactInfo device = stampedDevice(QStringLiteral("a"));
    device.mac = QStringLiteral("02:00:A7:00:%1:%2")
                     .arg(number / 256, 2, 16, QLatin1Char('0'))
                     .arg(number % 256, 2, 16, QLatin1Char('0'));
    device.product = product;
    return device;
}

QString documentName(int number)
{
    return QStringLiteral("cfg0200a700%1.xml").arg(number, 4, 16, QLatin1Char('0'));
}

/// The block of this language in the README.
QString shownInReadme(const QString &language)
{
    const QString text = QString::fromUtf8(fileContent(QStringLiteral(VL_SOURCE_DIR "/README.md")));
    return text.section(QLatin1String("```") + language + QLatin1Char('\n'), 1)
        .section(QLatin1String("```"), 0, 0);
}

/// The whole answer; empty while nobody listens.
QByteArray answer(quint16 port, const QByteArray &request)
{
    QTcpSocket phone;
    phone.connectToHost(QStringLiteral("127.0.0.1"), port);
    if (!phone.waitForConnected())
        return {};
    phone.write(request + " HTTP/1.0\r\n\r\n");
    while (phone.waitForReadyRead()) {
    }
    return phone.readAll();
}

} // namespace

class TestWriteDocuments : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writesWhatTelephonesAskFor();
    void removesNothingButDocuments();
    void endsWithTheReason_data();
    void endsWithTheReason();
    void killedLeavesWholeDocuments();
    void theNginxOfTheReadmeServesThem();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString documentPath(const QString &name) const
    {
        return path(documents + QLatin1Char('/') + name);
    }
    QByteArray document(int number) const
    {
        return fileContent(documentPath(documentName(number)));
    }
    void store(const QList<ContactInfo> &devices) const;
    std::unique_ptr<QProcess> start(const QStringList &arguments) const;
    Ended run(const QStringList &arguments) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestWriteDocuments::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QFile::copy(QStringLiteral(VL_PROGRAM), path(QStringLiteral("VlManager"))));
    QVERIFY(QDir(m_folder->path()).mkdir(documents));
}

void TestWriteDocuments::store(const QList<ContactInfo> &devices) const
{
    DBOperator dbOperator(m_folder->path() + QLatin1Char('/'));
    DeviceList list;
    list.assign(devices);
    QVERIFY(dbOperator.database()->openDatabase());
    QVERIFY(dbOperator.database()->deleteAll());
    QVERIFY(dbOperator.save(list.snapshot()));
}

/// From the folder that holds the program's, and with nothing that leads to a screen.
std::unique_ptr<QProcess> TestWriteDocuments::start(const QStringList &arguments) const
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(name));
    process->setProcessEnvironment(environment);
    process->setWorkingDirectory(QFileInfo(m_folder->path()).path());
    process->start(path(QStringLiteral("VlManager")), arguments);
    return process;
}

Ended TestWriteDocuments::run(const QStringList &arguments) const
{
    const auto process = start(arguments);
    if (!process->waitForFinished() || process->exitStatus() != QProcess::NormalExit)
        return {-1, {}, {}};
    return {process->exitCode(), QString::fromUtf8(process->readAllStandardOutput()),
            QString::fromUtf8(process->readAllStandardError())};
}

void TestWriteDocuments::writesWhatTelephonesAskFor()
{
    const ContactInfo desk = device(1, QStringLiteral("KTP16XX"));
    const ContactInfo cordless = device(2, QStringLiteral("dk715"));
    ContactInfo again = desk;
    again.mac = QStringLiteral("0200-a700-0001");
    again.password = QStringLiteral("other");
    store({desk, cordless, again, stampedDevice(QStringLiteral("b"))});

    // Somebody else's program has the list, and is in the middle of a save.
    DBOperator dbOperator(m_folder->path() + QLatin1Char('/'));
    DataMgr other(dbOperator, m_folder->path() + QLatin1Char('/'));
    QVERIFY(other.openDatabase());
    const RawDatabase raw(path(database));
    QVERIFY(raw.exec(QStringLiteral("begin immediate")));
    QVERIFY(raw.exec(QStringLiteral("delete from contact1")));
    const QByteArray stored = fileContent(path(database));
    const QStringList files = QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden);

    // A relative folder is taken from where the program was called.
    const QString folder = QDir(m_folder->path()).dirName() + QLatin1Char('/') + documents;
    const QStringList command = {QStringLiteral("--write-documents"), folder};
    const Ended first = run(command);
    QCOMPARE(first.status, 0);
    QCOMPARE(first.output,
             QStringLiteral("Documents written: 2, left as they were: 0, removed: 0.\n"));
    QCOMPARE(first.error, QStringLiteral("Devices without a document of their own: 2\n"
                                         "  3: an earlier device has the MAC \"0200-a700-0001\"\n"
                                         "  4: \"b.mac\" is no MAC\n"));
    QCOMPARE(document(1), MacCfgExport::document(desk));
    QCOMPARE(document(2), DkCfgExport::document(cordless));
    QCOMPARE(QDir(path(documents)).entryList(QDir::Files | QDir::Hidden).size(), 2);
    QCOMPARE(fileContent(path(database)), stored);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden), files);

    // What is there is left alone, but for who may read it.
    const QByteArray name = QFile::encodeName(documentPath(documentName(1)));
    struct stat before = {};
    struct stat after = {};
    QCOMPARE(::stat(name.constData(), &before), 0);
    QCOMPARE(before.st_mode & 0777U, 0600U);
    QCOMPARE(::chmod(QFile::encodeName(path(documents)).constData(), 02750), 0);
    QCOMPARE(run(command).output,
             QStringLiteral("Documents written: 0, left as they were: 2, removed: 0.\n"));
    QCOMPARE(::stat(name.constData(), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(after.st_mode & 0777U, 0640U);
}

void TestWriteDocuments::removesNothingButDocuments()
{
    store({device(1)});
    const QStringList kept = {
        QStringLiteral("cfg0200a7000009.xml.bak"), QStringLiteral("xcfg0200a7000009.xml"),
        QStringLiteral("cfg0200a700000.xml"),      QStringLiteral("cfg0200a70000099.xml"),
        QStringLiteral("cfg0200a700000g.xml"),     QStringLiteral("index.html")};
    const QStringList made = kept + QStringList(documentName(9));
    for (const QString &name : made) {
        QFile file(documentPath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(QDir(path(documents)).mkdir(documentName(8)));
    QVERIFY(QFile::link(path(database), documentPath(documentName(7))));

    const QString folder = path(documents);
    run({QStringLiteral("--write-documents"), folder});
    QVERIFY(QFile::exists(documentPath(documentName(9))));
    QCOMPARE(run({QStringLiteral("--remove-others"), QStringLiteral("--write-documents"), folder})
                 .output,
             QStringLiteral("Documents written: 0, left as they were: 1, removed: 1.\n"));
    QStringList there = kept + QStringList({documentName(1), documentName(7), documentName(8)});
    there.sort();
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name), there);
}

void TestWriteDocuments::endsWithTheReason_data()
{
    QTest::addColumn<QByteArray>("content"); // of the database
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    const QStringList command = {QStringLiteral("--remove-others"),
                                 QStringLiteral("--write-documents")};
    const QStringList whole = command + QStringList(documents);
    QTest::newRow("no database") << QByteArray() << whole << QStringLiteral("does not exist.");
    QTest::newRow("damaged") << QByteArray(5000, 'x') << whole
                             << QStringLiteral("the file is not a database.");
    QTest::newRow("without devices' table")
        << QByteArray("SQLite format 3").append('\0') << whole << QStringLiteral("phonebook.db");
    QTest::newRow("no such folder")
        << QByteArray("x") << command + QStringList(QStringLiteral("no"))
        << QStringLiteral("no does not exist.");
    QTest::newRow("folder forgotten") << QByteArray() << command << QStringLiteral("Missing value");
    QTest::newRow("misspelt") << QByteArray() << QStringList(QStringLiteral("--write-document"))
                              << QStringLiteral("Unknown option 'write-document'.");
}

void TestWriteDocuments::endsWithTheReason()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    if (!content.isEmpty()) {
        QFile file(path(database));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    const QString left = documentPath(documentName(1));
    QVERIFY(QFile(left).open(QIODevice::WriteOnly));
    if (arguments.last() == documents)
        arguments.last() = path(documents);
    const Ended ended = run(arguments);
    QCOMPARE(ended.status, 1);
    QCOMPARE(ended.output, QString());
    QVERIFY2(ended.error.contains(reason), qPrintable(ended.error));
    QCOMPARE(fileContent(path(database)), content);
    QCOMPARE(QFile::exists(path(database)), !content.isEmpty());
    QVERIFY(QFile::exists(left));
}

void TestWriteDocuments::killedLeavesWholeDocuments()
{
    constexpr int count = 2000;
    constexpr int longest = 40; // ms, from the first document on
    QList<ContactInfo> lists[2];
    for (int i = 0; i < 2 * count; ++i) {
        lists[i % 2].append(device(i / 2));
        lists[i % 2].last().password = QString(5000 * (1 + i % 2), QLatin1Char('p'));
    }
    int interrupted = 0;
    for (int round = 0; round < killRounds; ++round) {
        store(lists[round % 2]);
        const auto process = start({QStringLiteral("--write-documents"), path(documents)});
        QVERIFY(process->waitForStarted());
        const QByteArray first = MacCfgExport::document(lists[round % 2].first());
        while (process->state() != QProcess::NotRunning && document(0) != first)
            process->waitForFinished(1);
        process->waitForFinished(QRandomGenerator::global()->bounded(longest));
        process->kill();
        QVERIFY(process->state() == QProcess::NotRunning || process->waitForFinished());
        int found[2] = {0, 0};
        for (int i = 0; i < count; ++i) {
            if (!QFile::exists(documentPath(documentName(i))))
                continue;
            const QByteArray content = document(i);
            const int which = content == MacCfgExport::document(lists[0].at(i)) ? 0 : 1;
            ++found[which];
            QVERIFY2(which == 0 || content == MacCfgExport::document(lists[1].at(i)),
                     qPrintable(documentName(i)));
        }
        interrupted += found[round % 2] > 0 && found[round % 2] < count ? 1 : 0;
    }
    qInfo("%d of %d kills met a run under way", interrupted, killRounds);
    QVERIFY(interrupted > 0);
}

void TestWriteDocuments::theNginxOfTheReadmeServesThem()
{
    const QString program = QStandardPaths::findExecutable(
        QStringLiteral("nginx"), {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin")});
    if (program.isEmpty())
        QSKIP("nginx is not installed: see scripts/packages.txt");
    const QByteArray folder = QFile::encodeName(path(documents));
    // As root nginx reads as another user, which the folder's group lets in.
    QString user;
    if (::geteuid() == 0) {
        user = QStringLiteral("user www-data;");
        const struct group *const group = ::getgrnam("www-data");
        QVERIFY(group && ::chown(folder.constData(), 0, group->gr_gid) == 0);
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0711), 0);
    }
    QCOMPARE(::chmod(folder.constData(), 02750), 0);
    store({device(1)});
    QCOMPARE(run({QStringLiteral("--write-documents"), path(documents)}).status, 0);
    QVERIFY(QFile::copy(path(database), documentPath(database)));

    QTcpServer free;
    QVERIFY(free.listen(QHostAddress::LocalHost));
    const quint16 port = free.serverPort();
    free.close();
    QString shown = shownInReadme(QStringLiteral("nginx"));
    QVERIFY(shown.contains(QLatin1String("listen 80;")) &&
            shown.contains(QLatin1String("/srv/phones;")));
    shown.replace(QLatin1String("listen 80;"), QStringLiteral("listen 127.0.0.1:%1;").arg(port));
    shown.replace(QLatin1String("/srv/phones;"), path(documents) + QLatin1Char(';'));
    QFile settings(path(QStringLiteral("nginx.conf")));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write(QStringLiteral("%1 daemon off; pid %2/pid; error_log %2/log; events {}\n"
                                  "http { access_log off; client_body_temp_path %2/t;\n"
                                  "proxy_temp_path %2/t; fastcgi_temp_path %2/t;\n"
                                  "uwsgi_temp_path %2/t; scgi_temp_path %2/t;\n%3}\n")
                       .arg(user, m_folder->path(), shown)
                       .toUtf8());
    settings.close();

    QProcess nginx;
    nginx.setProcessChannelMode(QProcess::ForwardedChannels);
    nginx.start(program, {QStringLiteral("-c"), settings.fileName(), QStringLiteral("-e"),
                          path(QStringLiteral("log"))});
    QVERIFY(nginx.waitForStarted());
    const QByteArray name = documentName(1).toLatin1();
    QTRY_VERIFY(!answer(port, "GET /").isEmpty());
    for (const char *const place : {"/", "//"}) {
        const QByteArray got = answer(port, "GET " + QByteArray(place) + name);
        QVERIFY2(got.startsWith("HTTP/1.1 200"), got);
        QVERIFY2(got.contains("Content-Type: application/xml\r\n"), got);
        QVERIFY2(got.endsWith("\r\n\r\n" + document(1)), got);
    }
    for (const QByteArray &wrong :
         {QByteArray("GET /"), QByteArray("GET /phonebook.db"), "GET /" + name + ".1x2y3z",
          QByteArray("GET /../VlManager"), "DELETE /" + name}) {
        const QByteArray got = answer(port, wrong);
        QVERIFY2(got.startsWith("HTTP/1.1 4"), got.left(200) + wrong);
    }
    nginx.terminate();
    QVERIFY(nginx.waitForFinished());
}

QTEST_GUILESS_MAIN(TestWriteDocuments)
#include "tst_writedocuments.moc"
