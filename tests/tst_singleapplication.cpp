#include "app/SingleApplication.h"

#include <QProcess>
#include <QTest>

namespace {

constexpr int patienceMs = 20000;

class Copy : public QProcess
{
public:
    explicit Copy(const QString &name)
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        start(QStringLiteral(VL_PROBE), {name});
    }
    ~Copy() override
    {
        kill();
        waitForFinished(patienceMs);
    }

    int count(const char *line)
    {
        m_output += readAllStandardOutput();
        return m_output.count(line);
    }

private:
    QByteArray m_output;
};

} // namespace

class TestSingleApplication : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_name = QStringLiteral("vl-test-%1-%2")
                     .arg(QCoreApplication::applicationPid())
                     .arg(QLatin1String(QTest::currentTestFunction()));
    }

    void keepsOnlySafeCharactersInTheKey_data()
    {
        QTest::addColumn<QString>("application");
        QTest::addColumn<QString>("organization");
        QTest::addColumn<QString>("key");
        QTest::newRow("plain") << "VlManager"
                               << ""
                               << "VlManager";
        QTest::newRow("both joined") << "a b"
                                     << "c-d.e"
                                     << "a bc-d.e";
        QTest::newRow("separators") << "a/b:c\\d"
                                    << "x\ny"
                                    << "abcdxy";
        QTest::newRow("nothing left") << "/:\\"
                                      << "*?"
                                      << "";
    }

    void keepsOnlySafeCharactersInTheKey()
    {
        QFETCH(QString, application);
        QFETCH(QString, organization);
        QTEST(SingleApplication::instanceKey(application, organization), "key");
    }

    void laterCopiesWakeTheFirstAndEnd()
    {
        Copy first(m_name);
        QTRY_COMPARE_WITH_TIMEOUT(first.count("first"), 1, patienceMs);
        for (int knocks = 1; knocks <= 3; ++knocks) {
            Copy later(m_name);
            QVERIFY(later.waitForFinished(patienceMs));
            QCOMPARE(later.exitStatus(), QProcess::NormalExit);
            QCOMPARE(later.exitCode(), 0);
            QCOMPARE(later.count("first"), 0);
            QTRY_COMPARE_WITH_TIMEOUT(first.count("knock"), knocks, patienceMs);
        }
        QCOMPARE(first.state(), QProcess::Running);
    }

    void aKilledCopyDoesNotKeepTheNextFromStarting()
    {
        for (int round = 0; round < 3; ++round) {
            Copy copy(m_name);
            QTRY_COMPARE_WITH_TIMEOUT(copy.count("first"), 1, patienceMs);
            copy.kill();
            QVERIFY(copy.waitForFinished(patienceMs));
        }
        Copy last(m_name);
        QTRY_COMPARE_WITH_TIMEOUT(last.count("first"), 1, patienceMs);
        Copy later(m_name);
        QVERIFY(later.waitForFinished(patienceMs));
        QTRY_COMPARE_WITH_TIMEOUT(last.count("knock"), 1, patienceMs);
        // Ends as it should, so that no segment stays behind on the test machine, and releases its
        // key with that.
        last.closeWriteChannel();
        QVERIFY(last.waitForFinished(patienceMs));
        QCOMPARE(last.exitCode(), 0);
    }

private:
    QString m_name;
};

QTEST_GUILESS_MAIN(TestSingleApplication)
#include "tst_singleapplication.moc"
