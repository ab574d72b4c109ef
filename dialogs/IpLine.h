#pragma once

#include <QVector>
#include <QWidget>

class ElidedLabel;
class IpPart;
class QKeyEvent;

/// Entry of an IPv4 or MAC address in segments, offered and accepted as one text.
///
/// A stored text need not be an address: lists are imported and kept as they are. So that opening
/// and saving a device loses nothing, the text that was set is remembered and given back by value()
/// until the entry is changed, even where the segments cannot show it. For the same reason half an
/// address is marked beside it and not refused. It is marked when the focus leaves the entry, or by
/// Return, which does nothing else then: Return again is as it is anywhere.
class IpLine : public QWidget
{
    Q_OBJECT

public:
    enum class Form {
        Ip,  ///< four octets with "." between, "0" at first
        Mac, ///< six bytes with ":" between, "FF" at first
    };

    explicit IpLine(Form form, QWidget *parent = nullptr);

    /// What the segments show, joined by the separator as typed; empty when all are empty.
    QString text() const;
    /// Splits `text` over the segments; missing pieces leave theirs empty. A text with a piece that
    /// is too long for its segment leaves all empty and is shown beside them.
    void setText(const QString &text);

    /// What to store: the text last set as long as the entry is unchanged, else text().
    QString value() const;

    /// Names the entry for screen readers, and each segment with its place in it.
    void setLabelText(const QString &label);

    /// The segments from left to right; owned by this widget.
    const QVector<IpPart *> &parts() const { return m_parts; }
    /// Puts the focus into segment `index` (must exist), ready to type over it.
    void focusPart(int index);
    /// Puts the focus into the first empty segment, or the first of all.
    void focusFirstEmptyPart();

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// Something that the user entered has no place in the entry, or Return only marked it;
    /// `reason` tells why.
    void refused(const QString &reason);

public slots:
    /// Shows the current text in a message box.
    /// Part of the interface; nothing here calls it.
    void disPlayInfo();

private:
    bool isIncomplete() const;
    bool isAllEmpty() const;
    bool isUnchanged() const;
    QString joined() const;
    QChar separator() const;
    bool isToldByReturn(const QKeyEvent &key);
    void updateNote();

    const Form m_form;
    QVector<IpPart *> m_parts;
    ElidedLabel *m_note; ///< what is stored and cannot be shown, or that some of it is missing
    QString m_given;     ///< the text last set
    QString m_shown;     ///< the segments as the last set left them; null before the first
    bool m_fits = true;  ///< the segments show all of m_given
    bool m_userEdited = false;
    bool m_marked = false; ///< the user has been told that it is half an address
};
