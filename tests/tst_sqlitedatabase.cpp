#include "RawDatabase.h"
#include "TestDevices.h"
#include "storage/ScopedTransaction.h"
#include "storage/SqliteDatabase.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

const QString createStatement =
    "create table contact1 (id INT PRIMARY KEY, mac VERCHAR, product VERCHAR, sip_server VERCHAR, "
    "sip_user_id VERCHAR, first_account VERCHAR, username VERCHAR, password VERCHAR, ip VERCHAR, "
    "city VERCHAR, company VERCHAR, department VERCHAR, auth_id VERCHAR, proxy_server VERCHAR, "
    "speech_coding1 VERCHAR, speech_coding2 VERCHAR,dial_plan VERCHAR, language VERCHAR, "
    "random_port VERCHAR, keep_alive VERCHAR, subnet VERCHAR, gateway_ip VERCHAR, dns_server1 "
    "VERCHAR, dns_server2 VERCHAR, phonebook_path VERCHAR, flag INT)"_s;

const QString insertMac = "insert into contact1 (id, mac, flag) values (%1)"_s;

ContactInfo device(int id, const char *mac)
{
    ContactInfo device = deviceWithMac(QString::fromLatin1(mac));
    device.id = id;
    return device;
}

/// The table as "id mac flag" texts.
QString summary(const RawDatabase &raw)
{
    QStringList lines;
    const QList<QSqlRecord> records = raw.rows();
    for (const QSqlRecord &record : records)
        lines.append("%1 %2 %3"_s.arg(record.value("id"_s).toString(),
                                      record.value("mac"_s).toString(),
                                      record.value("flag"_s).toString()));
    return lines.join(QLatin1Char(','));
}

} // namespace

class TestSqliteDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_store.reset();
        m_folder = std::make_unique<QTemporaryDir>();
        m_store = std::make_unique<SqliteDatabase>(m_folder->path() + QLatin1Char('/'));
    }

    void firstStartCreatesAnEmptyStore()
    {
        writeFile(path()); // left by a program that was killed when it had just made it
        QVERIFY(m_store->openDatabase());
        QVERIFY(m_store->queryContacts().isEmpty());
        QCOMPARE(m_store->countContacts(), 0);
        QCOMPARE(m_store->lastErrorText(), QString());
        QCOMPARE(filePermissions(path()), QFile::ReadOwner | QFile::WriteOwner);

        // SQLite keeps a statement as it was given, but for the case of its first words.
        const RawDatabase raw(path());
        QString kept = raw.value("select sql from sqlite_master where type = 'table'"_s).toString();
        QCOMPARE(kept.replace(QLatin1String("CREATE TABLE"), QLatin1String("create table")),
                 createStatement);

        // An older program may have left the file for all to read.
        QVERIFY(m_store->insertContacts({device(1, "a")}));
        QVERIFY(QFile::setPermissions(path(), filePermissions(path()) | QFile::ReadOther));
        QVERIFY(m_store->openDatabase());
        QCOMPARE(m_store->countContacts(), 1);
        QCOMPARE(filePermissions(path()), QFile::ReadOwner | QFile::WriteOwner);
    }

    void everyFieldIsInItsColumn()
    {
        ContactInfo stamped = stampedDevice("x"_s);
        stamped.id = 30; // the order is the table's, not the number's
        ContactInfo hard = device(2, "it's \"quoted\"; -- \\");
        hard.company = QString::fromUtf8("北京 📞\r\n\t");
        hard.dial_plan = QString(QChar(0)) + "after a NUL"_s;
        hard.username = "0012"_s;
        const ContactInfo empty = device(3, "");
        const QList<ContactInfo> devices = {stamped, hard, empty};

        QVERIFY(m_store->openDatabase());
        QCOMPARE(filePermissions(path()), QFile::ReadOwner | QFile::WriteOwner);
        QVERIFY(m_store->insertContacts(devices));
        QVERIFY(m_store->queryContacts() == devices);
        const RawDatabase raw(path());
        QCOMPARE(raw.value("select count(*) from contact1 where flag = 1"_s).toInt(), 3);
        QVERIFY(m_store->mergeNewRecords());
        QVERIFY(raw.exec("update contact1 set id = 1 where id = 30"_s));
        QCOMPARE(raw.difference(devices), QString());

        // A long list is written in another way, to the same effect.
        DeviceList list;
        list.assign(devices + devices);
        QVERIFY(m_store->deleteAll());
        for (const int first : {0, 4})
            QVERIFY(m_store->insertSettled(list.snapshot(), first, 4));
        QCOMPARE(raw.difference(devices + devices), QString());
    }

    void mergeReplacesOlderRows()
    {
        QVERIFY(m_store->openDatabase());
        const RawDatabase raw(path());
        // A known MAC twice, a settled pair, one MAC that is only new, and one in another case.
        for (const char *row : {"1,'a',0", "2,'a',0", "3,'b',0", "4,'b',0", "5,'C',0", "6,'a',1",
                                "7,'a',1", "8,'d',1", "9,'c',1"})
            QVERIFY(raw.exec(insertMac.arg(QLatin1String(row))));
        for (int i = 0; i < 2; ++i) { // nothing is new the second time
            QVERIFY(m_store->mergeNewRecords());
            QCOMPARE(summary(raw), "3 b 0,4 b 0,5 C 0,6 a 0,7 a 0,8 d 0,9 c 0"_s);
        }
    }

    void failuresAreTold()
    {
        QVERIFY(m_store->openDatabase());
        QVERIFY(m_store->insertContacts({device(1, "a")}));
        QVERIFY(m_store->mergeNewRecords());
        QVERIFY(!m_store->insertContacts({device(1, "b")}));
        DeviceList list;
        list.assign({device(1, "c")});
        QVERIFY(!m_store->insertSettled(list.snapshot(), 0, 1));
        QCOMPARE(m_store->lastErrorText(), "UNIQUE constraint failed: contact1.id"_s);
        const RawDatabase raw(path());
        QCOMPARE(summary(raw), "1 a 0"_s);
        // The failure must not leave a transaction open.
        QVERIFY(m_store->insertContacts({device(2, "b")}));
        QCOMPARE(summary(raw), "1 a 0,2 b 1"_s);
        // A newer program has given the table another column.
        const QString isNewer = "a newer version of this program has written the database"_s;
        QVERIFY(raw.exec("alter table contact1 add column later"_s));
        QVERIFY(!m_store->insertContacts({device(3, "c")}));
        QCOMPARE(m_store->lastErrorText(), isNewer);
        QCOMPARE(m_store->queryContacts().size(), 2); // forgets the error
        QVERIFY(!m_store->insertSettled(list.snapshot(), 0, 1));
        QCOMPARE(m_store->lastErrorText(), isNewer);
        m_store->closeDatabase();
        QVERIFY(!m_store->insertContacts({device(3, "c")}));
        QVERIFY(!m_store->insertSettled(list.snapshot(), 0, 1));
    }

    /// Tables of earlier programs may have been made without the key.
    void rowsWithoutNumbersOfTheirOwnCollapse()
    {
        const RawDatabase raw(path());
        QString withoutKey = createStatement;
        QVERIFY(raw.exec(withoutKey.remove(QLatin1String(" PRIMARY KEY"))));
        for (const char *row : {"1,'a',0", "1,'b',0", "2,'c',0", "0,'d',0", "3,'e',0", "-1,'f',0",
                                "4,'g',0", "4,'h',0", "5,'i',0", "null,'j',0"})
            QVERIFY(raw.exec(insertMac.arg(QLatin1String(row))));

        QVERIFY(m_store->openDatabase());
        QString found;
        const QList<ContactInfo> contacts = m_store->queryContacts();
        for (const ContactInfo &contact : contacts)
            found += QString::number(contact.id) + contact.mac;
        QCOMPARE(found, "1b2c3e4h5i"_s);
    }

    void transactionsNest()
    {
        QVERIFY(m_store->openDatabase());
        const RawDatabase raw(path());
        for (const bool isKept : {false, true}) {
            {
                ScopedTransaction outer(*m_store);
                QVERIFY(m_store->insertContacts({device(1, "a")}));
                // The batch's own transaction has joined this one: nobody else sees its row yet.
                QCOMPARE(summary(raw), QString());
                if (!isKept) {
                    const ScopedTransaction inner(*m_store);
                    QVERIFY(m_store->insertContacts({device(2, "b")}));
                }
                QCOMPARE(outer.commit(), isKept);
            }
            QCOMPARE(summary(raw), isKept ? "1 a 1"_s : QString());
        }
        {
            const ScopedTransaction givenUp(*m_store);
            QVERIFY(m_store->deleteAll());
        }
        QCOMPARE(m_store->countContacts(), 1);
    }

private:
    QString path() const { return m_folder->filePath("phonebook.db"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SqliteDatabase> m_store;
};

QTEST_GUILESS_MAIN(TestSqliteDatabase)
#include "tst_sqlitedatabase.moc"
