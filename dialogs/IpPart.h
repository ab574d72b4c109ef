#pragma once

#include "dialogs/AddressSegment.h"

#include <QLineEdit>

/// One segment of an address: a line edit that passes the focus on to its neighbours as the user
/// types, so that a whole address goes in without leaving the keyboard. How it takes an input is
/// told by AddressSegment.
///
/// Moves, fillers and rewriting answer the user's edits only. A text set by the program is taken as
/// it stands and leaves the focus where it is.
class IpPart : public QLineEdit
{
    Q_OBJECT

public:
    /// `kind` is one of AddressSegment::Kind.
    explicit IpPart(int kind, QWidget *parent = nullptr);

    int kind() const { return m_kind; }

    /// The segments to the left and right, null at the ends. Not owned; they must live as long as
    /// this one receives events.
    void setNeighbours(IpPart *previous, IpPart *next);

signals:
    /// The text of a key that was pressed here; sent after the key was handled.
    void sendMsg(const QString &keyText);
    /// Something that the user entered has no place here; `reason` tells why.
    void refused(const QString &reason);

public slots:
    /// Follows a change of the text: rewrites it and moves on as its kind asks. Does nothing for a
    /// change that the program made.
    void textIpvCheck(const QString &changed);
    /// Overwrites the digit at the cursor of a full MAC segment; anything that is no digit is
    /// ignored. `keyText` is the text of the key.
    void macModify(const QString &keyText);
    /// Pastes the clipboard; a whole address goes into all segments of the row. Hides
    /// QLineEdit::paste(), so that the context menu arrives here too.
    void paste();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    /// What the user is doing here at this moment.
    enum class Doing {
        Nothing,
        Editing,      ///< the line edit itself has changed the text and is about to report it
        Settled,      ///< the present key has had its whole effect
        ClickingInto, ///< the mouse button that brought the focus is still down
    };

    AddressSegment::State state() const;
    bool overwrites(QChar character) const;
    /// Carries out an input and returns the segment in which the user goes on.
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
