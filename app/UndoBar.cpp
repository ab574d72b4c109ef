#include "app/UndoBar.h"

#include "storage/DataMgr.h"
#include "view/ContactView.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTextEdit>

namespace {

// In the portable spelling.
constexpr char undoKey[] = "Ctrl+Z";
constexpr char redoKey[] = "Ctrl+Shift+Z";
constexpr char otherRedoKey[] = "Ctrl+Y";

QKeySequence keys(const char *portable)
{
    return QKeySequence(QLatin1String(portable), QKeySequence::PortableText);
}

/// Whether the focus is where these keys undo typing.
bool isTyping()
{
    const QWidget *const focus = QApplication::focusWidget();
    const auto *const line = qobject_cast<const QLineEdit *>(focus);
    const auto *const text = qobject_cast<const QTextEdit *>(focus);
    return (line && !line->isReadOnly()) || (text && !text->isReadOnly());
}

/// The MAC of the only device in `rows`; empty unless there is exactly one.
QString macOfOne(const DeviceRows &rows)
{
    return rows.size() == 1 ? rows.infoAt(0).mac : QString();
}

QString withReplaced(const QString &text, int replaced)
{
    return replaced == 0 ? text : UndoBar::tr("%1, %2 replaced").arg(text).arg(replaced);
}

QString textOf(const ListChange &change)
{
    const int count = change.added + change.replaced;
    switch (change.kind) {
    case ListChange::Kind::Add:
        if (change.after.size() == 1)
            return (change.replaced == 0 ? UndoBar::tr("Added %1") : UndoBar::tr("Replaced %1"))
                .arg(macOfOne(change.after));
        return withReplaced(UndoBar::tr("%1 devices added").arg(count), change.replaced);
    case ListChange::Kind::Edit:
        // The device may have been given another's MAC, which changes more than this one row.
        return change.before.size() == 1 && change.after.size() == 1
                   ? UndoBar::tr("Changed %1").arg(macOfOne(change.after))
                   : UndoBar::tr("A device changed, another replaced");
    case ListChange::Kind::Delete:
        return UndoBar::tr("Deleted %1").arg(macOfOne(change.before));
    case ListChange::Kind::Clear:
        return UndoBar::tr("All devices deleted: %1").arg(change.before.size());
    case ListChange::Kind::Import:
    case ListChange::Kind::ImportCleared:
        return count == 1 && change.after.size() == 1
                   ? UndoBar::tr("Imported %1").arg(macOfOne(change.after))
                   : withReplaced(UndoBar::tr("%1 devices imported").arg(count), change.replaced);
    }
    return {};
}

} // namespace

UndoBar::UndoBar(DataMgr &dataMgr, ContactView &view, QWidget *parent)
    : QWidget(parent)
    , m_dataMgr(dataMgr)
    , m_view(view)
    , m_label(new QLabel(this))
    , m_button(new QPushButton(this))
{
    m_label->setObjectName(QStringLiteral("undoLabel"));
    m_label->setTextFormat(Qt::PlainText);
    m_button->setObjectName(QStringLiteral("undoButton"));
    m_button->setProperty("class", QStringLiteral("UndoButton"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_label);
    row->addWidget(m_button);
    hide();

    addKey(undoKey, &UndoBar::undoByKey);
    addKey(redoKey, &UndoBar::redoByKey);
    addKey(otherRedoKey, &UndoBar::redoByKey);
    connect(m_button, &QPushButton::clicked, this, &UndoBar::onClicked);
    connect(&m_dataMgr, &DataMgr::historyChanged, this, &UndoBar::onHistoryChanged);
}

void UndoBar::addKey(const char *key, void (UndoBar::*step)())
{
    auto *const shortcut = new QShortcut(keys(key), window());
    connect(shortcut, &QShortcut::activated, this, step);
}

void UndoBar::undoByKey()
{
    if (!isTyping())
        m_dataMgr.undo();
}

void UndoBar::redoByKey()
{
    if (!isTyping())
        m_dataMgr.redo();
}

void UndoBar::onHistoryChanged()
{
    const ListHistory &history = m_dataMgr.history();
    if (history.latest() == ListHistory::Latest::Nothing) {
        hide();
    } else if (history.latest() == ListHistory::Latest::Undone) {
        const ListChange &change = *history.toRedo();
        show(tr("Undone: %1").arg(textOf(change)), tr("Redo"),
             keys(redoKey).toString(QKeySequence::NativeText));
        if (change.dropsList())
            m_view.returnToLostPlace();
        else
            showRestored(change.row, change.before);
    } else {
        const ListChange &change = *history.toUndo();
        show(textOf(change), tr("Undo"), keys(undoKey).toString(QKeySequence::NativeText));
        if (history.latest() == ListHistory::Latest::Redone)
            showRestored(change.row, change.after);
    }
}

/// Makes the first of the restored rows, if any, the current one.
void UndoBar::showRestored(int first, const DeviceRows &rows)
{
    if (rows.size() > 0)
        m_view.showGroupContacts(first, first);
}

/// `text` cut to what the bar can show: a MAC from an imported list may be any text.
QString UndoBar::shortened(const QString &text) const
{
    constexpr int longestPx = 480;
    constexpr int longest = 500; // characters to measure
    return m_label->fontMetrics().elidedText(text.left(longest).simplified(), Qt::ElideRight,
                                             longestPx);
}

void UndoBar::show(const QString &text, const QString &button, const QString &key)
{
    m_label->setText(shortened(text));
    m_button->setText(button);
    m_button->setToolTip(key);
    m_button->setAccessibleDescription(m_label->text());
    setVisible(true);
}

void UndoBar::onClicked()
{
    // The second click of a double click would redo what the first has undone.
    const bool again =
        m_sinceClick.isValid() && m_sinceClick.elapsed() < QApplication::doubleClickInterval();
    m_sinceClick.start();
    if (again)
        return;
    if (m_dataMgr.history().latest() == ListHistory::Latest::Undone)
        m_dataMgr.redo();
    else
        m_dataMgr.undo();
}
