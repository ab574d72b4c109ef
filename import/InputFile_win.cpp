#include "import/InputFile.h"

#include <QDir>
#include <QFileInfo>

#include <windows.h>

std::FILE *openInputFile(const char *name)
{
    // The narrow functions know only the characters of one legacy code page.
    QString path = QDir::toNativeSeparators(QFileInfo(QString::fromUtf8(name)).absoluteFilePath());
    // The system takes longer paths only in this form.
    if (path.size() >= MAX_PATH && !path.startsWith(QLatin1String("\\\\")))
        path.prepend(QLatin1String("\\\\?\\"));
    // Not as text: text mode would end the file at the first byte 0x1A.
    return _wfopen(path.toStdWString().c_str(), L"rb");
}
