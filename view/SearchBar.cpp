#include "view/SearchBar.h"

#include "view/ColumnFollower.h"
#include "view/ContactModel.h"
#include "view/ContactTitle.h"
#include "view/ContactView.h"
#include "view/SearchEdit.h"

#include <QHBoxLayout>
#include <QLabel>

namespace {

constexpr int boxMargin = 1; ///< on each side, between the box and its column

} // namespace

SearchBar::SearchBar(ContactView &view, QWidget *parent)
    : QWidget(parent)
    , m_edits(SearchEdit::boxCount, nullptr)
{
    setObjectName(QStringLiteral("searchBar"));
    setFixedHeight(40);

    QVector<int> boxOfColumn(SearchEdit::boxCount);
    for (int index = 0; index < SearchEdit::boxCount; ++index)
        boxOfColumn[SearchEdit::columnOf(index)] = index;

    // Created in the order of the columns, as that becomes the tab order.
    auto *follower = new ColumnFollower(view, *this);
    for (int column = 0; column < SearchEdit::boxCount; ++column) {
        const int index = boxOfColumn.at(column);
        auto *base = new QLabel(this);
        base->setProperty("class", QStringLiteral("SearchEditBaseLabel"));
        auto *layout = new QHBoxLayout(base);
        layout->setContentsMargins(boxMargin, 4, boxMargin, 4);
        m_edits[index] = createBox(view, index, base);
        layout->addWidget(m_edits.at(index));
        base->setBuddy(m_edits.at(index));
        follower->add(column, base);
    }
}

SearchEdit *SearchBar::createBox(ContactView &view, int index, QWidget *parent)
{
    auto *edit = new SearchEdit(index, parent);
    const QString name = ContactTitle::columnName(SearchEdit::columnOf(index));
    edit->setObjectName(QStringLiteral("searchEdit_%1").arg(index));
    edit->setProperty("class", QStringLiteral("SearchEdit"));
    edit->setPlaceholderText(name);
    edit->setAccessibleName(tr("Search %1").arg(name));
    edit->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);

    connect(edit, &SearchEdit::searchTextChanged, this, &SearchBar::emptyOthers);
    view.addSearchEdit(edit);
    connect(edit, &SearchEdit::searchTextChanged, this, &SearchBar::searchTextChanged);
    return edit;
}

SearchEdit *SearchBar::searchEdit(int index) const
{
    return m_edits.value(index);
}

void SearchBar::clear()
{
    for (SearchEdit *edit : qAsConst(m_edits))
        edit->clear();
}

void SearchBar::emptyOthers(int index)
{
    for (SearchEdit *edit : qAsConst(m_edits)) {
        if (edit->index() != index)
            edit->clearSilently();
    }
}
