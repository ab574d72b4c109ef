#include "widgets/OpenWhereClosed.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHash>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

QHash<QString, QPoint> &places()
{
    static QHash<QString, QPoint> places;
    return places;
}

/// The screen may have become smaller, or have gone with its cable.
QPoint onScreen(QPoint place, const QSize &size)
{
    const QScreen *screen = QGuiApplication::screenAt(place);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect room = screen->availableGeometry();
    place.setX(std::max(std::min(place.x(), room.right() - size.width()), room.left()));
    place.setY(std::max(std::min(place.y(), room.bottom() - size.height()), room.top()));
    return place;
}

class PlaceKeeper : public QObject
{
public:
    explicit PlaceKeeper(QWidget &window)
        : QObject(&window)
        , m_window(window)
    {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const bool ours = watched == &m_window && !event->spontaneous();
        const QString name = m_window.objectName();
        if (ours && event->type() == QEvent::Show && places().contains(name))
            m_window.move(onScreen(places().value(name), m_window.frameGeometry().size()));
        else if (ours && event->type() == QEvent::Hide)
            places().insert(name, m_window.pos());
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget &m_window;
};

} // namespace

void openWhereClosed(QWidget &window)
{
    new PlaceKeeper(window);
}
