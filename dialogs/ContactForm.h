#pragma once

#include "model/ContactInfo.h"

#include <QString>
#include <QVector>
#include <QWidget>

class QGridLayout;
class QLabel;

/// How one text of a device is entered, and so how it is shown and read.
enum class ContactInput {
    Mac,      ///< IpLine
    Ip,       ///< IpLine
    Text,     ///< QLineEdit
    Password, ///< QLineEdit that hides what is typed
    Product,  ///< QComboBox of the product models
    Codec,    ///< QComboBox of the speech codecs
    Language, ///< QComboBox of the languages; the record keeps the code
    YesNo,    ///< QComboBox "Yes", "No"; the record keeps "1" or "0"
};

/// One row of the form.
struct ContactRow
{
    QString label; ///< shown, translated
    QString name;  ///< object name of the input
    ContactInput input;
    QString ContactInfo::*field = nullptr; ///< null for a row that is not part of the record
    bool startsGroup = false;              ///< a line stands above it
    QString toolTip = QString();           ///< explains what the label leaves out
};

/// Names the value of that member where rows are listed.
constexpr bool startsGroup = true;

/// The labelled inputs of a device, one below the other, for the device dialogs to scroll.
///
/// load() and store() keep every text whose input is not touched: a model, codec or language that
/// is not on offer becomes an additional item, an address keeps its text (see IpLine), and an
/// unchanged switch keeps the value that it shows as "Yes".
class ContactForm : public QWidget
{
    Q_OBJECT

public:
    explicit ContactForm(QWidget *parent = nullptr);

    /// Rows that every device dialog has: those from the codecs to "Keep-Alive", and those from the
    /// phonebook to the end.
    static QVector<ContactRow> telephonyRows();
    static QVector<ContactRow> directoryRows();

    /// Appends a row and returns its input. Label and input get the dynamic property "class"
    /// `styleClass` + "ItemLabel" and + "ItemEdit".
    QWidget *addRow(const ContactRow &row, const QString &styleClass);

    int rowCount() const { return m_rows.size(); }
    /// The input of the last row; null when there is none.
    QWidget *lastInput() const { return m_rows.isEmpty() ? nullptr : m_rows.last().input; }
    /// Shows or hides the rows from `first` to the last.
    void setRowsVisibleFrom(int first, bool visible);

    /// The input with that object name, or null.
    template <typename Input>
    Input *input(const char *name) const
    {
        return findChild<Input *>(QLatin1String(name));
    }

    /// Copies the fields of `info` into their inputs. Inputs without a field are left alone.
    void load(const ContactInfo &info);
    /// Copies the values of the inputs into their fields of `info`; leaves the other fields alone.
    void store(ContactInfo &info) const;

    /// The default texts of a new device.
    static ContactInfo defaultContact();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row
    {
        ContactInput kind;
        QString ContactInfo::*field;
        QLabel *label;
        QWidget *input;
        QWidget *groupLine;        ///< null where no group starts
        QString given = QString(); ///< the text last loaded
        int givenIndex = -1;       ///< its index, if the input is a box
    };

    QWidget *createGroupLine();
    QWidget *createInput(ContactInput kind);
    QWidget *createComboBox(ContactInput kind);

    QGridLayout *m_grid;
    QVector<Row> m_rows;
};
