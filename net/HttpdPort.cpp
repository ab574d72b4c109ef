#include "net/HttpdPort.h"

#include "model/DebugLog.h"
#include "model/SettingsFile.h"

#include <QBuffer>
#include <QFile>
#include <QXmlStreamWriter>

namespace {

HttpdPort::Policy policyOf(int useDefault)
{
    switch (useDefault) {
    case 0:
        return HttpdPort::Policy::Custom;
    case 1:
        return HttpdPort::Policy::Default;
    default:
        return HttpdPort::Policy::NoPort;
    }
}

} // namespace

HttpdPort readHttpdPort(const QString &path)
{
    HttpdPort setting;
    const std::optional<SettingsFile::Values> values = SettingsFile::readTexts(path);
    if (!values) {
        if (QFile::exists(path))
            qCDebug(debugLog) << "read port.xml error";
        return setting;
    }
    for (const SettingsFile::Value &value : *values) {
        bool isNumber = false;
        const int number = value.text.toInt(&isNumber);
        if (value.element == QLatin1String("useDefault")) {
            setting.policy = policyOf(number);
        } else if (value.element == QLatin1String("port")) {
            setting.port = number;
            setting.portText = isNumber ? value.text.trimmed() : QString();
        }
    }
    return setting;
}

WriteResult writeHttpdPort(const QString &path, bool useDefault, const QString &portText)
{
    QBuffer content;
    content.open(QIODevice::WriteOnly | QIODevice::Text); // with the system's line ends
    QXmlStreamWriter xml(&content);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("configHttpdPort"));
    xml.writeTextElement(QStringLiteral("useDefault"),
                         useDefault ? QStringLiteral("1") : QStringLiteral("0"));
    xml.writeTextElement(QStringLiteral("port"), portText);
    xml.writeEndElement();
    xml.writeEndDocument();
    return writeWholeFile(path, content.data());
}
