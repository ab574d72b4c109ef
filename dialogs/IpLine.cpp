#include "dialogs/IpLine.h"

#include "dialogs/IpPart.h"
#include "model/DebugLog.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Grid.h"
#include "widgets/Modal.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

#include <algorithm>

namespace {

constexpr int octetCount = 4;
constexpr int macByteCount = 6;
// Wide enough for "255" and "DD" with the frame and the padding of a style sheet.
constexpr int octetWidth = 52;
constexpr int macByteWidth = 40;
constexpr int separatorWidth = 12;

} // namespace

IpLine::IpLine(Form form, QWidget *parent)
    : QWidget(parent)
    , m_form(form)
    , m_note(new ElidedLabel)
{
    const bool isMac = form == Form::Mac;
    // Addresses are read from left to right in every language.
    setLayoutDirection(Qt::LeftToRight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto *layout = new QHBoxLayout(this);
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, 0, 0);

    const int count = isMac ? macByteCount : octetCount;
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            auto *label = new QLabel(separator());
            label->setProperty("class", QStringLiteral("IpLineSeparator"));
            label->setAlignment(Qt::AlignCenter);
            label->setFixedWidth(separatorWidth);
            layout->addWidget(label);
        }
        auto *part = new IpPart(isMac ? AddressSegment::MacByte : AddressSegment::Octet, this);
        part->setObjectName(QStringLiteral("segment%1IpPart").arg(i + 1));
        part->setFixedWidth(isMac ? macByteWidth : octetWidth);
        layout->addWidget(part);
        m_parts.append(part);
        connect(part, &QLineEdit::textEdited, this, [this] { m_userEdited = true; });
        connect(part, &QLineEdit::textChanged, this, &IpLine::updateNote);
        connect(part, &IpPart::refused, this, &IpLine::refused);
        part->installEventFilter(this);
    }
    for (int i = 0; i < count; ++i)
        m_parts[i]->setNeighbours(m_parts.value(i - 1), m_parts.value(i + 1));

    m_note->setObjectName(QStringLiteral("noteLabel"));
    m_note->setProperty("class", QStringLiteral("IpLineNoteLabel"));
    m_note->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_note->hide();
    layout->addSpacing(gridPx);
    layout->addWidget(m_note, 1);
    layout->addStretch();
    setFocusProxy(m_parts.first());
}

bool IpLine::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        updateNote();
    else if (event->type() == QEvent::KeyPress && isToldByReturn(*static_cast<QKeyEvent *>(event)))
        return true;
    return QWidget::eventFilter(watched, event);
}

/// The first Return reports an incomplete IP address that is not marked yet, instead of saving it
/// unnoticed. An incomplete MAC address needs no report here, as a save refuses it.
bool IpLine::isToldByReturn(const QKeyEvent &key)
{
    const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (!isReturn || m_form == Form::Mac || !isIncomplete())
        return false;
    if (m_marked && !key.isAutoRepeat())
        return false;
    m_marked = true;
    updateNote();
    emit refused(tr("Incomplete address. Press Enter again to save it as it is."));
    return true;
}

QChar IpLine::separator() const
{
    return QLatin1Char(m_form == Form::Mac ? ':' : '.');
}

QString IpLine::joined() const
{
    QStringList pieces;
    for (const IpPart *part : m_parts)
        pieces.append(part->text());
    return pieces.join(separator());
}

bool IpLine::isAllEmpty() const
{
    return std::all_of(m_parts.begin(), m_parts.end(),
                       [](const IpPart *part) { return part->text().isEmpty(); });
}

QString IpLine::text() const
{
    if (isAllEmpty()) {
        qCDebug(debugLog) << (m_form == Form::Mac ? "mac is empty." : "ip is empty");
        return QString();
    }
    // Only logged: 0.0.0.0 may be the stored text, and it stays as it is shown.
    if (m_form == Form::Ip && m_parts.first()->text() == QLatin1String("0"))
        qCDebug(debugLog) << " the first part of the ipaddressn can not be 0";
    return joined();
}

void IpLine::setText(const QString &text)
{
    QStringList pieces = text.split(separator());
    if (pieces.size() == 1) {
        const QStringList whole = AddressSegment::piecesOfAddress(m_parts.first()->kind(), text);
        if (!whole.isEmpty())
            pieces = whole;
    }
    const int maxLength = m_parts.first()->maxLength();
    const bool tooLong =
        std::any_of(pieces.begin(), pieces.end(),
                    [maxLength](const QString &piece) { return piece.size() > maxLength; });
    m_fits = !tooLong && pieces.size() <= m_parts.size();
    if (tooLong)
        pieces.clear();
    for (int i = 0; i < m_parts.size(); ++i) {
        m_parts[i]->setText(pieces.value(i));
        // Typing overwrites a byte from its first digit on.
        if (m_form == Form::Mac)
            m_parts[i]->setCursorPosition(0);
    }
    m_given = text;
    m_shown = joined();
    m_userEdited = false;
    m_marked = false;
    updateNote();
}

bool IpLine::isUnchanged() const
{
    return !m_shown.isNull() && !m_userEdited && joined() == m_shown;
}

QString IpLine::value() const
{
    const QString current = text();
    return isUnchanged() ? m_given : current;
}

/// Whether some segments are empty and others are not. The MAC address of a new device, which is
/// incomplete at first, counts only once the user has edited it.
bool IpLine::isIncomplete() const
{
    const bool hasGap = std::any_of(m_parts.begin(), m_parts.end(),
                                    [](const IpPart *part) { return part->text().isEmpty(); });
    return hasGap && !isAllEmpty() && (m_form == Form::Ip || m_userEdited);
}

void IpLine::updateNote()
{
    // An address is not marked while it is being typed for the first time.
    m_marked = isIncomplete() && (m_marked || !isAncestorOf(QApplication::focusWidget()));
    QString note;
    if (!m_fits && isUnchanged())
        note = tr("Stored: %1").arg(m_given);
    else if (m_marked)
        note = tr("Incomplete address");
    m_note->setVisible(!note.isEmpty());
    m_note->setFullText(note);
    setAccessibleDescription(note);
}

void IpLine::setLabelText(const QString &label)
{
    setAccessibleName(label);
    for (int i = 0; i < m_parts.size(); ++i)
        m_parts[i]->setAccessibleName(tr("%1 %2 of %3").arg(label).arg(i + 1).arg(m_parts.size()));
}

void IpLine::focusPart(int index)
{
    m_parts.at(index)->setFocus(Qt::OtherFocusReason);
    m_parts.at(index)->selectAll();
}

void IpLine::focusFirstEmptyPart()
{
    const auto empty = std::find_if(m_parts.begin(), m_parts.end(),
                                    [](const IpPart *part) { return part->text().isEmpty(); });
    focusPart(empty == m_parts.end() ? 0 : static_cast<int>(empty - m_parts.begin()));
}

void IpLine::disPlayInfo()
{
    Modal::message(this, QMessageBox::Information, tr("information"), text());
}
