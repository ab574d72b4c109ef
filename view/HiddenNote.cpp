#include "view/HiddenNote.h"

#include "view/ContactView.h"
#include "view/SearchBar.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Grid.h"

#include <QAbstractItemModel>
#include <QAccessible>
#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>

HiddenNote::HiddenNote(ContactView &view, SearchBar &searchBar, QWidget *parent)
    : QWidget(parent)
    , m_view(view)
    , m_label(new ElidedLabel(this))
{
    setObjectName(QStringLiteral("hiddenNote"));
    m_label->setObjectName(QStringLiteral("hiddenLabel"));
    m_label->setProperty("class", QStringLiteral("HiddenLabel"));
    m_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *const button = new QPushButton(tr("Clear search"), this);
    button->setObjectName(QStringLiteral("clearSearchButton"));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, &searchBar, &SearchBar::clear);

    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gridPx);
    row->addWidget(m_label);
    row->addWidget(button);
    // The list below must not move when the note comes and goes.
    QSizePolicy policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);

    connect(view.model(), &QAbstractItemModel::layoutChanged, this, &HiddenNote::onSearch);
    connect(&view, &ContactView::viewUpdated, this, &HiddenNote::onListChanged);
    onSearch();
}

void HiddenNote::onSearch()
{
    m_hidden = m_hiddenBySearch = m_view.hiddenCount();
    showCount();
}

void HiddenNote::onListChanged()
{
    const int hidden = m_view.hiddenCount();
    m_hiddenBySearch = std::min(m_hiddenBySearch, hidden);
    const bool moreThanBefore = hidden > m_hidden;
    m_hidden = hidden;
    showCount();
    if (moreThanBefore) {
        QAccessibleEvent alert(m_label, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void HiddenNote::showCount()
{
    const int fresh = m_hidden - m_hiddenBySearch;
    if (fresh > 0)
        m_label->setFullText(
            tr("Hidden by the search: %1, new or changed: %2").arg(m_hidden).arg(fresh),
            tr("Hidden: %1, new: %2").arg(m_hidden).arg(fresh));
    else
        m_label->setFullText(tr("Hidden by the search: %1").arg(m_hidden),
                             tr("Hidden: %1").arg(m_hidden));
    setVisible(m_hidden > 0);
}
