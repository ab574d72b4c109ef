#include "app/SingleApplication.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
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
        QVERIFY(m_runtimeFolder.isValid());
        qputenv("XDG_RUNTIME_DIR", m_runtimeFolder.path().toLocal8Bit());
        m_name = QStringLiteral("vl-test-%1-%2")
                     .arg(QCoreApplication::applicationPid())
                     .arg(QLatin1String(QTest::currentTestFunction()));
    }

    void keepsOnlySafeCharactersInTheKey()
    {
        const auto key = [](const char *application, const char *organization) {
            return SingleApplication::instanceKey(QString::fromLatin1(application),
                                                  QString::fromLatin1(organization));
        };
        QCOMPARE(key("a b", "c-d.e"), QStringLiteral("a bc-d.e"));
        QCOMPARE(key("a/b:c\\d", "x\ny"), QStringLiteral("abcdxy"));
        QCOMPARE(key("/:\\", "*?"), QString());
    }

    void laterCopiesWakeTheFirstAndEnd()
    {
        Copy first(m_name);
        QTRY_COMPARE_WITH_TIMEOUT(first.count("first"), 1, patienceMs);
#ifdef Q_OS_UNIX
        // Out of other users' reach.
        QVERIFY(QFile::exists(m_runtimeFolder.filePath(m_name)));
#endif
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
    QTemporaryDir m_runtimeFolder;
    QString m_name;
};

QTEST_GUILESS_MAIN(TestSingleApplication)
#include "tst_singleapplication.moc"
