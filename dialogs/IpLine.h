#pragma once

#include <QVector>
#include <QWidget>

class ElidedLabel;
class IpPart;
class QKeyEvent;

/// Entry of an IPv4 or MAC address in segments, set and returned as one text.
///
/// A stored text need not be an address, as an import keeps texts as they are. value() returns the
/// text last set until the entry is changed, even if the segments cannot show it, so opening and
/// saving a device loses nothing. For the same reason an incomplete address is marked, not refused:
/// when the focus leaves the entry or, for an IP address, at the first Return, which then does
/// nothing else.
class IpLine : public QWidget
{
    Q_OBJECT

public:
    enum class Form {
        Ip,  ///< four octets with "." between, "0" at first
        Mac, ///< six bytes with ":" between, "FF" at first
    };

    explicit IpLine(Form form, QWidget *parent = nullptr);

    /// The segments joined by the separator, as typed; empty if all segments are empty.
    QString text() const;
    /// Splits `text` over the segments; segments without a piece stay empty. A piece that is too
    /// long leaves all segments empty. A text that does not fit is shown beside the segments.
    void setText(const QString &text);

    /// The text to store: the one last set while the entry is unchanged, else text().
    QString value() const;

    /// Names the entry, and each segment with its position, for screen readers.
    void setLabelText(const QString &label);

    /// The segments from left to right; owned by this widget.
    const QVector<IpPart *> &parts() const { return m_parts; }
    /// Focuses segment `index` (must exist) and selects its text.
    void focusPart(int index);
    /// Focuses the first empty segment, or the first of all.
    void focusFirstEmptyPart();

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// An input has no place in the entry, or Return only marked the address; `reason` tells why.
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
    ElidedLabel *m_note; ///< the stored text that does not fit, or "incomplete"
    QString m_given;     ///< the text last set
    QString m_shown;     ///< text of the segments after the last set; null before it
    bool m_fits = true;  ///< the segments show all of m_given
    bool m_userEdited = false;
    bool m_marked = false; ///< the user has been told that the address is incomplete
};
