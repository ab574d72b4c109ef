#include "app/AutoStart.h"
#include "app/LanguageFile.h"
#include "app/OptionsFile.h"
#include "app/PortDialog.h"
#include "net/HttpdPort.h"
#include "tests/WindowFixture.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTextCodec>

#include <unistd.h>

namespace {

constexpr int tenMegabytes = 10 * 1024 * 1024;
const char englishConfig[] = "<root>\n    <Language>en</Language>\n</root>\n";
const char chineseConfig[] = "<root>\n    <Language>zh</Language>\n</root>\n";

QByteArray optionsXml(const char *triple)
{
    return QByteArray("<root>\n    <AutoStart>") + triple[0] + "</AutoStart>\n    <RecoveryData>" +
           triple[1] + "</RecoveryData>\n    <AutoHttpd>" + triple[2] + "</AutoHttpd>\n</root>\n";
}

QByteArray portXml(const char *useDefault, const char *port)
{
    return QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<configHttpdPort>\n"
                      "    <useDefault>") +
           useDefault + "</useDefault>\n    <port>" + port + "</port>\n</configHttpdPort>\n";
}

QByteArray utf16(const char *latin)
{
    return QTextCodec::codecForName("UTF-16")->fromUnicode(QLatin1String(latin));
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
    void init()
    {
        setUpFolder();
        m_options = path("language/options.xml");
        m_config = path("language/config.xml");
        m_port = path("port.xml");
        QVERIFY(QDir().mkdir(path("language")));
        qputenv("XDG_CONFIG_HOME", path("home").toLocal8Bit());
    }

    void cleanup() { tearDown(); }

    void optionsFile()
    {
        const QByteArray shipped = optionsXml("010");
        // What is held and what is read of it, "-" when nothing can be.
        const std::pair<QByteArray, QByteArray> rows[] = {
            {shipped, "010"},
            {QByteArray("\0\xff\xfe\x01<root>\0", 12), "-"},
            {"<root>" + QByteArray("<AutoStart>1</AutoStart>").repeated(tenMegabytes / 24) +
                 "</root>",
             "-"},
            {shipped + "d>\n</root>\n", "-"}, // left over from a longer file
            {unfolding(shipped), "-"},
            {optionsXml("11\x01"), "-"},
            {"<root/>", "000"},
            {"<root><AutoStart>1</AutoStart><RecoveryData>1</RecoveryData></root>", "110"},
            {"<root><AutoStart>1</AutoStart><AutoHttpd>1</AutoHttpd><RecoveryData>1</RecoveryData>"
             "<AutoHttpd>1</AutoHttpd></root>",
             "100"},
            {"<root><AutoStart>true</AutoStart><RecoveryData> 1\n</RecoveryData><AutoHttpd>2"
             "</AutoHttpd></root>",
             "010"},
            {"\xef\xbb\xbf" + optionsXml("111"), "111"},
            {utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + optionsXml("111")), "111"},
            {QByteArray(shipped).replace("</root>", "<Own>my</Own></root>"), "010"}};
        for (const auto &[held, read] : rows) {
            writeFile(m_options, held);
            Options options;
            QVERIFY2(readOptionsFile(m_options, options) == (read != "-"), held.left(99));
            QCOMPARE(triple(options), read == "-" ? QByteArray("000") : read);
            QVERIFY(fileContent(m_options) == held);
            QVERIFY(updateOptionsFile(m_options, {true, false, true}));
            const char *const own =
                held.contains("<Own>") ? "    <Own>my</Own>\n</root>" : "</root>";
            QCOMPARE(fileContent(m_options), optionsXml("101").replace("</root>", own));
        }
    }

    void languageFile()
    {
        const std::pair<QByteArray, QByteArray> rows[] = {
            {englishConfig, "en"},
            // Of neighbours the last counts, otherwise the first.
            {"<root><Language>en</Language><Language>zh</Language></root>", "zh"},
            {"<root><Language> zh</Language></root>", " zh"},
            {"<root><a><Language>zh</Language></a></root>", ""},
            {"<root><!-- \xd6\xd0 --><Language>zh</Language></root>", "-"}, // Chinese, not in UTF-8
            {unfolding("<Language>zh</Language>"), "-"}};
        for (const auto &[held, read] : rows) {
            writeFile(m_config, held);
            QString language;
            QVERIFY2(readLanguageFile(m_config, language) == (read != "-"), held.left(99));
            QCOMPARE(language.toUtf8(), read == "-" ? QByteArray() : read);
            for (const QString &word : {"zh"_s, "en"_s}) {
                QVERIFY(updateLanguageFile(m_config, word));
                QVERIFY(readLanguageFile(m_config, language));
                QCOMPARE(language, word);
            }
            QVERIFY(read != "-" || fileContent(m_config) == englishConfig);
        }
    }

    void cutAtEveryByte()
    {
        const auto cut = [](const QString &file, const QByteArray &whole, const auto &check) {
            for (int length = 0; length < whole.size() - 1; ++length) {
                writeFile(file, whole.left(length));
                check(QByteArray::number(length));
            }
        };
        cut(m_options, optionsXml("111"), [this](const QByteArray &length) {
            Options read;
            QVERIFY2(!readOptionsFile(m_options, read), length);
            QCOMPARE(triple(read), QByteArray("000"));
            QVERIFY(updateOptionsFile(m_options, {false, true, false}));
            QCOMPARE(fileContent(m_options), optionsXml("010"));
        });
        cut(m_config, englishConfig, [this](const QByteArray &length) {
            QString language;
            QVERIFY2(!readLanguageFile(m_config, language), length);
            QVERIFY(updateLanguageFile(m_config, "en"_s));
            QCOMPARE(fileContent(m_config), QByteArray(englishConfig));
        });
        cut(m_port, portXml("0", "8080"), [this](const QByteArray &length) {
            const HttpdPort read = readHttpdPort(m_port);
            // A number that is cut off never counts.
            QVERIFY2(read.port == 80 || read.port == 8080, length);
            QVERIFY2(read.portText.isEmpty() || read.portText == "8080"_s, length);
            QVERIFY(writeHttpdPort(m_port, false, "8080"_s));
            QCOMPARE(fileContent(m_port), portXml("0", "8080"));
        });
    }

    void leavesReadOnlyFilesAlone()
    {
        const QMap<QString, QByteArray> files = {{m_options, optionsXml("111")},
                                                 {m_config, chineseConfig},
                                                 {m_port, portXml("0", "8080")}};
        for (auto file = files.begin(); file != files.end(); ++file) {
            writeFile(file.key(), file.value());
            QVERIFY(QFile::setPermissions(file.key(), QFile::Permissions(0x4444)));
            // The folder is open to everybody, so that a file could be replaced, though not
            // written.
            QVERIFY(
                QFile::setPermissions(QFileInfo(file.key()).path(), QFile::Permissions(0x7777)));
        }
        // Nothing is read-only for root; 65534 is nobody.
        const bool asRoot = geteuid() == 0;
        QVERIFY(!asRoot || seteuid(65534) == 0);
        const auto back = qScopeGuard([asRoot] {
            if (asRoot && seteuid(0) != 0)
                qFatal("cannot become root again");
        });

        Options options;
        QVERIFY(!readOptionsFile(m_options, options));
        QString language;
        QVERIFY(readLanguageFile(m_config, language));
        QCOMPARE(language, "zh"_s);
        QVERIFY(!updateOptionsFile(m_options, {false, false, false}));
        QVERIFY(!createOptionsFile(m_options, {false, false, false}));
        QVERIFY(!updateLanguageFile(m_config, "en"_s));
        QVERIFY(!writeHttpdPort(m_port, true, QString()));
        for (auto file = files.begin(); file != files.end(); ++file)
            QCOMPARE(fileContent(file.key()), file.value());
    }

    void startsWithDefaults()
    {
        const QStringList paths = {m_options, m_config, m_port, path("VLManager.ini")};
        const QByteArray huge(tenMegabytes, 'c');
        for (const bool isThere : {false, true}) {
            for (const QString &file : isThere ? paths : QStringList())
                writeFile(file, huge);
            openWindow();
            QCOMPARE(checkedOptions(), QByteArray("000"));
            QCOMPARE(checkedLanguage(), "en"_s);
            QVERIFY(m_user->boxes.isEmpty());
            for (const QString &file : paths)
                QVERIFY(isThere ? fileContent(file) == huge : !QFile::exists(file));
        }
    }

    void installersNote()
    {
        struct Row
        {
            const char *note, *before, *after;
        };
        for (const Row &row : {Row{"language=chinese\n", englishConfig, chineseConfig},
                               {"english", chineseConfig, englishConfig},
                               {"[install]\nchinese\n", englishConfig, englishConfig},
                               {"chinese\r\n", "<root><Lang", chineseConfig}}) {
            writeFile(path("VLManager.ini"), row.note);
            writeFile(m_config, row.before);
            openWindow();
            QCOMPARE(checkedLanguage(), row.after == chineseConfig ? "zh"_s : "en"_s);
            QCOMPARE(fileContent(m_config), QByteArray(row.after));
            // A note that names no language is left alone.
            QCOMPARE(QFile::exists(path("VLManager.ini")), row.before == row.after);
        }
    }

    void whatCannotBeStoredIsNotChosen()
    {
        openWindow();
        choose("Auto Httpd"_s);
        m_user->boxes.clear();
        const QString reason = " can not be written: a folder has the file's name."_s;
        const auto refused = [&](const QString &choice, const QString &title, const QString &file) {
            choose(choice);
            QCOMPARE(checkedOptions(), QByteArray("011"));
            QCOMPARE(checkedLanguage(), "en"_s);
            QCOMPARE(m_user->told(), title + ": "_s + file + reason);
        };
        const QString options = "Options change"_s;
        QVERIFY(QDir().mkpath(AutoStart::place()));
        refused("Auto Start"_s, options, AutoStart::place());
        QCOMPARE(fileContent(m_options), optionsXml("011"));
        QVERIFY(QDir().rmdir(AutoStart::place()));

        QVERIFY(QFile::remove(m_options));
        for (const QString &file : {m_options, m_config, m_port})
            QVERIFY(QDir().mkpath(file));
        refused("Auto Start"_s, options, m_options);
        QVERIFY(fileContent(AutoStart::place()).contains("Hidden=true"));
        refused("Auto Httpd"_s, options, m_options);
        refused("简体中文"_s, "Language change"_s, m_config);

        PortDialog *const dialog = openPortDialog();
        dialog->useDefaultBox()->click();
        dialog->findChild<QLineEdit *>()->setText("5000"_s);
        dialog->okButton()->click();
        QVERIFY(dialog->isVisible());
        QVERIFY(m_user->told().endsWith(": port.xml"_s + reason));
    }

    void autoStartEntry()
    {
        QCOMPARE(AutoStart::place(), path("home/autostart/VlManager.desktop"));
        QVERIFY(AutoStart::set("/opt/my phones/50%/a$b\"c\\d/VlManager"_s, true));
        const QList<QByteArray> lines = fileContent(AutoStart::place()).split('\n');
        QCOMPARE(lines.first(), QByteArray("[Desktop Entry]"));
        QVERIFY(lines.contains("Exec=\"/opt/my phones/50%%/a\\\\$b\\\\\"c\\\\\\\\d/VlManager\""));
    }

    void portDialog()
    {
        openWindow();
        PortDialog *dialog = openPortDialog();
        QVERIFY(dialog->useDefaultBox()->isChecked());
        dialog->okButton()->click();
        QCOMPARE(fileContent(m_port), portXml("1", ""));

        const QString error = "Port Error: The port should between 5000 and 65535!"_s;
        const std::pair<const char *, bool> typed[] = {
            {"", false}, {"4999", false}, {"65536", false}, {"5000", true}, {"65535", true}};
        for (const auto &[port, isRight] : typed) {
            const QByteArray before = fileContent(m_port);
            dialog = openPortDialog();
            if (dialog->useDefaultBox()->isChecked())
                dialog->useDefaultBox()->click();
            auto *const edit = dialog->findChild<QLineEdit *>();
            edit->clear();
            QTest::keyClicks(edit, QLatin1String(port));
            QTest::keyClick(dialog, Qt::Key_Return);
            QCOMPARE(m_user->told(), isRight ? QString() : error);
            QCOMPARE(dialog->isVisible(), !isRight);
            QTest::keyClick(dialog, Qt::Key_Escape);
            QCOMPARE(fileContent(m_port), isRight ? portXml("0", port) : before);
        }
        // OK without an edit keeps what is stored, also where it could not be typed.
        for (const char *const stored : {"8080", ""}) {
            writeFile(m_port, portXml("0", stored));
            dialog = openPortDialog();
            QCOMPARE(dialog->findChild<QLineEdit *>()->text(), QLatin1String(stored));
            QVERIFY(!dialog->useDefaultBox()->isChecked());
            dialog->okButton()->click();
            QVERIFY(!dialog->isVisible() && m_user->boxes.isEmpty());
            QCOMPARE(fileContent(m_port), portXml("0", stored));
        }
    }

private:
    QByteArray checkedOptions() const
    {
        return triple({action("Auto Start"_s)->isChecked(), action("Recovery Data"_s)->isChecked(),
                       action("Auto Httpd"_s)->isChecked()});
    }
    QString checkedLanguage() const
    {
        const bool isChinese = part<QAction>("zh")->isChecked();
        return isChinese == part<QAction>("en")->isChecked() ? QString()
               : isChinese                                   ? "zh"_s
                                                             : "en"_s;
    }
    PortDialog *openPortDialog() const
    {
        [this] { QTRY_VERIFY(!part<PortDialog>()); }();
        choose("Configure Httpd Port"_s);
        return part<PortDialog>();
    }

    QString m_options, m_config, m_port; ///< paths
};

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
