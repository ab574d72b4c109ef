#include "dialogs/IpPart.h"

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QIntValidator>
#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpressionValidator>
#include <QScopedValueRollback>

#include <algorithm>
#include <optional>
#include <utility>

using AddressSegment::Input;
using AddressSegment::MacByte;
using AddressSegment::Move;
using AddressSegment::Octet;
using AddressSegment::Refusal;

namespace {

/// QIntValidator accepts as intermediate what may still become a number in range: a sign, the digit
/// grouping of the language, and 256 to 999. None of these can become a valid octet.
class OctetValidator : public QIntValidator
{
public:
    explicit OctetValidator(QObject *parent)
        : QIntValidator(0, 255, parent)
    {
        setLocale(QLocale::c());
    }

    State validate(QString &input, int &position) const override
    {
        if (input.isEmpty())
            return Intermediate;
        const bool digitsOnly = std::all_of(input.cbegin(), input.cend(), [](QChar c) {
            return c >= QLatin1Char('0') && c <= QLatin1Char('9');
        });
        const bool accepted = digitsOnly && QIntValidator::validate(input, position) == Acceptable;
        return accepted ? Acceptable : Invalid;
    }
};

/// Whether a key is a shortcut, which may carry a letter as its text but types nothing. AltGr
/// types, and is Ctrl and Alt together on some systems.
bool isCommand(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers =
        event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return modifiers != 0 && modifiers != (Qt::ControlModifier | Qt::AltModifier);
}

/// The input that a key stands for; none if the line edit handles the key itself.
std::optional<Input> inputOf(const QKeyEvent &event)
{
    if (isCommand(event))
        return std::nullopt;
    const QString text = AddressSegment::plainText(event.text());
    if (text.size() == 1 && text.at(0).isPrint())
        return Input{Input::Type, text.at(0)};
    if (event.modifiers() & Qt::ShiftModifier)
        return std::nullopt;
    switch (event.key()) {
    case Qt::Key_Backspace:
        return Input{Input::Backspace, {}};
    case Qt::Key_Delete:
        return Input{Input::Delete, {}};
    case Qt::Key_Left:
        return Input{Input::Left, {}};
    case Qt::Key_Right:
        return Input{Input::Right, {}};
    default:
        return std::nullopt;
    }
}

} // namespace

IpPart::IpPart(int kind, QWidget *parent)
    : QLineEdit(parent)
    , m_kind(kind)
{
    setAlignment(Qt::AlignCenter);
    setMaxLength(AddressSegment::maxLength(kind));
    if (kind == Octet) {
        setValidator(new OctetValidator(this));
        setInputMethodHints(Qt::ImhDigitsOnly);
        setText(QStringLiteral("0"));
    } else if (kind == MacByte) {
        setValidator(new QRegularExpressionValidator(
            QRegularExpression(QStringLiteral("^[0-9A-Fa-f]+$")), this));
        setInputMethodHints(Qt::ImhLatinOnly | Qt::ImhNoPredictiveText | Qt::ImhUppercaseOnly);
        setText(QStringLiteral("FF"));
        // Typing overwrites from the cursor on; at the end there is nothing to overwrite.
        setCursorPosition(0);
    }
    m_length = text().size();

    // QLineEdit emits textEdited() just before textChanged().
    connect(this, &QLineEdit::textEdited, this, [this] {
        if (m_doing != Doing::Settled)
            m_doing = Doing::Editing;
    });
    connect(this, &QLineEdit::textChanged, this, &IpPart::textIpvCheck);
    connect(this, &IpPart::sendMsg, this, &IpPart::macModify);
}

void IpPart::setNeighbours(IpPart *previous, IpPart *next)
{
    m_previous = previous;
    m_next = next;
}

AddressSegment::State IpPart::state() const
{
    return {text(), cursorPosition(), std::max(selectionStart(), 0), selectionLength()};
}

void IpPart::textIpvCheck(const QString &changed)
{
    const bool grew = changed.size() >= std::exchange(m_length, changed.size());
    if (m_doing != Doing::Editing)
        return;
    m_doing = Doing::Nothing;
    take(AddressSegment::settle(m_kind, changed, cursorPosition(), grew));
}

/// Whether macModify(), which hears of each key, is to handle this character: the MAC segment is
/// full.
bool IpPart::overwrites(QChar character) const
{
    return m_kind == MacByte && !hasSelectedText() && text().size() == maxLength() &&
           cursorPosition() < maxLength() && !AddressSegment::isSeparator(character);
}

void IpPart::macModify(const QString &keyText)
{
    const QString typed = AddressSegment::plainText(keyText);
    if (m_doing != Doing::Settled && typed.size() == 1 && typed.at(0).isPrint() &&
        overwrites(typed.at(0)))
        enter({Input::Type, typed.at(0)});
}

void IpPart::keyPressEvent(QKeyEvent *event)
{
    const std::optional<Input> input = inputOf(*event);
    const bool byReport = input && input->action == Input::Type && overwrites(input->character);
    const bool walks = input && (input->action == Input::Left || input->action == Input::Right);
    if (event->matches(QKeySequence::Paste))
        paste();
    else if (!input || (walks && enter(*input) == this))
        QLineEdit::keyPressEvent(event);
    else if (!walks && !byReport)
        enter(*input);

    const QScopedValueRollback<Doing> doing(m_doing, byReport ? Doing::Nothing : Doing::Settled);
    emit sendMsg(event->text());
}

void IpPart::inputMethodEvent(QInputMethodEvent *event)
{
    const QString committed = event->commitString();
    QInputMethodEvent preedit(event->preeditString(), event->attributes());
    QLineEdit::inputMethodEvent(&preedit);
    event->accept();
    if (!committed.isEmpty())
        enterText(committed);
}

void IpPart::dropEvent(QDropEvent *event)
{
    setFocus(Qt::MouseFocusReason);
    m_doing = Doing::Nothing;
    setCursorPosition(cursorPositionAt(event->pos()));
    enterText(event->mimeData()->text());
    // A copy leaves the text in the field from which it was dragged.
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void IpPart::paste()
{
    enterText(QGuiApplication::clipboard()->text());
}

/// A whole address goes into all segments; any other text is entered as if it was typed.
void IpPart::enterText(const QString &entered)
{
    if (fillRow(entered))
        return;
    const QString plain = AddressSegment::plainText(entered).trimmed();
    int segments = 0;
    for (const IpPart *part = this; part; part = part->m_next)
        ++segments;
    // A text that fits only in part must not become part of an address.
    if (!AddressSegment::canBeTyped(m_kind, plain, segments)) {
        emit refused(tr("This text is no such address."));
        return;
    }
    IpPart *part = this;
    for (const QChar c : plain)
        part = part->enter({Input::Type, c});
}

bool IpPart::fillRow(const QString &address)
{
    const QStringList pieces = AddressSegment::piecesOfAddress(m_kind, address);
    QVector<IpPart *> row;
    IpPart *part = this;
    while (part->m_previous)
        part = part->m_previous;
    for (; part; part = part->m_next)
        row.append(part);
    if (pieces.isEmpty() || pieces.size() != row.size())
        return false;
    for (int i = 0; i < row.size(); ++i)
        row.at(i)->replaceText(pieces.at(i));
    row.last()->setFocus(Qt::OtherFocusReason);
    row.last()->setCursorPosition(pieces.last().size());
    return true;
}

IpPart *IpPart::enter(Input input)
{
    const AddressSegment::Result result = AddressSegment::apply(m_kind, state(), input);
    if (result.refusal != Refusal::None)
        emit refused(reasonFor(result.refusal));
    return take(result);
}

IpPart *IpPart::take(const AddressSegment::Result &result)
{
    if (result.text != text())
        replaceText(result.text);
    if (result.cursor >= 0)
        setCursorPosition(result.cursor);
    return moveOn(result.move);
}

/// Replaces the text like an edit of the user, which can be undone, without further checks.
void IpPart::replaceText(const QString &changed)
{
    const QScopedValueRollback<Doing> doing(m_doing, Doing::Settled);
    setSelection(0, text().size());
    if (changed.isEmpty())
        del();
    else
        insert(changed);
}

IpPart *IpPart::moveOn(Move move)
{
    const bool back = move == Move::PreviousEnd || move == Move::PreviousRest;
    IpPart *const neighbour = back ? m_previous : m_next;
    if (move == Move::Stay || !neighbour)
        return this;
    neighbour->setFocus(Qt::OtherFocusReason);
    switch (move) {
    case Move::NextSelected:
        neighbour->selectAll();
        break;
    case Move::PreviousEnd:
        neighbour->setCursorPosition(neighbour->text().size());
        break;
    case Move::PreviousRest:
        neighbour->setCursorPosition(2);
        break;
    default:
        neighbour->setCursorPosition(0);
    }
    return neighbour;
}

QString IpPart::reasonFor(Refusal refusal) const
{
    switch (refusal) {
    case Refusal::NoDigit:
        return m_kind == MacByte ? tr("A MAC address has the digits 0 to 9 and A to F.")
                                 : tr("An IP address has the digits 0 to 9.");
    case Refusal::TooLarge:
        return tr("No part of an IP address exceeds 255.");
    case Refusal::Full:
        return tr("This part is complete. Select it to type over it.");
    case Refusal::None:
        break;
    }
    return {};
}

void IpPart::focusInEvent(QFocusEvent *event)
{
    m_doing = event->reason() == Qt::MouseFocusReason ? Doing::ClickingInto : Doing::Nothing;
    QLineEdit::focusInEvent(event);
}

void IpPart::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    // A cursor behind the last character of a full segment would leave no way to type.
    if (m_doing == Doing::ClickingInto && !hasSelectedText())
        selectAll();
    m_doing = Doing::Nothing;
}
