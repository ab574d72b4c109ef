#pragma once

#include <QVector>
#include <QWidget>

class ContactView;
class SearchEdit;

/// The row of search boxes over the device list, one over each column of text.
///
/// Only one box holds a keyword at a time: typing into one empties the others, so the boxes always
/// show the filter in force.
class SearchBar : public QWidget
{
    Q_OBJECT

public:
    /// Fits the boxes to the columns of `view` and connects them to it. `view` is not owned.
    explicit SearchBar(ContactView &view, QWidget *parent = nullptr);

    /// The box with this index, from 0 to SearchEdit::boxCount - 1.
    SearchEdit *searchEdit(int index) const;

    /// Empties the boxes, as if the user had emptied the one that holds the keyword.
    void clear();

signals:
    /// A box reports its text; see SearchEdit::searchTextChanged().
    void searchTextChanged(int index, const QString &text);

private:
    SearchEdit *createBox(ContactView &view, int index, QWidget *parent);
    void emptyOthers(int index);

    QVector<SearchEdit *> m_edits; ///< by box index
};
