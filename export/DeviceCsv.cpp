#include "export/DeviceCsv.h"

#include "model/ContactFields.h"

#include <QFile>
#include <QTextCodec>
#include <QTextStream>

bool writeDeviceCsv(const QString &codecName, const QString &filePath,
                    const QList<ContactInfo> &devices, const QString &header, const QString &rowEnd)
{
    QTextCodec *const codec = QTextCodec::codecForName(codecName.toUtf8());
    if (!codec || !codec->canEncode(header) || filePath.isEmpty())
        return false;
    QFile file(filePath + QLatin1String(".csv"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QTextStream stream(&file);
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
    return stream.status() == QTextStream::Ok && file.flush() && file.error() == QFile::NoError;
}
