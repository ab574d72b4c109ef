#pragma once

#include "view/ContactModel.h"

#include <QIcon>
#include <QLineEdit>

/// A search box over one text column of the device list.
class SearchEdit : public QLineEdit
{
    Q_OBJECT

public:
    /// One box for each text column; their indices count from 0.
    static constexpr int boxCount = ContactModel::Detail;

    explicit SearchEdit(int index, QWidget *parent = nullptr);

    int index() const { return m_index; }

    /// The table column that box `index` searches; the first column for an invalid index.
    static int columnOf(int index);

    /// Empties the box without emitting searchTextChanged().
    void clearSilently();

signals:
    /// The text of box `index` is now `text`.
    void searchTextChanged(int index, const QString &text);
    /// The user pressed Down or Enter to go on in the list.
    void listWanted();

public slots:
    void onSearchEditChanged(const QString &text);

protected:
    /// Leaves the shortcuts of the list's commands to those commands.
    bool event(QEvent *event) override;
    /// Escape empties the box; Down and Enter move to the list.
    void keyPressEvent(QKeyEvent *event) override;
    /// Paints a magnifier into an empty box, where a filled one has its clear button.
    void paintEvent(QPaintEvent *event) override;

private:
    int m_index;
    QIcon m_magnifier;
    bool m_silent = false;
};
