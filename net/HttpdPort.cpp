#include "net/HttpdPort.h"

#include "model/DebugLog.h"

#include <QFile>
#include <QXmlStreamReader>

namespace {

/// The file is a few lines; of anything larger only the start is looked at.
constexpr qint64 maxFileSize = qint64(64) * 1024;

/// The value that the element at which the reader stands carries, or null for any other token.
int *valueAt(const QXmlStreamReader &xml, HttpdPort &setting)
{
    if (!xml.isStartElement())
        return nullptr;
    if (xml.name() == QLatin1String("useDefault"))
        return &setting.useDefault;
    return xml.name() == QLatin1String("port") ? &setting.port : nullptr;
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
        int *value = valueAt(xml, setting);
        xml.readNext();
        if (value && xml.isCharacters())
            *value = xml.text().toInt();
    }
    return setting;
}
