#include "app/AutoStart.h"
#include "app/LanguageFile.h"
#include "app/OptionsFile.h"
#include "app/PortDialog.h"
#include "net/HttpdPort.h"
#include "tests/TestDevices.h"
#include "tests/WindowFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QScopeGuard>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

constexpr int tenMegabytes = 10 * 1024 * 1024;

const char shippedOptions[] = "<root>\n"
                              "    <AutoStart>0</AutoStart>\n"
                              "    <RecoveryData>1</RecoveryData>\n"
                              "    <AutoHttpd>0</AutoHttpd>\n"
                              "</root>\n";
const char shippedConfig[] = "<root>\n    <Language>en</Language>\n</root>\n";
const char portFile[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<configHttpdPort>\n"
                        "    <useDefault>0</useDefault>\n"
                        "    <port>8080</port>\n"
                        "</configHttpdPort>\n";
/// A file that may be read but not written.
constexpr QFile::Permissions readOnly = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
constexpr uint ordinaryUser = 65534;

QByteArray optionsXml(const char *triple)
{
    return QByteArray(shippedOptions)
        .replace("Start>0", QByteArray("Start>") + triple[0])
        .replace("Data>1", QByteArray("Data>") + triple[1])
        .replace("Httpd>0", QByteArray("Httpd>") + triple[2]);
}

QByteArray utf16(const QByteArray &latin)
{
    const QString text = QLatin1String(latin);
    return QByteArray("\xff\xfe") +
           QByteArray(reinterpret_cast<const char *>(text.utf16()), 2 * text.size());
}

/// A few lines that unfold to 16 million characters.
QByteArray unfolding(const QByteArray &element)
{
    QByteArray entities;
    for (char name = 'a'; name < 'h'; ++name) {
        const QByteArray next = QByteArray("&") + char(name + 1) + ';';
        entities += QByteArray("<!ENTITY ") + name + " \"" + next.repeated(10) + "\">";
    }
    return "<!DOCTYPE root [" + entities + "<!ENTITY h \"1\">]><root x=\"&a;\">" + element +
           "</root>";
}

QByteArray triple(const Options &options)
{
    QByteArray values;
    for (const auto &value : {options.autoStart, options.recoveryData, options.autoHttpd})
        values += value.value_or(false) ? '1' : '0';
    return values;
}

} // namespace

class TestSettings : public QObject, WindowFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { registerContactTypes(); }
    void init();
    void cleanup() { tearDown(); }

    void optionsFile_data();
    void optionsFile();
    void languageFile_data();
    void languageFile();
    void cutAtEveryByte();
    void leavesReadOnlyFilesAlone();
    void startsWithDefaults_data();
    void startsWithDefaults();
    void installersNote_data();
    void installersNote();
    void optionsSurviveARestart();
    void languageSurvivesARestart();
    void whatCannotBeStoredIsNotChosen();
    void autoStartEntry();
    void portDialog();

private:
    QAction *action(const QString &text) const;
    QString optionsPath() const
    {
        return m_folder->filePath(QStringLiteral("language/options.xml"));
    }
    QString configPath() const { return m_folder->filePath(QStringLiteral("language/config.xml")); }
    QString portPath() const { return m_folder->filePath(QStringLiteral("port.xml")); }
    QByteArray checkedOptions() const;
    QString checkedLanguage() const;
};

void TestSettings::init()
{
    setUpFolder();
    QVERIFY(QDir().mkdir(QStringLiteral("language")));
    qputenv("XDG_CONFIG_HOME", m_folder->filePath(QStringLiteral("home")).toLocal8Bit());
}

QAction *TestSettings::action(const QString &text) const
{
    const auto actions = m_window->findChildren<QAction *>();
    for (QAction *const candidate : actions) {
        if (candidate->text() == text)
            return candidate;
    }
    qFatal("no action %s", qPrintable(text));
}

QByteArray TestSettings::checkedOptions() const
{
    return triple({action(QStringLiteral("Auto Start"))->isChecked(),
                   action(QStringLiteral("Recovery Data"))->isChecked(),
                   action(QStringLiteral("Auto Httpd"))->isChecked()});
}

QString TestSettings::checkedLanguage() const
{
    QString checked;
    for (const char *const name : {"zh", "en"}) {
        if (m_window->findChild<QAction *>(QLatin1String(name))->isChecked())
            checked += QLatin1String(name);
    }
    return checked;
}

void TestSettings::optionsFile_data()
{
    QTest::addColumn<QByteArray>("held");
    QTest::addColumn<QByteArray>("read");    // "-" when nothing could be
    QTest::addColumn<QByteArray>("updated"); // to 1, 0, 1
    const QByteArray anew = optionsXml("101");
    const auto row = [&](const char *name, const QByteArray &held, const char *read) {
        QTest::newRow(name) << held << QByteArray(read) << anew;
    };
    row("as shipped", shippedOptions, "010");
    row("empty", "", "-");
    row("binary", QByteArray("\0\xff\xfe\x01<root>\0", 12), "-");
    row("ten megabytes",
        "<root>" + QByteArray("<AutoStart>1</AutoStart>").repeated(tenMegabytes / 24) + "</root>",
        "-");
    row("left over from a longer file", shippedOptions + QByteArray("d>\n</root>\n"), "-");
    row("nested without end", QByteArray("<a>").repeated(4000) + QByteArray("</a>").repeated(4000),
        "-");
    row("entities that unfold without end", unfolding(shippedOptions), "-");
    row("control characters", optionsXml("11\x01"), "-");
    row("no elements", "<root/>", "000");
    row("the last one missing",
        "<root><AutoStart>1</AutoStart><RecoveryData>1</RecoveryData></root>", "110");
    row("in another order, doubled",
        "<root><AutoStart>1</AutoStart><AutoHttpd>1</AutoHttpd><RecoveryData>1</RecoveryData>"
        "<AutoHttpd>1</AutoHttpd></root>",
        "100");
    row("other texts",
        "<root><AutoStart>true</AutoStart><RecoveryData> 1\n</RecoveryData><AutoHttpd>2</AutoHttpd>"
        "</root>",
        "010");
    row("with a mark", "\xef\xbb\xbf" + optionsXml("111"), "111");
    row("in UTF-16, as it says",
        utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + optionsXml("111")), "111");
    QTest::newRow("more than is known")
        << QByteArray(shippedOptions).replace("</root>", "<Own>my</Own></root>")
        << QByteArray("010") << QByteArray(anew).replace("</root>", "    <Own>my</Own>\n</root>");
}

void TestSettings::optionsFile()
{
    QFETCH(QByteArray, held);
    QFETCH(QByteArray, read);
    writeFile(optionsPath(), held);
    Options options;
    QCOMPARE(readOptionsFile(optionsPath(), options), read != "-");
    QCOMPARE(triple(options), read == "-" ? QByteArray("000") : read);
    QCOMPARE(fileContent(optionsPath()), held);
    QVERIFY(updateOptionsFile(optionsPath(), {true, false, true}));
    QTEST(fileContent(optionsPath()), "updated");
    QVERIFY(readOptionsFile(optionsPath(), options));
    QCOMPARE(triple(options), QByteArray("101"));
}

void TestSettings::languageFile_data()
{
    QTest::addColumn<QByteArray>("held");
    QTest::addColumn<QByteArray>("read");
    const auto row = [](const char *name, const QByteArray &held, const char *read) {
        QTest::newRow(name) << held << QByteArray(read);
    };
    row("as shipped", shippedConfig, "en");
    row("in a row, the last wins", "<root><Language>en</Language><Language>zh</Language></root>",
        "zh");
    row("not in a row, the first",
        "<root><Language>zh</Language><x/><Language>en</Language></root>", "zh");
    row("blanks belong to the word", "<root><Language> zh</Language></root>", " zh");
    row("nested deeper", "<root><a><Language>zh</Language></a></root>", "");
    row("in UTF-16", utf16("<root><Language>zh</Language></root>"), "zh");
    row("Chinese text, not in UTF-8", "<root><!-- \xd6\xd0 --><Language>zh</Language></root>", "-");
    row("entities that unfold without end", unfolding("<Language>zh</Language>"), "-");
}

void TestSettings::languageFile()
{
    QFETCH(QByteArray, held);
    QFETCH(QByteArray, read);
    writeFile(configPath(), held);
    QString language;
    QCOMPARE(readLanguageFile(configPath(), language), read != "-");
    QCOMPARE(language.toUtf8(), read == "-" ? QByteArray() : read);
    for (const char *const word : {"zh", "en"}) {
        QVERIFY(updateLanguageFile(configPath(), QLatin1String(word)));
        QVERIFY(readLanguageFile(configPath(), language));
        QCOMPARE(language, QLatin1String(word));
    }
    if (read == "-")
        QCOMPARE(fileContent(configPath()), QByteArray(shippedConfig));
}

void TestSettings::cutAtEveryByte()
{
    const auto cut = [](const QString &path, const QByteArray &whole, const auto &check) {
        for (int length = 0; length < whole.size() - 1; ++length) {
            writeFile(path, whole.left(length));
            check(QByteArray::number(length));
        }
    };
    cut(optionsPath(), optionsXml("111"), [this](const QByteArray &length) {
        Options read;
        QVERIFY2(!readOptionsFile(optionsPath(), read), length);
        QCOMPARE(triple(read), QByteArray("000"));
        QVERIFY(updateOptionsFile(optionsPath(), {false, true, false}));
        QCOMPARE(fileContent(optionsPath()), QByteArray(shippedOptions));
    });
    cut(configPath(), shippedConfig, [this](const QByteArray &length) {
        QString language;
        QVERIFY2(!readLanguageFile(configPath(), language), length);
        QVERIFY(updateLanguageFile(configPath(), QStringLiteral("en")));
        QCOMPARE(fileContent(configPath()), QByteArray(shippedConfig));
    });
    cut(portPath(), portFile, [this](const QByteArray &length) {
        const HttpdPort read = readHttpdPort(portPath());
        // Never half a number.
        QVERIFY2(read.port == 80 || read.port == 8080, length);
        QVERIFY2(read.portText.isEmpty() || read.portText == QLatin1String("8080"), length);
        QVERIFY(writeHttpdPort(portPath(), false, QStringLiteral("8080")));
        QCOMPARE(fileContent(portPath()), QByteArray(portFile));
    });
}

void TestSettings::leavesReadOnlyFilesAlone()
{
#ifdef Q_OS_UNIX
    const QByteArray chinese = "<root><Language>zh</Language></root>";
    const QMap<QString, QByteArray> files = {
        {optionsPath(), optionsXml("111")}, {configPath(), chinese}, {portPath(), portFile}};
    for (auto file = files.begin(); file != files.end(); ++file) {
        writeFile(file.key(), file.value());
        QVERIFY(QFile::setPermissions(file.key(), readOnly));
        // The folder is open to everybody, so that a file could be replaced, though not written.
        QVERIFY(QFile::setPermissions(QFileInfo(file.key()).path(), QFile::Permissions(0x7777)));
    }
    // Nothing is read-only for root.
    const bool asRoot = geteuid() == 0;
    QVERIFY(!asRoot || seteuid(ordinaryUser) == 0);
    const auto back = qScopeGuard([asRoot] {
        if (asRoot && seteuid(0) != 0)
            qFatal("cannot become root again");
    });

    QVERIFY(createLanguageFile(configPath() + QLatin1Char('2'), QStringLiteral("en")));
    Options options;
    QVERIFY(!readOptionsFile(optionsPath(), options));
    QCOMPARE(triple(options), QByteArray("000"));
    QString language;
    QVERIFY(readLanguageFile(configPath(), language));
    QCOMPARE(language, QStringLiteral("zh"));
    QVERIFY(!updateOptionsFile(optionsPath(), {false, false, false}));
    QVERIFY(!createOptionsFile(optionsPath(), {false, false, false}));
    QVERIFY(!updateLanguageFile(configPath(), QStringLiteral("en")));
    QVERIFY(!writeHttpdPort(portPath(), true, QString()));
    for (auto file = files.begin(); file != files.end(); ++file)
        QCOMPARE(fileContent(file.key()), file.value());
#else
    QSKIP("the test makes files read-only by their mode");
#endif
}

void TestSettings::startsWithDefaults_data()
{
    QTest::addColumn<QByteArray>("held");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("ten megabytes of lines") << QByteArray("<root>\n").repeated(tenMegabytes / 7);
    QTest::newRow("ten megabytes without a line break") << QByteArray(tenMegabytes, 'c');
}

void TestSettings::startsWithDefaults()
{
    QFETCH(QByteArray, held);
    const QStringList paths = {optionsPath(), configPath(), portPath(),
                               m_folder->filePath(QStringLiteral("VLManager.ini"))};
    if (!held.isNull()) {
        for (const QString &path : paths)
            writeFile(path, held);
    }
    openWindow();
    QCOMPARE(checkedOptions(), QByteArray("000"));
    QCOMPARE(checkedLanguage(), QStringLiteral("en"));
    QVERIFY(m_shown.isEmpty());
    for (const QString &path : paths) {
        QCOMPARE(QFile::exists(path), !held.isNull());
        QCOMPARE(fileContent(path), held);
    }
}

void TestSettings::installersNote_data()
{
    QTest::addColumn<QByteArray>("note");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("language");
    const auto row = [](const char *name, const QByteArray &note, const char *before,
                        const QByteArray &after, const char *language) {
        QTest::newRow(name) << note << QByteArray(before) << after << QString::fromLatin1(language);
    };
    const QByteArray chinese = QByteArray(shippedConfig).replace("en", "zh");
    row("Chinese over English", "language=chinese\n", shippedConfig, chinese, "zh");
    row("English over Chinese", "english", chinese, shippedConfig, "en");
    row("first line only", "[install]\nchinese\n", shippedConfig, shippedConfig, "en");
    row("both", "english or chinese\n", shippedConfig, chinese, "zh");
    row("over a damaged file", "chinese\r\n", "<root><Lang", chinese, "zh");
}

void TestSettings::installersNote()
{
    QFETCH(QByteArray, note);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QString notePath = m_folder->filePath(QStringLiteral("VLManager.ini"));
    writeFile(notePath, note);
    if (!before.isEmpty())
        writeFile(configPath(), before);
    openWindow();
    QTEST(checkedLanguage(), "language");
    QCOMPARE(fileContent(configPath()), after);
    // One that names no language is left alone.
    QCOMPARE(QFile::exists(notePath), before == after);
}

void TestSettings::optionsSurviveARestart()
{
    openWindow();
    QCOMPARE(checkedOptions(), QByteArray("000"));
    QVERIFY(!QFile::exists(optionsPath()));
    action(QStringLiteral("Auto Httpd"))->trigger();
    QCOMPARE(fileContent(optionsPath()), optionsXml("011")); // the list comes back, as shipped
    QCOMPARE(checkedOptions(), QByteArray("011"));
    QCOMPARE(m_shown.size(), 1);
    QCOMPARE(m_shown.first().title, QStringLiteral("Options change"));
    QCOMPARE(m_shown.first().text,
             QStringLiteral("Config's change will take effect after reboot."));
    QVERIFY(!QFile::exists(AutoStart::place()));

    action(QStringLiteral("Auto Httpd"))->trigger();
    action(QStringLiteral("Auto Start"))->trigger();
    QCOMPARE(fileContent(optionsPath()), optionsXml("110"));
    QVERIFY(fileContent(AutoStart::place()).contains("Hidden=false"));
    m_window->onContactDialogAddFinished(ContactInfo());

    openWindow();
    QCOMPARE(checkedOptions(), QByteArray("110"));
    QCOMPARE(m_dataMgr->devices().size(), 1);
    action(QStringLiteral("Auto Start"))->trigger();
    QVERIFY(fileContent(AutoStart::place()).contains("Hidden=true"));
    // On and off again without a restart in between.
    action(QStringLiteral("Auto Start"))->trigger();
    action(QStringLiteral("Auto Start"))->trigger();
    QVERIFY(fileContent(AutoStart::place()).contains("Hidden=true"));
    action(QStringLiteral("Auto Httpd"))->trigger();
    QCOMPARE(fileContent(optionsPath()), optionsXml("011"));

    // The next start opens the service, after the list is there.
    m_shown.clear();
    int listed = 0;
    m_whileAsking = [&] { listed = m_dataMgr->devices().size(); };
    openWindow();
    QTRY_COMPARE(m_shown.size(), 1);
    QCOMPARE(m_shown.first().title, QStringLiteral("Select avaliable NIC"));
    QCOMPARE(listed, 1);
}

void TestSettings::languageSurvivesARestart()
{
    openWindow();
    action(QStringLiteral("English"))->trigger();
    QVERIFY(m_shown.isEmpty());
    QVERIFY(!QFile::exists(configPath()));

    // Also there and back without a restart in between.
    for (const QStringList &chosen :
         {QStringList{QStringLiteral("简体中文")},
          QStringList{QStringLiteral("English"), QStringLiteral("简体中文")}}) {
        for (const QString &language : chosen) {
            action(language)->trigger();
            QCOMPARE(m_shown.last().title, QStringLiteral("Language change"));
            QCOMPARE(m_shown.last().text,
                     QStringLiteral("Language change will take effect after reboot."));
        }
        openWindow();
        QCOMPARE(checkedLanguage(), QStringLiteral("zh"));
    }
    QCOMPARE(m_shown.size(), 3);
}

void TestSettings::whatCannotBeStoredIsNotChosen()
{
    openWindow();
    action(QStringLiteral("Auto Httpd"))->trigger();
    m_shown.clear();
    const auto refused = [this](const QString &choice, const QString &title, const QString &path) {
        action(choice)->trigger();
        QCOMPARE(checkedOptions(), QByteArray("011"));
        QCOMPARE(checkedLanguage(), QStringLiteral("en"));
        QCOMPARE(m_shown.size(), 1);
        QCOMPARE(m_shown.first().title, title);
        QCOMPARE(m_shown.takeFirst().text,
                 path + QLatin1String(" can not be written: a folder has the file's name."));
    };
    const QString options = QStringLiteral("Options change");
    QVERIFY(QDir().mkpath(AutoStart::place()));
    refused(QStringLiteral("Auto Start"), options, AutoStart::place());
    QCOMPARE(fileContent(optionsPath()), optionsXml("011"));
    QVERIFY(QDir().rmdir(AutoStart::place()));

    QVERIFY(QFile::remove(optionsPath()));
    for (const QString &path : {optionsPath(), configPath(), portPath()})
        QVERIFY(QDir().mkpath(path));
    refused(QStringLiteral("Auto Start"), options, optionsPath());
    QVERIFY(fileContent(AutoStart::place()).contains("Hidden=true"));
    refused(QStringLiteral("Auto Httpd"), options, optionsPath());
    refused(QStringLiteral("简体中文"), QStringLiteral("Language change"), configPath());

    action(QStringLiteral("Configure Httpd Port"))->trigger();
    auto *const dialog = m_window->findChild<PortDialog *>();
    dialog->useDefaultBox()->click();
    dialog->findChild<QLineEdit *>()->setText(QStringLiteral("5000"));
    dialog->okButton()->click();
    QVERIFY(dialog->isVisible());
    QCOMPARE(m_shown.size(), 1);
    QCOMPARE(m_shown.first().text,
             QStringLiteral("port.xml can not be written: a folder has the file's name."));
}

void TestSettings::autoStartEntry()
{
#ifdef Q_OS_LINUX
    QCOMPARE(AutoStart::place(),
             m_folder->filePath(QStringLiteral("home/autostart/VlManager.desktop")));
    QVERIFY(AutoStart::set(QStringLiteral("/opt/my phones/50%/a$b\"c\\d/VlManager"), true));
    const QList<QByteArray> lines = fileContent(AutoStart::place()).split('\n');
    QCOMPARE(lines.first(), QByteArray("[Desktop Entry]"));
    QVERIFY(lines.contains("Exec=\"/opt/my phones/50%%/a\\\\$b\\\\\"c\\\\\\\\d/VlManager\""));
#else
    QSKIP("the entry is a file on Linux only");
#endif
}

void TestSettings::portDialog()
{
    openWindow();
    PortDialog *dialog = nullptr;
    const auto open = [&] {
        QTRY_VERIFY(!m_window->findChild<PortDialog *>());
        action(QStringLiteral("Configure Httpd Port"))->trigger();
        dialog = m_window->findChild<PortDialog *>();
    };
    const auto edit = [&dialog] { return dialog->findChild<QLineEdit *>(); };
    const auto type = [&](const char *port) {
        edit()->clear();
        QTest::keyClicks(edit(), QLatin1String(port));
        m_shown.clear();
        QTest::keyClick(dialog, Qt::Key_Return);
    };

    open();
    QVERIFY(dialog->useDefaultBox()->isChecked());
    QVERIFY(!edit()->isEnabled());
    action(QStringLiteral("Configure Httpd Port"))->trigger(); // chosen twice, still one
    QCOMPARE(m_window->findChildren<PortDialog *>(), QList<PortDialog *>{dialog});
    dialog->okButton()->click();
    const QByteArray before =
        QByteArray(portFile).replace(">0<", ">1<").replace("<port>8080</port>", "<port></port>");
    QCOMPARE(fileContent(portPath()), before);

    open();
    dialog->useDefaultBox()->click();
    QVERIFY(edit()->isEnabled());
    for (const char *const wrong : {"", "4999", "65536"}) {
        type(wrong);
        QCOMPARE(m_shown.size(), 1);
        QCOMPARE(m_shown.first().title, QStringLiteral("Port Error"));
        QCOMPARE(m_shown.first().text, QStringLiteral("The port should between 5000 and 65535!"));
        QVERIFY(dialog->isVisible());
    }
    QTest::keyClick(dialog, Qt::Key_Escape);
    QCOMPARE(fileContent(portPath()), before);

    for (const char *const right : {"5000", "65535", "8080"}) {
        open();
        if (dialog->useDefaultBox()->isChecked())
            dialog->useDefaultBox()->click();
        type(right);
        QVERIFY(m_shown.isEmpty());
        QVERIFY(!dialog->isVisible());
        QCOMPARE(fileContent(portPath()), QByteArray(portFile).replace("8080", right));
    }
    // A glance leaves what is stored as it is, also where it could not be typed.
    for (const char *const stored : {"8080", ""}) {
        const QByteArray content = QByteArray(portFile).replace("8080", stored);
        QTRY_VERIFY(!m_window->findChild<PortDialog *>());
        writeFile(portPath(), content);
        open();
        QCOMPARE(edit()->text(), QLatin1String(stored));
        QVERIFY(edit()->isEnabled() && !dialog->useDefaultBox()->isChecked());
        dialog->okButton()->click();
        QVERIFY(!dialog->isVisible() && m_shown.isEmpty());
        QCOMPARE(fileContent(portPath()), content);
    }

    // What is no port is not put before the user, nor written back.
    QTRY_VERIFY(!m_window->findChild<PortDialog *>());
    writeFile(portPath(), "<a><port>eighty</port></a>");
    open();
    QCOMPARE(edit()->text(), QString());
}

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
