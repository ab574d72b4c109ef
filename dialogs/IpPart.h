#pragma once

#include <QLineEdit>

/// One segment of an address: a line edit that passes the focus on to its neighbours as the user
/// types, so that a whole address goes in without leaving the keyboard.
///
/// Moves, fillers and rewriting answer the user's edits only. A text set by the program is taken as
/// it stands and leaves the focus where it is.
class IpPart : public QLineEdit
{
    Q_OBJECT

public:
    /// What a segment holds. The numbers are fixed.
    enum Kind : int {
        Octet = 0,          ///< a number from 0 to 255, "0" at first
        FourCharacters = 1, ///< four characters of any kind
        MacByte = 2,        ///< two hexadecimal digits, "FF" at first
    };

    explicit IpPart(int kind, QWidget *parent = nullptr);

    int kind() const { return m_kind; }

    /// The segments to the left and right, null at the ends. Not owned; they must live as long as
    /// this one receives events.
    void setNeighbours(IpPart *previous, IpPart *next);

    /// The pieces of a whole address written in any usual way (MAC: six pairs with ":", "-" or
    /// nothing between; IPv4: four numbers up to 255), as written. Empty when it is not one.
    static QStringList piecesOfAddress(int kind, const QString &address);

signals:
    /// The text of a key that was pressed here; sent after the key was handled.
    void sendMsg(const QString &keyText);

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
    void focusInEvent(QFocusEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void checkOctet(const QString &changed, bool grew);
    void checkMacByte(const QString &changed);
    bool moveByKey(const QKeyEvent &event);
    bool fillRow(const QString &address);
    void setTextAsUser(const QString &changed);
    void enterSelected();
    void enterAt(int position);

    const int m_kind;
    IpPart *m_next = nullptr;
    IpPart *m_previous = nullptr;
    QString m_text;             ///< the text before the change in progress
    bool m_userEdit = false;    ///< the change in progress is the user's
    bool m_lineEdited = false;  ///< the line edit itself changed the text for the present key
    bool m_keyTaken = false;    ///< the key being reported has had its effect
    bool m_clickedInto = false; ///< the mouse button that brought the focus is still down
};
