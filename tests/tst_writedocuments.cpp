// The program itself, started with --write-documents in a folder of its own, without a screen.
#include "RawDatabase.h"
#include "TestDevices.h"
#include "export/DkCfgExport.h"
#include "export/MacCfgExport.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"

#include <QDir>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString database = u"phonebook.db"_s;
const QString documents = u"documents"_s;

struct Ended
{
    int status;
    QString output;
    QString error;
};

ContactInfo device(int number, const QString &product = QString())
{
    ContactInfo device = stampedDevice(u"a"_s);
    device.mac = u"02:00:A7:00:%1:%2"_s.arg(number / 256, 2, 16, QLatin1Char('0'))
                     .arg(number % 256, 2, 16, QLatin1Char('0'));
    device.product = product;
    return device;
}

QString documentName(int number)
{
    return u"cfg0200a700%1.xml"_s.arg(number, 4, 16, QLatin1Char('0'));
}

unsigned modeOf(const QString &path)
{
    struct stat found = {};
    return ::stat(qPrintable(path), &found) == 0 ? found.st_mode & 0777U : 0;
}

/// The whole answer; empty while nobody listens.
QByteArray answer(quint16 port, const QByteArray &request)
{
    QTcpSocket phone;
    phone.connectToHost(u"127.0.0.1"_s, port);
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
    void theNginxOfTheReadmeServesThem();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString documentPath(const QString &name) const { return path(documents) + u"/"_s + name; }
    QByteArray document(int number) const
    {
        return fileContent(documentPath(documentName(number)));
    }
    QStringList written() const
    {
        return QDir(path(documents)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    }
    void store(const QList<ContactInfo> &devices) const;
    Ended run(const QStringList &arguments) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestWriteDocuments::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QFile::copy(QStringLiteral(VL_PROGRAM), path(u"VlManager"_s)));
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
Ended TestWriteDocuments::run(const QStringList &arguments) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(name));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QFileInfo(m_folder->path()).path());
    process.start(path(u"VlManager"_s), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {-1, {}, {}};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

void TestWriteDocuments::writesWhatTelephonesAskFor()
{
    const ContactInfo desk = device(1, u"KTP16XX"_s);
    const ContactInfo cordless = device(2, u"dk715"_s);
    ContactInfo again = desk;
    again.mac = u"0200-a700-0001"_s;
    again.password = u"other"_s;
    store({desk, cordless, again, stampedDevice(u"b"_s)});

    // Somebody else's program has the list, and is in the middle of a save.
    DBOperator dbOperator(m_folder->path() + QLatin1Char('/'));
    DataMgr other(dbOperator, m_folder->path() + QLatin1Char('/'));
    QVERIFY(other.openDatabase());
    const RawDatabase raw(path(database));
    QVERIFY(raw.exec(u"begin immediate"_s));
    QVERIFY(raw.exec(u"delete from contact1"_s));
    const QByteArray stored = fileContent(path(database));
    const QStringList files = QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden);

    // A relative folder is taken from where the program was called.
    const QString folder = QDir(m_folder->path()).dirName() + QLatin1Char('/') + documents;
    const QStringList command = {u"--write-documents"_s, folder};
    const Ended first = run(command);
    QCOMPARE(first.status, 0);
    QCOMPARE(first.output, u"Documents written: 2, left as they were: 0, removed: 0.\n"_s);
    QCOMPARE(first.error, QStringLiteral("Devices without a document of their own: 2\n"
                                         "  3: an earlier device has the MAC \"0200-a700-0001\"\n"
                                         "  4: \"b.mac\" is no MAC\n"));
    QCOMPARE(document(1), MacCfgExport::document(desk));
    QCOMPARE(document(2), DkCfgExport::document(cordless));
    QCOMPARE(QDir(path(documents)).entryList(QDir::Files | QDir::Hidden).size(), 2);
    QCOMPARE(fileContent(path(database)), stored);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden), files);

    // What is there is left alone, but for who may read it.
    const QString name = documentPath(documentName(1));
    QCOMPARE(modeOf(name), 0600U);
    QCOMPARE(::chmod(qPrintable(path(documents)), 02750), 0);
    QCOMPARE(run(command).output, u"Documents written: 0, left as they were: 2, removed: 0.\n"_s);
    QCOMPARE(modeOf(name), 0640U);
    // One that the group's server cannot read is written anew.
    if (::geteuid() == 0) {
        QCOMPARE(::chown(qPrintable(name), 0, 1), 0);
        QCOMPARE(run(command).output,
                 u"Documents written: 1, left as they were: 1, removed: 0.\n"_s);
    }
}

void TestWriteDocuments::removesNothingButDocuments()
{
    store({device(1)});
    QStringList there = {documentName(1),           documentName(7),
                         documentName(8),           u"cfg0200a7000009.xml.bak"_s,
                         u"xcfg0200a7000009.xml"_s, u"cfg0200a700000.xml"_s,
                         u"cfg0200a70000099.xml"_s, u"cfg0200a700000g.xml"_s};
    QVERIFY(QFile::link(path(database), documentPath(there.at(1))));
    QVERIFY(QDir(path(documents)).mkdir(there.at(2)));
    for (const QString &name : there.mid(3) + QStringList(documentName(9)))
        writeFile(documentPath(name));
    const QStringList command = {u"--write-documents"_s, path(documents)};
    run(command);
    QVERIFY(QFile::exists(documentPath(documentName(9))));
    QCOMPARE(run(command + QStringList(u"--remove-others"_s)).output,
             u"Documents written: 0, left as they were: 1, removed: 1.\n"_s);
    there.sort();
    QCOMPARE(written(), there);
}

void TestWriteDocuments::endsWithTheReason_data()
{
    QTest::addColumn<QByteArray>("content"); // of the database
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *reason, const QByteArray &content, const char *arguments) {
        QTest::newRow(reason) << content << QString::fromLatin1(arguments)
                              << QString::fromLatin1(reason);
    };
    const auto whole = "--remove-others --write-documents documents";
    row("phonebook.db does not exist.", {}, whole);
    row("the file is not a database.", QByteArray(5000, 'x'), whole);
    row("phonebook.db", QByteArray("SQLite format 3").append('\0'), whole); // and no more
    row("no does not exist.", "x", "--write-documents no");
    row("Missing value", {}, "--write-documents");
    row("Unknown option 'write-document'.", {}, "--write-document");
}

void TestWriteDocuments::endsWithTheReason()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, arguments);
    QFETCH(QString, reason);
    if (!content.isEmpty())
        writeFile(path(database), content);
    const QString left = writeFile(documentPath(documentName(1)));
    const Ended ended =
        run(arguments.replace(u" documents"_s, u" "_s + path(documents)).split(QLatin1Char(' ')));
    QCOMPARE(ended.status, 1);
    QCOMPARE(ended.output, QString());
    QVERIFY2(ended.error.contains(reason), qPrintable(ended.error));
    QCOMPARE(fileContent(path(database)), content);
    QCOMPARE(QFile::exists(path(database)), !content.isEmpty());
    QVERIFY(QFile::exists(left));
}

void TestWriteDocuments::theNginxOfTheReadmeServesThem()
{
    const QString program =
        QStandardPaths::findExecutable(u"nginx"_s, {u"/usr/sbin"_s, u"/usr/bin"_s});
    if (program.isEmpty())
        QSKIP("nginx is not installed: see scripts/packages.txt");
    const QByteArray folder = QFile::encodeName(path(documents));
    // As root nginx reads as another user, which the folder's group lets in.
    QString user;
    if (::geteuid() == 0) {
        user = u"user www-data;"_s;
        const struct group *const group = ::getgrnam("www-data");
        QVERIFY(group && ::chown(folder.constData(), 0, group->gr_gid) == 0);
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0711), 0);
    }
    QCOMPARE(::chmod(folder.constData(), 02750), 0);
    store({device(1)});
    QCOMPARE(run({u"--write-documents"_s, path(documents)}).status, 0);
    QVERIFY(QFile::copy(path(database), documentPath(database)));

    QTcpServer free;
    QVERIFY(free.listen(QHostAddress::LocalHost));
    const quint16 port = free.serverPort();
    free.close();
    const QByteArray readme = fileContent(u"" VL_SOURCE_DIR "/README.md"_s);
    QString shown = QString::fromUtf8(readme).section(u"```nginx\n"_s, 1).section(u"```"_s, 0, 0);
    for (const auto &[there, here] :
         {std::pair(u"listen 80;"_s, u"listen 127.0.0.1:%1;"_s.arg(port)),
          std::pair(u"/srv/phones;"_s, path(documents) + u";"_s)}) {
        QVERIFY(shown.contains(there));
        shown.replace(there, here);
    }
    const QString settings =
        writeFile(path(u"nginx.conf"_s), u"%1 daemon off; pid %2/pid; error_log %2/log; events {}\n"
                                         "http { access_log off; client_body_temp_path %2/t;\n"
                                         "proxy_temp_path %2/t; fastcgi_temp_path %2/t;\n"
                                         "uwsgi_temp_path %2/t; scgi_temp_path %2/t;\n%3}\n"_s
                                             .arg(user, m_folder->path(), shown)
                                             .toUtf8());

    QProcess nginx;
    nginx.setProcessChannelMode(QProcess::ForwardedChannels);
    nginx.start(program, {u"-c"_s, settings, u"-e"_s, path(u"log"_s)});
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
