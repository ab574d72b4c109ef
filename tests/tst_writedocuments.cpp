// The program itself, started with --write-documents in a folder of its own, without a screen.
#include "DataSide.h"
#include "HttpPhone.h"
#include "export/ProvisioningDocument.h"

#include <QProcess>
#include <QTcpServer>
#include <QtTest>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString documents = "documents"_s;

struct Ended
{
    int status;
    QString output;
    QString error;
};

ContactInfo device(int number, const QString &product = QString())
{
    ContactInfo device = stampedDevice("a"_s);
    device.mac = "02:00:A7:00:%1:%2"_s.arg(number / 256, 2, 16, QLatin1Char('0'))
                     .arg(number % 256, 2, 16, QLatin1Char('0'));
    device.product = product;
    return device;
}

QString documentName(int number)
{
    return "cfg0200a700%1.xml"_s.arg(number, 4, 16, QLatin1Char('0'));
}

unsigned modeOf(const QString &path)
{
    struct stat found = {};
    return ::stat(qPrintable(path), &found) == 0 ? found.st_mode & 0777U : 0;
}

} // namespace

class TestWriteDocuments : public QObject, protected DataSide
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        QVERIFY(QFile::copy(QStringLiteral(VL_PROGRAM), at("VlManager"_s)));
        QVERIFY(QDir(folder()).mkdir(documents));
    }

    void writesWhatPhonesAskFor()
    {
        const ContactInfo desk = device(1, "KTP16XX"_s);
        const ContactInfo cordless = device(2, "dk715"_s);
        ContactInfo again = desk;
        again.mac = "0200-a700-0001"_s;
        again.password = "other"_s;
        store({desk, cordless, again, stampedDevice("b"_s)});

        // Somebody else's program has the list, and is in the middle of a save.
        const Run other(folder(), "");
        const RawDatabase raw(databasePath());
        QVERIFY(raw.exec("begin immediate"_s));
        QVERIFY(raw.exec("delete from contact1"_s));
        const QByteArray stored = fileContent(databasePath());
        const QStringList files = QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden);

        // A relative folder is taken from where the program was called.
        const QString relative = QDir(folder()).dirName() + QLatin1Char('/') + documents;
        const QStringList command = {"--write-documents"_s, relative};
        const Ended first = run(command);
        QCOMPARE(first.status, 0);
        QCOMPARE(first.output, "Documents written: 2, left as they were: 0, removed: 0.\n"_s);
        QCOMPARE(first.error,
                 QStringLiteral("Devices without a document of their own: 2\n"
                                "  3: an earlier device has the MAC \"0200-a700-0001\"\n"
                                "  4: \"b.mac\" is no MAC\n"));
        QCOMPARE(document(1), provisioningDocument(desk, DeskPhoneXml));
        QCOMPARE(document(2), provisioningDocument(cordless, CordlessXml));
        QCOMPARE(QDir(at(documents)).entryList(QDir::Files | QDir::Hidden).size(), 2);
        QCOMPARE(fileContent(databasePath()), stored);
        QCOMPARE(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden), files);

        // A document that is there is left alone, but for its access rights.
        const QString name = documentPath(documentName(1));
        QCOMPARE(modeOf(name), 0600U);
        QCOMPARE(::chmod(qPrintable(at(documents)), 02750), 0);
        QCOMPARE(run(command).output,
                 "Documents written: 0, left as they were: 2, removed: 0.\n"_s);
        QCOMPARE(modeOf(name), 0640U);
        // A document that the group's server cannot read is written anew.
        if (::geteuid() == 0) {
            QCOMPARE(::chown(qPrintable(name), 0, 1), 0);
            QCOMPARE(run(command).output,
                     "Documents written: 1, left as they were: 1, removed: 0.\n"_s);
        }
    }

    void removesNothingButDocuments()
    {
        store({device(1)});
        QStringList there = {documentName(1),          documentName(7),
                             documentName(8),          "cfg0200a7000009.xml.bak"_s,
                             "xcfg0200a7000009.xml"_s, "cfg0200a700000.xml"_s,
                             "cfg0200a70000099.xml"_s, "cfg0200a700000g.xml"_s};
        QVERIFY(QFile::link(databasePath(), documentPath(there.at(1))));
        QVERIFY(QDir(at(documents)).mkdir(there.at(2)));
        const QStringList files = there.mid(3) + QStringList(documentName(9));
        for (const QString &name : files)
            writeFile(documentPath(name));
        const QStringList command = {"--write-documents"_s, at(documents)};
        run(command);
        QVERIFY(QFile::exists(documentPath(documentName(9))));
        QCOMPARE(run(command + QStringList("--remove-others"_s)).output,
                 "Documents written: 0, left as they were: 1, removed: 1.\n"_s);
        there.sort();
        QCOMPARE(written(), there);
    }

    void endsWithTheReason_data()
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
        row("phonebook.db", QByteArray("SQLite format 3").append('\0'),
            whole); // nothing but the first bytes
        row("no does not exist.", "x", "--write-documents no");
        row("Missing value", {}, "--write-documents");
        row("Unknown option 'write-document'.", {}, "--write-document");
    }

    void endsWithTheReason()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, arguments);
        QFETCH(QString, reason);
        if (!content.isEmpty())
            writeFile(databasePath(), content);
        const QString left = writeFile(documentPath(documentName(1)));
        const Ended ended =
            run(arguments.replace(" documents"_s, " "_s + at(documents)).split(QLatin1Char(' ')));
        QCOMPARE(ended.status, 1);
        QCOMPARE(ended.output, QString());
        QVERIFY2(ended.error.contains(reason), qPrintable(ended.error));
        QCOMPARE(fileContent(databasePath()), content);
        QCOMPARE(QFile::exists(databasePath()), !content.isEmpty());
        QVERIFY(QFile::exists(left));
    }

    void theNginxOfTheReadmeServesThem()
    {
        const QString program =
            QStandardPaths::findExecutable("nginx"_s, {"/usr/sbin"_s, "/usr/bin"_s});
        if (program.isEmpty())
            QSKIP("nginx is not installed: see scripts/packages.txt");
        const QByteArray encoded = QFile::encodeName(at(documents));
        // Run as root, nginx reads as another user, whom the folder's group lets in.
        QString user;
        if (::geteuid() == 0) {
            user = "user www-data;"_s;
            const struct group *const group = ::getgrnam("www-data");
            QVERIFY(group && ::chown(encoded.constData(), 0, group->gr_gid) == 0);
            QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 0711), 0);
        }
        QCOMPARE(::chmod(encoded.constData(), 02750), 0);
        store({device(1)});
        QCOMPARE(run({"--write-documents"_s, at(documents)}).status, 0);
        QVERIFY(QFile::copy(databasePath(), documentPath("phonebook.db"_s)));

        QTcpServer free;
        QVERIFY(free.listen(QHostAddress::LocalHost));
        const quint16 port = free.serverPort();
        free.close();
        const QByteArray readme = fileContent("" VL_SOURCE_DIR "/README.md"_s);
        QString shown = QString::fromUtf8(readme).section("```nginx\n"_s, 1).section("```"_s, 0, 0);
        for (const auto &[there, here] :
             {std::pair("listen 80;"_s, "listen 127.0.0.1:%1;"_s.arg(port)),
              std::pair("/srv/phones;"_s, at(documents) + ";"_s)}) {
            QVERIFY(shown.contains(there));
            shown.replace(there, here);
        }
        const QString settings =
            writeFile(at("nginx.conf"_s), "%1 daemon off; pid %2/pid; error_log %2/log; events {}\n"
                                          "http { access_log off; client_body_temp_path %2/t;\n"
                                          "proxy_temp_path %2/t; fastcgi_temp_path %2/t;\n"
                                          "uwsgi_temp_path %2/t; scgi_temp_path %2/t;\n%3}\n"_s
                                              .arg(user, folder(), shown)
                                              .toUtf8());

        QProcess nginx;
        nginx.setProcessChannelMode(QProcess::ForwardedChannels);
        nginx.start(program, {"-c"_s, settings, "-e"_s, at("log"_s)});
        QVERIFY(nginx.waitForStarted());
        const QByteArray name = documentName(1).toLatin1();
        const auto answer = [port](const QByteArray &line) {
            return ask(port, line + " HTTP/1.0\r\n\r\n");
        };
        QTRY_VERIFY(Phone(port).isConnected());
        for (const char *const place : {"/", "//"}) {
            const QByteArray got = answer("GET " + QByteArray(place) + name);
            QVERIFY2(got.startsWith("HTTP/1.1 200"), got);
            QVERIFY2(got.contains("Content-Type: application/xml\r\n"), got);
            QVERIFY2(got.endsWith("\r\n\r\n" + document(1)), got);
        }
        for (const QByteArray &wrong :
             {QByteArray("GET /"), QByteArray("GET /phonebook.db"), "GET /" + name + ".1x2y3z",
              QByteArray("GET /../VlManager"), "DELETE /" + name}) {
            const QByteArray got = answer(wrong);
            QVERIFY2(got.startsWith("HTTP/1.1 4"), got.left(200) + wrong);
        }
        nginx.terminate();
        QVERIFY(nginx.waitForFinished());
    }

private:
    QString documentPath(const QString &name) const { return at(documents) + "/"_s + name; }
    QByteArray document(int number) const
    {
        return fileContent(documentPath(documentName(number)));
    }

    QStringList written() const
    {
        return QDir(at(documents)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    }

    /// Runs the program from the folder above its own, and without a screen.
    Ended run(const QStringList &arguments) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QLatin1String(name));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(QFileInfo(folder()).path());
        process.start(at("VlManager"_s), arguments);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return {-1, {}, {}};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
};

QTEST_GUILESS_MAIN(TestWriteDocuments)
#include "tst_writedocuments.moc"
