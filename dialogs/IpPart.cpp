#include "dialogs/IpPart.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QIntValidator>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QRegularExpressionValidator>

#include <algorithm>
#include <utility>

namespace {

constexpr int macByteLength = 2;
constexpr int octetLength = 3;
constexpr int fourCharacters = 4;
// The greatest value that a third digit can still follow.
constexpr int greatestOpenOctet = 25;

/// QIntValidator lets pass what may still become a number in range: a sign, the language's digit
/// grouping, and 256 to 999. In an octet none of them is on the way to anything.
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

QStringList macPieces(const QString &address)
{
    static const QRegularExpression pattern(
        QStringLiteral("\\A[0-9A-Fa-f]{2}([:-]?)(?:[0-9A-Fa-f]{2}\\1){4}[0-9A-Fa-f]{2}\\z"));
    const QRegularExpressionMatch match = pattern.match(address);
    if (!match.hasMatch())
        return {};
    const int step = macByteLength + match.capturedLength(1);
    QStringList pieces;
    for (int start = 0; start < address.size(); start += step)
        pieces.append(address.mid(start, macByteLength));
    return pieces;
}

QStringList octetPieces(const QString &address)
{
    static const QRegularExpression pattern(QStringLiteral("\\A[0-9]{1,3}(?:\\.[0-9]{1,3}){3}\\z"));
    if (!pattern.match(address).hasMatch())
        return {};
    const QStringList pieces = address.split(QLatin1Char('.'));
    const bool inRange = std::all_of(pieces.begin(), pieces.end(),
                                     [](const QString &piece) { return piece.toInt() <= 255; });
    return inRange ? pieces : QStringList();
}

} // namespace

IpPart::IpPart(int kind, QWidget *parent)
    : QLineEdit(parent)
    , m_kind(kind)
{
    setAlignment(Qt::AlignCenter);
    if (kind == Octet) {
        setMaxLength(octetLength);
        setValidator(new OctetValidator(this));
        setInputMethodHints(Qt::ImhDigitsOnly);
        setText(QStringLiteral("0"));
    } else if (kind == MacByte) {
        setMaxLength(macByteLength);
        setValidator(new QRegularExpressionValidator(
            QRegularExpression(QStringLiteral("^[0-9A-Fa-f]+$")), this));
        setInputMethodHints(Qt::ImhLatinOnly | Qt::ImhNoPredictiveText | Qt::ImhUppercaseOnly);
        setText(QStringLiteral("FF"));
        // Typing overwrites from the cursor on; at the end nothing would be left to overwrite.
        setCursorPosition(0);
    }
    m_text = text();

    // QLineEdit reports an edit of the user's just before it reports the change.
    connect(this, &QLineEdit::textEdited, this, [this] {
        m_userEdit = true;
        m_lineEdited = true;
    });
    connect(this, &QLineEdit::textChanged, this, &IpPart::textIpvCheck);
    connect(this, &IpPart::sendMsg, this, &IpPart::macModify);
}

void IpPart::setNeighbours(IpPart *previous, IpPart *next)
{
    m_previous = previous;
    m_next = next;
}

QStringList IpPart::piecesOfAddress(int kind, const QString &address)
{
    if (kind == MacByte)
        return macPieces(address);
    return kind == Octet ? octetPieces(address) : QStringList();
}

void IpPart::textIpvCheck(const QString &changed)
{
    const bool byUser = std::exchange(m_userEdit, false);
    const bool grew = changed.size() >= m_text.size();
    m_text = changed;
    if (!byUser)
        return;
    if (m_kind == Octet)
        checkOctet(changed, grew);
    else if (m_kind == MacByte)
        checkMacByte(changed);
    else if (changed.size() >= fourCharacters && grew && m_next)
        m_next->enterSelected();
}

void IpPart::checkOctet(const QString &changed, bool grew)
{
    bool isNumber = false;
    const int value = changed.toInt(&isNumber);
    if (changed.size() < 2 || !isNumber)
        return;
    const bool full = changed.size() == octetLength;
    const QString plain = QString::number(value);
    if (plain != changed) {
        const int position = cursorPosition() - (changed.size() - plain.size());
        setText(plain);
        setCursorPosition(std::max(position, 0));
    }
    // Who deletes the 1 of 192 is still busy here.
    if (grew && m_next && (full || value > greatestOpenOctet))
        m_next->enterSelected();
}

void IpPart::checkMacByte(const QString &changed)
{
    const QString digits = changed.toUpper();
    const int position = cursorPosition();
    if (digits.size() == 1 && position == 0)
        setText(QLatin1Char('F') + digits);
    else if (digits.size() == 1)
        setText(digits + QLatin1Char('F'));
    else if (digits != changed)
        setText(digits);
    setCursorPosition(position);
}

void IpPart::macModify(const QString &keyText)
{
    if (m_keyTaken || m_kind != MacByte || text().size() != macByteLength)
        return;
    const int position = cursorPosition();
    const QString digit = keyText.toUpper();
    if (position >= macByteLength || digit.size() != 1 ||
        !QStringLiteral("ABCDEFacbcdef0123456789").contains(digit))
        return;
    setTextAsUser(text().replace(position, 1, digit));
    if (position == 0)
        setCursorPosition(1);
    else if (m_next)
        m_next->enterAt(0);
}

void IpPart::paste()
{
    if (!fillRow(QGuiApplication::clipboard()->text().trimmed()))
        QLineEdit::paste();
}

void IpPart::keyPressEvent(QKeyEvent *event)
{
    // A shortcut may carry a letter as its text; that is not typing.
    const bool isCommand =
        (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
    m_lineEdited = false;
    if (event->matches(QKeySequence::Paste))
        paste();
    else if (isCommand || !moveByKey(*event))
        QLineEdit::keyPressEvent(event);

    // The line edit has put the key into a segment with room for it; reporting the key must not
    // make it count a second time for the filler behind the cursor.
    const bool typed = m_lineEdited && !isCommand && !event->text().isEmpty() &&
                       event->text().at(0).isLetterOrNumber();
    m_keyTaken = m_lineEdited || isCommand;
    emit sendMsg(event->text());
    m_keyTaken = false;

    // A digit typed over the selected second one completes the byte like an overwritten one.
    if (typed && m_kind == MacByte && m_next && text().size() == macByteLength &&
        cursorPosition() == macByteLength)
        m_next->enterAt(0);
}

bool IpPart::moveByKey(const QKeyEvent &event)
{
    if (event.modifiers() & Qt::ShiftModifier)
        return false;
    if (event.text() == QLatin1String(".") && m_next && !text().isEmpty() && !hasSelectedText()) {
        if (m_next->m_kind == MacByte)
            m_next->enterAt(0);
        else
            m_next->enterSelected();
        return true;
    }
    if (event.key() == Qt::Key_Backspace && m_previous && text().isEmpty()) {
        m_previous->enterAt(2);
        return true;
    }
    if (event.key() == Qt::Key_Left && m_previous && cursorPosition() == 0) {
        m_previous->enterAt(m_previous->text().size());
        return true;
    }
    if (event.key() == Qt::Key_Right && m_next && cursorPosition() == text().size()) {
        m_next->enterAt(0);
        return true;
    }
    return false;
}

bool IpPart::fillRow(const QString &address)
{
    const QStringList pieces = piecesOfAddress(m_kind, address);
    QVector<IpPart *> row;
    IpPart *part = this;
    while (part->m_previous)
        part = part->m_previous;
    for (; part; part = part->m_next)
        row.append(part);
    if (pieces.isEmpty() || pieces.size() != row.size())
        return false;
    for (int i = 0; i < row.size(); ++i) {
        const QString piece =
            m_kind == Octet ? QString::number(pieces.at(i).toInt()) : pieces.at(i).toUpper();
        row.at(i)->setTextAsUser(piece);
    }
    row.last()->enterAt(row.last()->text().size());
    return true;
}

void IpPart::setTextAsUser(const QString &changed)
{
    setText(changed);
    emit textEdited(changed);
    // The change is over, and it was complete: nothing is to be checked or filled.
    m_userEdit = false;
}

void IpPart::focusInEvent(QFocusEvent *event)
{
    m_clickedInto = event->reason() == Qt::MouseFocusReason;
    QLineEdit::focusInEvent(event);
}

void IpPart::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    // A click behind the last character of a full segment would leave no way to type.
    if (std::exchange(m_clickedInto, false) && !hasSelectedText())
        selectAll();
}

void IpPart::enterSelected()
{
    setFocus(Qt::OtherFocusReason);
    selectAll();
}

void IpPart::enterAt(int position)
{
    setFocus(Qt::OtherFocusReason);
    setCursorPosition(position);
}
