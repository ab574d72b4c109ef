#include "widgets/OpenWhereClosed.h"

#include "widgets/ScreenRoom.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHash>
#include <QScreen>
#include <QWidget>

namespace {

QHash<QString, QPoint> &places()
{
    static QHash<QString, QPoint> places;
    return places;
}

/// `place` moved onto a screen: its own may have become smaller, or been unplugged.
QPoint onScreen(const QPoint &place, const QWidget &window)
{
    const QScreen *screen = QGuiApplication::screenAt(place);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return pulledInto(screen->availableGeometry(), QRect(place, sizeWithFrame(window))).topLeft();
}

class PlaceKeeper : public QObject
{
public:
    explicit PlaceKeeper(QWidget &window)
        : QObject(&window)
        , m_window(window)
    {
        window.installEventFilter(this);
        // The move comes before the system window is created: only until then is a position that of
        // the frame, which is not known before the window is shown.
        const auto place = places().constFind(window.objectName());
        if (place != places().constEnd())
            window.move(onScreen(*place, window));
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == &m_window && event->type() == QEvent::Hide && !event->spontaneous()) {
            places().insert(m_window.objectName(), m_window.pos());
            // A hidden window that has been moved is not centred when it is shown next.
            m_window.move(onScreen(m_window.pos(), m_window));
        }
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
