#include "net/HttpdPort.h"

#include "model/DebugLog.h"

#include <QBuffer>
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

/// The file is a few lines; of anything larger only the start is looked at.
constexpr qint64 maxFileSize = qint64(64) * 1024;

void takeValue(const QString &element, const QString &text, HttpdPort &setting)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (element == QLatin1String("useDefault")) {
        setting.useDefault = number;
    } else if (element == QLatin1String("port")) {
        setting.port = number;
        setting.portText = isNumber ? text.trimmed() : QString();
    }
}

} // namespace

HttpdPort readHttpdPort(const QString &path)
{
    HttpdPort setting;
    QFile file(path);
    if (!file.exists())
        return setting;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qCDebug(debugLog) << "read port.xml error";
        return setting;
    }

    QXmlStreamReader xml(file.read(maxFileSize));
    while (!xml.atEnd()) {
        const QString element = xml.isStartElement() ? xml.name().toString() : QString();
        xml.readNext();
        if (xml.isCharacters())
            takeValue(element, xml.text().toString(), setting);
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
