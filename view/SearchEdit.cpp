#include "view/SearchEdit.h"

#include "view/ContactModel.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <array>

namespace {

constexpr int magnifierSize = 12;
constexpr int magnifierMargin = 5;
constexpr int textMargin = 7; ///< of frame, padding and line edit, on each side

} // namespace

SearchEdit::SearchEdit(int index, QWidget *parent)
    : QLineEdit(parent)
    , m_index(index)
    , m_magnifier(QStringLiteral("./resource/search.png"))
{
    // The box over the numbers is too narrow for a clear button beside five digits.
    setClearButtonEnabled(columnOf(index) != ContactModel::Number);
    connect(this, &QLineEdit::textChanged, this, &SearchEdit::onSearchEditChanged);
    connect(this, &QLineEdit::returnPressed, this, &SearchEdit::listWanted);
}

int SearchEdit::columnOf(int index)
{
    static constexpr std::array<int, boxCount> columns = {
        ContactModel::Mac,          ContactModel::Product,   ContactModel::SipServer,
        ContactModel::FirstAccount, ContactModel::SipUserId, ContactModel::Number,
        ContactModel::City,         ContactModel::Company,   ContactModel::Department,
    };
    static_assert(columns.back() != ContactModel::Number, "each text column has a box");
    return index >= 0 && index < boxCount ? columns[static_cast<std::size_t>(index)]
                                          : static_cast<int>(ContactModel::Number);
}

void SearchEdit::clearSilently()
{
    // Signals are not blocked: the clear button needs textChanged().
    m_silent = true;
    clear();
    m_silent = false;
}

void SearchEdit::onSearchEditChanged(const QString &text)
{
    if (!m_silent)
        emit searchTextChanged(m_index, text);
}

bool SearchEdit::event(QEvent *event)
{
    const bool handled = QLineEdit::event(event);
    // On some desktops Ctrl+D and Ctrl+E edit a line, and a line edit keeps them. Here they belong
    // to the buttons above the list, which delete all devices and export.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto &press = *static_cast<const QKeyEvent *>(event);
        if (press.modifiers() == Qt::ControlModifier &&
            (press.key() == Qt::Key_D || press.key() == Qt::Key_E))
            event->ignore();
    }
    return handled;
}

void SearchEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
        clear();
        event->accept();
        return;
    }
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (event->key() == Qt::Key_Down && modifiers == Qt::NoModifier) {
        emit listWanted();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void SearchEdit::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    // The magnifier is no action of the line edit: an action would keep its room in a filled box,
    // and the narrow boxes have none to spare.
    if (!text().isEmpty() ||
        fontMetrics().horizontalAdvance(placeholderText()) + 2 * textMargin + magnifierSize >
            width())
        return;
    const QRect place(width() - magnifierMargin - magnifierSize, (height() - magnifierSize) / 2,
                      magnifierSize, magnifierSize);
    QPainter painter(this);
    m_magnifier.paint(&painter, QStyle::visualRect(layoutDirection(), rect(), place));
}
