#include "view/ColumnFollower.h"

#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>

ColumnFollower::ColumnFollower(QTableView &table, QWidget &bar)
    : QObject(&bar)
    , m_table(&table)
    , m_bar(bar)
{
    connect(table.horizontalHeader(), &QHeaderView::sectionResized, this, &ColumnFollower::align);
    connect(table.horizontalHeader(), &QHeaderView::geometriesChanged, this,
            &ColumnFollower::align);
    connect(table.horizontalScrollBar(), &QScrollBar::valueChanged, this, &ColumnFollower::align);
    bar.installEventFilter(this);
    table.installEventFilter(this);
    table.viewport()->installEventFilter(this);
}

void ColumnFollower::add(int column, QWidget *widget)
{
    m_entries.append({column, widget});
    align();
}

bool ColumnFollower::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
        align();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

int ColumnFollower::tableLeft() const
{
    const QWidget *viewport = m_table->viewport();
    if (m_bar.window() != viewport->window())
        return viewport->x();
    return m_bar.mapFrom(m_bar.window(), viewport->mapTo(viewport->window(), QPoint())).x();
}

void ColumnFollower::align()
{
    if (!m_table)
        return;
    const QRect inside = m_bar.contentsRect();
    const int left = tableLeft();
    for (const Entry &entry : qAsConst(m_entries))
        entry.widget->setGeometry(left + m_table->columnViewportPosition(entry.column),
                                  inside.top(), m_table->columnWidth(entry.column),
                                  inside.height());
}
