#include "Literal.h"
#include "app/SingleApplication.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <thread>

namespace {

constexpr int patienceMs = 20000;

/// A program that is nothing but its start-up: this test with a name as its argument. Says "first"
/// when it is the first copy, "knock" when a later one wakes it. Ends with its input.
int runCopy(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setApplicationName(QString::fromLocal8Bit(argv[1]));
    SingleApplication application(argc, argv);
    std::setbuf(stdout, nullptr);
    std::puts("first");
    QObject::connect(&application, &SingleApplication::showUp, [] { std::puts("knock"); });
    std::thread input([&application] {
        while (std::getchar() != EOF) {
        }
        QMetaObject::invokeMethod(&application, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    const int status = SingleApplication::exec();
    input.join();
    return status;
}

class Copy : public QProcess
{
public:
    explicit Copy(const QString &name) { start(QCoreApplication::applicationFilePath(), {name}); }
    int count(const char *line) { return (m_output += readAllStandardOutput()).count(line); }

private:
    QByteArray m_output;
};

} // namespace

class TestSingleApplication : public QObject
{
    Q_OBJECT

private slots:
    void keepsOnlySafeCharactersInTheKey()
    {
        QCOMPARE(SingleApplication::instanceKey("a b/:c\\d"_s, "x\ny-.*?"_s), "a bcdxy-."_s);
    }

    void laterCopiesWakeTheFirstAndEnd()
    {
        const QTemporaryDir runtimeFolder;
        qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toLocal8Bit());
        const QString name = "vl-test-%1"_s.arg(QCoreApplication::applicationPid());
        // A killed copy does not keep the next from starting.
        for (int round = 0; round < 3; ++round) {
            Copy copy(name);
            QTRY_COMPARE_WITH_TIMEOUT(copy.count("first"), 1, patienceMs);
        }
        Copy first(name);
        QTRY_COMPARE_WITH_TIMEOUT(first.count("first"), 1, patienceMs);
#ifdef Q_OS_UNIX
        // Other users cannot reach the folder that this lies in.
        QVERIFY(QFile::exists(runtimeFolder.filePath(name)));
#endif
        for (int knocks = 1; knocks <= 3; ++knocks) {
            Copy later(name);
            QVERIFY(later.waitForFinished(patienceMs));
            QVERIFY(later.exitStatus() == QProcess::NormalExit && later.exitCode() == 0);
            QCOMPARE(later.count("first"), 0);
            QTRY_COMPARE_WITH_TIMEOUT(first.count("knock"), knocks, patienceMs);
        }
        // It ends as it should, so that no segment stays behind on the test machine.
        first.closeWriteChannel();
        QVERIFY(first.waitForFinished(patienceMs));
        QCOMPARE(first.exitCode(), 0);
    }
};

int main(int argc, char **argv)
{
    if (argc == 2 && QByteArray(argv[1]).startsWith("vl-test-"))
        return runCopy(argc, argv);
    QCoreApplication application(argc, argv);
    TestSingleApplication test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_singleapplication.moc"
