// Reads any bytes as each of the settings files. After a change, the program must read the new
// value from the file, whatever the file held before.
#include "app/LanguageFile.h"
#include "app/OptionsFile.h"
#include "fuzz/FuzzTarget.h"
#include "net/HttpdPort.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

void changeOptions(const QString &path)
{
    Options options;
    readOptionsFile(path, options);
    for (const auto value : {&Options::autoStart, &Options::recoveryData, &Options::autoHttpd})
        options.*value = !(options.*value).value_or(false);
    require(bool(updateOptionsFile(path, options)));
    Options again;
    require(readOptionsFile(path, again));
    for (const auto value : {&Options::autoStart, &Options::recoveryData, &Options::autoHttpd})
        require(again.*value == options.*value);
}

void changeLanguage(const QString &path)
{
    QString language;
    readLanguageFile(path, language);
    const QString other = QLatin1String(language == QLatin1String("zh") ? "en" : "zh");
    require(bool(updateLanguageFile(path, other)));
    require(readLanguageFile(path, language) && language == other);
}

void changePort(const QString &path)
{
    const HttpdPort setting = readHttpdPort(path);
    require(setting.portText.isEmpty() || setting.portText.toInt() == setting.port);
    const bool useDefault = setting.policy == HttpdPort::Policy::Default;
    require(bool(writeHttpdPort(path, useDefault, setting.portText)));
    const HttpdPort again = readHttpdPort(path);
    require(again.policy == (useDefault ? HttpdPort::Policy::Default : HttpdPort::Policy::Custom));
    require(again.portText == setting.portText);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    static const QString path = folder.filePath(QStringLiteral("settings.xml"));
    const auto bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    for (const auto change : {changeOptions, changeLanguage, changePort}) {
        write(path, bytes);
        change(path);
    }
    write(path, bytes);
    languageHint(path);
    return 0;
}
