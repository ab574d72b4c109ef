#include "app/FileDrop.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

#include <utility>

FileDrop::FileDrop(QWidget &window, std::function<bool()> isReady)
    : QObject(&window)
    , m_window(window)
    , m_isReady(std::move(isReady))
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
    // The text boxes would take the URL of a file as text.
    const auto edits = window.findChildren<QLineEdit *>();
    for (QLineEdit *const edit : edits) {
        if (edit->window() == &window)
            edit->installEventFilter(this);
    }
}

bool FileDrop::eventFilter(QObject *watched, QEvent *event)
{
    const bool isDrop = event->type() == QEvent::Drop;
    if (!isDrop && event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove)
        return false;
    auto &drop = static_cast<QDropEvent &>(*event);
    if (watched != &m_window && !drop.mimeData()->hasUrls())
        return false;
    const QString path = takenPath(drop);
    if (path.isEmpty()) {
        drop.ignore();
        return true;
    }
    // The file is copied: after a move, the other program would remove it.
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (isDrop) {
        m_window.activateWindow();
        emit dropped(path);
    }
    return true;
}

/// The path of the dropped file; empty if the drop is not accepted.
QString FileDrop::takenPath(const QDropEvent &event) const
{
    const QList<QUrl> urls = event.mimeData()->urls();
    if (urls.size() != 1 || !(event.possibleActions() & Qt::CopyAction) ||
        QApplication::activeModalWidget() || !m_isReady())
        return {};
    const QFileInfo file(urls.first().toLocalFile());
    const bool isCsv = file.suffix().compare(QLatin1String("csv"), Qt::CaseInsensitive) == 0;
    return isCsv && file.isFile() ? file.filePath() : QString();
}
