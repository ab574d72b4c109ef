#pragma once

#include "dialogs/AddressSegment.h"

#include <QLineEdit>

/// One segment of an address: a line edit that passes the focus on to its neighbours as the user
/// types, so that a whole address is typed without a break. AddressSegment has the rules.
///
/// Only edits of the user are filled up, rewritten and move the focus. A text that the program sets
/// stays as it is and leaves the focus where it is.
class IpPart : public QLineEdit
{
    Q_OBJECT

public:
    /// `kind` is one of AddressSegment::Kind.
    explicit IpPart(int kind, QWidget *parent = nullptr);

    int kind() const { return m_kind; }

    /// Sets the segments to the left and right, null at the ends. They are not owned and must live
    /// as long as this one receives events.
    void setNeighbours(IpPart *previous, IpPart *next);

signals:
    /// The text of a pressed key; emitted at the end of its handling.
    void sendMsg(const QString &keyText);
    /// An input has no place here; `reason` tells why.
    void refused(const QString &reason);

public slots:
    /// Rewrites a text that the user changed, and moves the focus, as the kind asks. Does nothing
    /// for a change that the program made.
    void textIpvCheck(const QString &changed);
    /// Overwrites the digit at the cursor of a full MAC segment with `keyText`, the text of a key;
    /// any other character leaves the segment unchanged.
    void macModify(const QString &keyText);
    /// Pastes the clipboard; a whole address goes into all segments of the row. Hides
    /// QLineEdit::paste(), so that the context menu calls this function too.
    void paste();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    /// What is happening in this segment.
    enum class Doing {
        Nothing,
        Editing,      ///< the line edit itself has changed the text and is about to report it
        Settled,      ///< the current input has had its whole effect
        ClickingInto, ///< the mouse button that brought the focus is still down
    };

    AddressSegment::State state() const;
    bool overwrites(QChar character) const;
    /// Applies an input and returns the segment in which the user goes on.
    IpPart *enter(AddressSegment::Input input);
    void enterText(const QString &text);
    bool fillRow(const QString &address);
    IpPart *take(const AddressSegment::Result &result);
    IpPart *moveOn(AddressSegment::Move move);
    void replaceText(const QString &text);
    QString reasonFor(AddressSegment::Refusal refusal) const;

    const int m_kind;
    IpPart *m_next = nullptr;
    IpPart *m_previous = nullptr;
    int m_length = 0; ///< of the text before the change in progress
    Doing m_doing = Doing::Nothing;
};
