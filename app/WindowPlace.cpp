#include "app/WindowPlace.h"

#include "model/SettingsFile.h"
#include "widgets/ScreenRoom.h"

#include <QDomDocument>
#include <QMainWindow>
#include <QScreen>

namespace {

constexpr QSize firstSize(1200, 760);
/// The smallest useful size: the content scrolls in it.
constexpr QSize smallestSize(560, 280);

QString elementName()
{
    return QStringLiteral("Geometry");
}

} // namespace

WindowPlace::WindowPlace(QMainWindow &window, const QString &filePath)
    : QObject(&window)
    , m_window(window)
    , m_filePath(filePath)
{
    const QRect room = screenRoom(window);
    window.setMinimumSize(smallestSize.boundedTo(room.size()));
    QDomDocument document;
    if (SettingsFile::read(m_filePath, QIODevice::ReadOnly, document))
        m_stored = document.documentElement().firstChildElement(elementName()).text();
    if (!window.restoreGeometry(QByteArray::fromBase64(m_stored.toLatin1()))) {
        QRect place(QPoint(), firstSize);
        place.moveCenter(room.center());
        window.setGeometry(pulledInto(room, place));
    } else if (!window.isMaximized() &&
               !window.screen()->availableGeometry().contains(window.geometry())) {
        // The screen was larger then.
        window.setGeometry(pulledInto(screenRoom(window), window.geometry()));
    }
}

void WindowPlace::save()
{
    const QString place = QString::fromLatin1(m_window.saveGeometry().toBase64());
    if (place != m_stored && SettingsFile::create(m_filePath, {{elementName(), place}}))
        m_stored = place;
}
