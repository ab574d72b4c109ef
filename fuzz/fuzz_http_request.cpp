// Reads any bytes as a phone's HTTP request. A file name that the program takes for safe must name
// a file directly in the served folder.
#include "fuzz/FuzzTarget.h"
#include "net/HttpRequest.h"

#include <QByteArray>
#include <QDir>
#include <QList>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    HttpRequest request;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray &line : lines)
        request.addLine(QString::fromLatin1(line + '\n'));

    if (request.namesDocument() && request.hasSafeFileName()) {
        const QString path = QStringLiteral("/served/") + request.fileName;
        require(QDir::cleanPath(path) == path && path.count(QLatin1Char('/')) == 2);
        // Windows gives some of these characters a meaning, and drops a dot or a blank at the end.
        for (const QChar c : qAsConst(request.fileName))
            require(c.unicode() >= 0x20 && !QStringLiteral("<>:\"|?*\\").contains(c));
        require(!request.fileName.endsWith(QLatin1Char('.')) &&
                !request.fileName.endsWith(QLatin1Char(' ')));
    }
    return 0;
}
