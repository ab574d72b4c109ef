#pragma once

// Tells whether everything in a window has its place.
#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>

// Only the platform's own interface can change the size of the offscreen screen.
#include <qpa/qwindowsysteminterface.h>

#include <QGuiApplication>
#include <QTest>

namespace Geometry {

inline void useScreen(const QSize &pixels)
{
    QScreen *const screen = QGuiApplication::primaryScreen();
    const QRect place(QPoint(), pixels);
    QWindowSystemInterface::handleScreenGeometryChange(screen, place, place);
    QTRY_COMPARE(screen->size(), (QSizeF(pixels) / screen->devicePixelRatio()).toSize());
}

/// Whether scrolling brings the widget into view: it lies in the viewport of a scroll area, or is a
/// label or box that moves with a column of the list.
inline bool isScrolled(const QWidget &widget)
{
    const QWidget *const parent = widget.parentWidget();
    const auto *const area = qobject_cast<const QAbstractScrollArea *>(parent->parentWidget());
    if (area && area->viewport() == parent)
        return true;
    const auto *const list =
        widget.window()->findChild<QTableView *>(QStringLiteral("contact_view"));
    return (parent->inherits("ContactTitle") || parent->inherits("SearchBar")) && list &&
           list->horizontalScrollBar()->maximum() > 0;
}

inline bool hasRoomForItsText(const QWidget &widget)
{
    if (const auto *const label = qobject_cast<const QLabel *>(&widget)) {
        return label->wordWrap() ? label->heightForWidth(label->width()) <= label->height()
                                 : QRect(QPoint(), label->size()).contains({{}, label->sizeHint()});
    }
    if (const auto *const edit = qobject_cast<const QLineEdit *>(&widget))
        return edit->fontMetrics().horizontalAdvance(edit->placeholderText()) < edit->width();
    if (const auto *const box = qobject_cast<const QComboBox *>(&widget))
        return box->fontMetrics().horizontalAdvance(box->currentText()) < box->width();
    if (const auto *const button = qobject_cast<const QToolButton *>(&widget);
        button && button->toolButtonStyle() == Qt::ToolButtonIconOnly)
        return true;
    // Some buttons are lower than their size hint, and still have room for their letters.
    return !qobject_cast<const QAbstractButton *>(&widget) ||
           (widget.sizeHint().width() <= widget.width() &&
            widget.fontMetrics().height() < widget.height());
}

/// Whether the widget slides or lies over others on purpose.
inline bool isCover(const QWidget &widget)
{
    return widget.inherits("SlidePage") || widget.inherits("LoadingWidget") ||
           widget.inherits("UserGuideControl") || widget.inherits("QSizeGrip");
}

/// Tells why a widget or its text is cut off or covered. Empty when all is well.
inline QString faultOf(const QWidget &widget)
{
    const QWidget &parent = *widget.parentWidget();
    if (!isScrolled(widget) && !parent.rect().contains(widget.geometry()))
        return QStringLiteral("outside its parent");
    // The clear button of a line edit has a fixed size.
    if (!qobject_cast<const QLineEdit *>(&parent) && !hasRoomForItsText(widget))
        return QStringLiteral("too small for its text");
    const auto siblings = parent.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *const sibling : siblings) {
        if (sibling != &widget && sibling->isVisible() && !sibling->isWindow() &&
            !isCover(*sibling) && !isCover(widget) &&
            sibling->geometry().intersects(widget.geometry()))
            return QStringLiteral("over ") + QLatin1String(sibling->metaObject()->className());
    }
    return QString();
}

/// The faults of all that is shown in `shown`, and of its window on the screen. A line for each.
inline QString faults(const QWidget &shown)
{
    QString found;
    const auto tell = [&found](const QWidget &widget, const QString &fault) {
        const QRect place = widget.geometry();
        found += QStringLiteral("\n  %1 \"%2\" at %3,%4 %5x%6: %7")
                     .arg(QLatin1String(widget.metaObject()->className()), widget.objectName())
                     .arg(place.x())
                     .arg(place.y())
                     .arg(place.width())
                     .arg(place.height())
                     .arg(fault);
    };
    const QWidget &window = *shown.window();
    if (!window.screen()->availableGeometry().contains(window.frameGeometry()))
        tell(window, QStringLiteral("off the screen"));
    const auto widgets = shown.findChildren<QWidget *>();
    for (const QWidget *const widget : widgets) {
        if (!widget->isVisible() || widget->window() != &window)
            continue;
        const QString fault = faultOf(*widget);
        if (!fault.isEmpty())
            tell(*widget, fault);
    }
    return found;
}

} // namespace Geometry
