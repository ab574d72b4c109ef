// The user's autostart entry of the desktop.
#include "app/AutoStart.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

/// `argument` as a desktop entry has it in a command line: quoted, "%" doubled against field codes,
/// and then escaped like every text of such a file.
QString execArgument(const QString &argument)
{
    QString quoted;
    for (const QChar c : argument) {
        if (QStringLiteral("\"`$\\").contains(c))
            quoted += QLatin1Char('\\');
        quoted += c;
        if (c == QLatin1Char('%'))
            quoted += c;
    }
    quoted.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    quoted.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

} // namespace

namespace AutoStart {

QString place()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/autostart/VlManager.desktop");
}

WriteResult set(const QString &programPath, bool on)
{
    const QString path = place();
    QDir().mkpath(QFileInfo(path).path());
    // A hidden entry counts as none. Removing the file instead would uncover an entry of the same
    // name that an administrator may have installed for everybody.
    const QString entry =
        QStringLiteral("[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Velloran Device Management Tool\n"
                       "Exec=%1\n"
                       "Terminal=false\n"
                       "Hidden=%2\n")
            .arg(execArgument(programPath), on ? QStringLiteral("false") : QStringLiteral("true"));
    return writeWholeFile(path, entry.toUtf8());
}

} // namespace AutoStart
