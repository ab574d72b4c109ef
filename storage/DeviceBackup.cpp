#include "storage/DeviceBackup.h"

#include "model/ContactFields.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>

namespace {

constexpr int keptBackups = 30;
const QString lineEnd = QStringLiteral("\r\n");

/// Files of the user's own stand in the folder as well.
bool isBackup(const QString &fileName)
{
    static const QRegularExpression name(QStringLiteral("^devices-\\d{8}-\\d{6}(-\\d+)?\\.csv$"));
    return name.match(fileName).hasMatch();
}

QString quotedWhereNeeded(const QString &field)
{
    const bool needsQuotes = std::any_of(field.begin(), field.end(), [](QChar character) {
        return character == QLatin1Char(',') || character == QLatin1Char('"');
    });
    if (!needsQuotes)
        return field;
    QString doubled = field;
    doubled.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + doubled + QLatin1Char('"');
}

} // namespace

DeviceBackup::DeviceBackup(const QString &directory)
    : m_folder(directory + QLatin1String("backup"))
{
}

bool DeviceBackup::write(const QList<ContactInfo> &devices)
{
    makeFolder();
    const QString path = freePath(QStringLiteral("devices"), QStringLiteral("csv"));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)) {
        m_errorText = file.errorString();
        return false;
    }
    file.write(csv(devices));
    if (!file.commit()) {
        m_errorText = file.errorString();
        return false;
    }
    m_lastPath = path;
    removeOldest();
    return true;
}

QByteArray DeviceBackup::csv(const QList<ContactInfo> &devices)
{
    QString text = englishCsvHeader() + lineEnd;
    for (const ContactInfo &device : devices) {
        QStringList fields;
        for (const ContactField &field : contactCsvFields())
            fields.append(quotedWhereNeeded(inOneLine(device.*field.member)));
        text += fields.join(QLatin1Char(',')) + lineEnd;
    }
    return text.toUtf8();
}

bool DeviceBackup::putAside(const QString &filePath)
{
    if (!QFile::exists(filePath))
        return true;
    const QFileInfo info(filePath);
    QFile file(filePath);
    if (!makeFolder()) {
        m_errorText = QDir::toNativeSeparators(m_folder);
        return false;
    }
    if (!file.rename(freePath(info.completeBaseName(), info.suffix()))) {
        m_errorText = file.errorString();
        return false;
    }
    return true;
}

bool DeviceBackup::makeFolder() const
{
    return QDir().mkpath(m_folder) &&
           QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// A file of the present time that is not there yet.
QString DeviceBackup::freePath(const QString &prefix, const QString &suffix) const
{
    const QString stem = m_folder + QLatin1Char('/') + prefix + QLatin1Char('-') +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString path = stem + QLatin1Char('.') + suffix;
    for (int i = 2; QFile::exists(path); ++i)
        path = QStringLiteral("%1-%2.%3").arg(stem).arg(i).arg(suffix);
    return path;
}

void DeviceBackup::removeOldest() const
{
    QDir folder(m_folder);
    const QString newest = QFileInfo(m_lastPath).fileName();
    QStringList others; // newest first, unless the clock was set back
    const QStringList files = folder.entryList(QDir::Files, QDir::Time);
    for (const QString &name : files) {
        if (name != newest && isBackup(name))
            others.append(name);
    }
    while (others.size() >= keptBackups)
        folder.remove(others.takeLast());
}
