#pragma once

#include <QWidget>

class ContactView;
class ElidedLabel;
class SearchBar;

/// Tells how many devices the search hides and how many of them are new or changed, and has a
/// button that clears the search. Invisible while no device is hidden.
class HiddenNote : public QWidget
{
    Q_OBJECT

public:
    /// `view` and `searchBar` are not owned and must outlive the note.
    HiddenNote(ContactView &view, SearchBar &searchBar, QWidget *parent = nullptr);

private:
    void onSearch();
    void onListChanged();
    void showCount();

    const ContactView &m_view;
    ElidedLabel *m_label;
    int m_hidden = 0;
    int m_hiddenBySearch = 0; ///< how many were hidden when the search was typed
};
