#include "RawDatabase.h"
#include "TestDevices.h"
#include "storage/ScopedTransaction.h"
#include "storage/SqliteDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

const QString createStatement = QStringLiteral(
    "create table contact1 (id INT PRIMARY KEY, mac VERCHAR, product VERCHAR, sip_server VERCHAR, "
    "sip_user_id VERCHAR, first_account VERCHAR, username VERCHAR, password VERCHAR, ip VERCHAR, "
    "city VERCHAR, company VERCHAR, department VERCHAR, auth_id VERCHAR, proxy_server VERCHAR, "
    "speech_coding1 VERCHAR, speech_coding2 VERCHAR,dial_plan VERCHAR, language VERCHAR, "
    "random_port VERCHAR, keep_alive VERCHAR, subnet VERCHAR, gateway_ip VERCHAR, dns_server1 "
    "VERCHAR, dns_server2 VERCHAR, phonebook_path VERCHAR, flag INT)");

const QString insertMac = QStringLiteral("insert into contact1 (id, mac, flag) values (%1)");

ContactInfo numbered(int id, const QString &mac)
{
    ContactInfo device = deviceWithMac(mac);
    device.id = id;
    return device;
}

/// The table as "id mac flag" texts.
QStringList summary(const RawDatabase &raw)
{
    QStringList lines;
    const QList<QSqlRecord> records = raw.rows();
    for (const QSqlRecord &record : records) {
        lines.append(QStringLiteral("%1 %2 %3")
                         .arg(record.value(QStringLiteral("id")).toString(),
                              record.value(QStringLiteral("mac")).toString(),
                              record.value(QStringLiteral("flag")).toString()));
    }
    return lines;
}

} // namespace

class TestSqliteDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstStartCreatesAnEmptyStore();
    void everyFieldIsInItsColumn();
    void mergeReplacesOlderRows();
    void clashingIdFails();
    void updatesSingleFields();
    void rowsWithoutNumbersOfTheirOwnCollapse();
    void transactionsNest();
    void cutShortCreationIsMadeGood_data();
    void cutShortCreationIsMadeGood();
    void foreignFilesAreLeftAlone_data();
    void foreignFilesAreLeftAlone();

private:
    QString path() const { return m_folder->filePath(QStringLiteral("phonebook.db")); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SqliteDatabase> m_store;
};

void TestSqliteDatabase::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<SqliteDatabase>(m_folder->path() + QLatin1Char('/'));
}

void TestSqliteDatabase::cleanup()
{
    m_store.reset();
    m_folder.reset();
}

void TestSqliteDatabase::firstStartCreatesAnEmptyStore()
{
    QVERIFY(m_store->openDatabase());
    QVERIFY(m_store->queryContacts().isEmpty());
    QCOMPARE(m_store->countContacts(), 0);
    QCOMPARE(m_store->lastErrorText(), QString());
    QCOMPARE(filePermissions(path()), QFile::ReadOwner | QFile::WriteOwner);

    // SQLite keeps a statement as it was given, but for the case of its first words.
    const RawDatabase raw(path());
    QString kept =
        raw.value(QStringLiteral("select sql from sqlite_master where type = 'table'")).toString();
    QCOMPARE(kept.replace(QLatin1String("CREATE TABLE"), QLatin1String("create table")),
             createStatement);

    // An older program may have left the file for all to read.
    QVERIFY(m_store->insertContacts({numbered(1, QStringLiteral("a"))}));
    QVERIFY(QFile::setPermissions(path(), filePermissions(path()) | QFile::ReadOther));
    QVERIFY(m_store->openDatabase());
    QCOMPARE(m_store->countContacts(), 1);
    QCOMPARE(filePermissions(path()), QFile::ReadOwner | QFile::WriteOwner);
}

void TestSqliteDatabase::everyFieldIsInItsColumn()
{
    ContactInfo stamped = stampedDevice(QStringLiteral("x"));
    stamped.id = 30; // the order is the table's, not the number's
    ContactInfo hard = numbered(2, QStringLiteral("it's \"quoted\"; -- \\"));
    hard.company = QString::fromUtf8("北京 📞\r\n\t");
    hard.dial_plan = QString(QChar(0)) + QStringLiteral("after a NUL");
    hard.username = QStringLiteral("0012");
    const ContactInfo empty = numbered(3, QString());
    const QList<ContactInfo> devices = {stamped, hard, empty};

    QVERIFY(m_store->openDatabase());
    QVERIFY(m_store->insertContacts(devices));
    QVERIFY(m_store->queryContacts() == devices);
    const RawDatabase raw(path());
    QCOMPARE(raw.value(QStringLiteral("select count(*) from contact1 where flag = 1")).toInt(), 3);
    QVERIFY(m_store->mergeNewRecords());
    QVERIFY(raw.exec(QStringLiteral("update contact1 set id = 1 where id = 30")));
    QCOMPARE(raw.difference(devices), QString());
}

void TestSqliteDatabase::mergeReplacesOlderRows()
{
    QVERIFY(m_store->openDatabase());
    const RawDatabase raw(path());
    // A known one twice, a settled pair, one that is only new, and one in another case.
    for (const char *row : {"1,'a',0", "2,'a',0", "3,'b',0", "4,'b',0", "5,'C',0", "6,'a',1",
                            "7,'a',1", "8,'d',1", "9,'c',1"})
        QVERIFY(raw.exec(insertMac.arg(QLatin1String(row))));
    const QStringList left =
        QStringLiteral("3 b 0,4 b 0,5 C 0,6 a 0,7 a 0,8 d 0,9 c 0").split(QLatin1Char(','));
    QVERIFY(m_store->mergeNewRecords());
    QCOMPARE(summary(raw), left);
    QVERIFY(m_store->mergeNewRecords()); // nothing is new
    QCOMPARE(summary(raw), left);
}

void TestSqliteDatabase::clashingIdFails()
{
    QVERIFY(m_store->openDatabase());
    QVERIFY(m_store->insertContacts({numbered(1, QStringLiteral("a"))}));
    QVERIFY(m_store->mergeNewRecords());
    QVERIFY(!m_store->insertContacts({numbered(1, QStringLiteral("b"))}));
    QVERIFY(!m_store->lastErrorText().isEmpty());
    const RawDatabase raw(path());
    QCOMPARE(summary(raw), QStringList{QStringLiteral("1 a 0")});

    // The failure must not leave a transaction open.
    QVERIFY(m_store->insertContacts({numbered(2, QStringLiteral("b"))}));
    QCOMPARE(summary(raw), QStringList({QStringLiteral("1 a 0"), QStringLiteral("2 b 1")}));
}

void TestSqliteDatabase::updatesSingleFields()
{
    QVERIFY(m_store->openDatabase());
    const ContactInfo other = numbered(1, QStringLiteral("a"));
    ContactInfo updated = numbered(2, QStringLiteral("b"));
    QVERIFY(m_store->insertContacts({other, updated}));
    QStringList columns = QStringLiteral("mac,no_such_column,city,ip").split(QLatin1Char(','));
    QStringList values = QStringLiteral("'b',2,'O''Hare','1.2.3.4'").split(QLatin1Char(','));
    updated.city = QStringLiteral("O'Hare");
    updated.ip = QStringLiteral("1.2.3.4");
    // The last statement alone decides the result.
    QVERIFY(m_store->updateFields(QStringLiteral("contact1"), columns, values));
    QVERIFY(m_store->queryContacts() == (QList<ContactInfo>{other, updated}));
    columns.swapItemsAt(1, 3);
    QVERIFY(!m_store->updateFields(QStringLiteral("contact1"), columns, values));
}

/// Tables of earlier programs may have been made without the key.
void TestSqliteDatabase::rowsWithoutNumbersOfTheirOwnCollapse()
{
    const RawDatabase raw(path());
    QString withoutKey = createStatement;
    QVERIFY(raw.exec(withoutKey.remove(QLatin1String(" PRIMARY KEY"))));
    for (const char *row : {"1,'a',0", "1,'b',0", "2,'c',0", "0,'d',0", "3,'e',0", "-1,'f',0",
                            "4,'g',0", "4,'h',0", "5,'i',0", "null,'j',0"})
        QVERIFY(raw.exec(insertMac.arg(QLatin1String(row))));

    QVERIFY(m_store->openDatabase());
    QStringList found;
    const QList<ContactInfo> contacts = m_store->queryContacts();
    for (const ContactInfo &contact : contacts)
        found.append(QString::number(contact.id) + contact.mac);
    QCOMPARE(found, QStringList({QStringLiteral("1b"), QStringLiteral("2c"), QStringLiteral("3e"),
                                 QStringLiteral("4h"), QStringLiteral("5i")}));
}

void TestSqliteDatabase::transactionsNest()
{
    QVERIFY(m_store->openDatabase());
    const RawDatabase raw(path());
    const QStringList nothing;
    {
        ScopedTransaction outer(*m_store);
        QVERIFY(m_store->insertContacts({numbered(1, QStringLiteral("a"))}));
        // The batch's own transaction has joined this one: nobody else sees its row yet.
        QCOMPARE(summary(raw), nothing);
    }
    QCOMPARE(m_store->countContacts(), 0);
    {
        ScopedTransaction outer(*m_store);
        QVERIFY(m_store->insertContacts({numbered(1, QStringLiteral("a"))}));
        {
            const ScopedTransaction inner(*m_store);
            QVERIFY(m_store->insertContacts({numbered(2, QStringLiteral("b"))}));
        }
        QVERIFY(!outer.commit());
    }
    QCOMPARE(summary(raw), nothing);
    {
        ScopedTransaction outer(*m_store);
        QVERIFY(m_store->insertContacts({numbered(3, QStringLiteral("c"))}));
        QVERIFY(outer.commit());
    }
    QCOMPARE(summary(raw), QStringList{QStringLiteral("3 c 1")});
}

void TestSqliteDatabase::cutShortCreationIsMadeGood_data()
{
    QTest::addColumn<bool>("journal");
    QTest::newRow("file made, nothing in it") << false;
    QTest::newRow("pages written, not committed") << true;
}

/// What a program leaves that is killed while it creates the file. Nothing was stored in it yet.
void TestSqliteDatabase::cutShortCreationIsMadeGood()
{
    QFETCH(bool, journal);
    if (journal) {
        const QTemporaryDir elsewhere;
        const QString source = elsewhere.filePath(QStringLiteral("phonebook.db"));
        const RawDatabase writer(source);
        QVERIFY(writer.exec(QStringLiteral("pragma cache_size = 1")));
        QVERIFY(writer.exec(QStringLiteral("begin")));
        QVERIFY(writer.exec(createStatement));
        for (int id = 1; id < 100; ++id) {
            QVERIFY(writer.exec(QStringLiteral("insert into contact1 (id, mac) values (%1, '%2')")
                                    .arg(id)
                                    .arg(QString(2000, QLatin1Char('x')))));
        }
        // SQLite has begun to write pages, with the journal that takes them back.
        QVERIFY(QFileInfo(source).size() > 0);
        QVERIFY(QFile::copy(source, path()));
        QVERIFY(
            QFile::copy(source + QLatin1String("-journal"), path() + QLatin1String("-journal")));
        QVERIFY(QFileInfo(path() + QLatin1String("-journal")).size() > 0);
    } else {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(m_store->openDatabase());
    QCOMPARE(m_store->countContacts(), 0);
    QVERIFY(m_store->insertContacts({numbered(1, QStringLiteral("a"))}));
    QCOMPARE(filePermissions(path()), QFile::ReadOwner | QFile::WriteOwner);
}

void TestSqliteDatabase::foreignFilesAreLeftAlone_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("not a database") << QStringLiteral("garbage");
    QTest::newRow("a database without the table") << QStringLiteral("other");
    QTest::newRow("a directory") << QStringLiteral("directory");
}

void TestSqliteDatabase::foreignFilesAreLeftAlone()
{
    QFETCH(QString, kind);
    if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkpath(path()));
        QFile inside(path() + QLatin1String("/file"));
        QVERIFY(inside.open(QIODevice::WriteOnly));
    } else if (kind == QLatin1String("other")) {
        const RawDatabase raw(path());
        QVERIFY(raw.exec(QStringLiteral("create table notes (text)")));
    } else {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("not a database\n").repeated(500));
    }
    const QByteArray before = fileContent(path());
    const bool directory = QFileInfo(path()).isDir();
    const QFile::Permissions permissionsBefore = filePermissions(path());

    // A file is found wanting when it is first read.
    if (m_store->openDatabase())
        QCOMPARE(m_store->countContacts(), -1);
    QVERIFY(m_store->queryContacts().isEmpty());
    QVERIFY(!m_store->lastErrorText().isEmpty());
    QVERIFY(!m_store->insertContacts({numbered(1, QStringLiteral("a"))}));
    QVERIFY(!m_store->deleteAll());
    QVERIFY(!m_store->mergeNewRecords());
    QVERIFY(!m_store->lastErrorText().isEmpty());
    m_store->closeDatabase();
    QCOMPARE(fileContent(path()), before);
    if (directory)
        QCOMPARE(filePermissions(path()), permissionsBefore);
    const QStringList left =
        QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    QCOMPARE(left, QStringList{QStringLiteral("phonebook.db")});
}

QTEST_GUILESS_MAIN(TestSqliteDatabase)
#include "tst_sqlitedatabase.moc"
