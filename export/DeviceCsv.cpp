#include "export/DeviceCsv.h"

#include "model/ContactFields.h"
#include "model/WholeFile.h"

#include <QTextCodec>
#include <QTextStream>

bool writeDeviceCsv(const QString &codecName, const QString &filePath,
                    const QList<ContactInfo> &devices, const QString &header, const QString &rowEnd,
                    QString &reason)
{
    QTextCodec *const codec = QTextCodec::codecForName(codecName.toUtf8());
    if (!codec || !codec->canEncode(header) || filePath.isEmpty())
        return false;
    QByteArray content;
    QTextStream stream(&content, QIODevice::WriteOnly);
    stream.setCodec(codec);
    stream.setGenerateByteOrderMark(false);
    stream << header << QLatin1String("\r\n");
    for (const ContactInfo &device : devices) {
        const char *separator = "";
        for (const ContactField &field : contactCsvFields()) {
            stream << QLatin1String(separator) << device.*field.member;
            separator = ",";
        }
        stream << rowEnd;
    }
    stream.flush();
    const WriteResult result = writeWholeFile(filePath + QLatin1String(".csv"), content);
    reason = result.reason();
    return bool(result);
}
