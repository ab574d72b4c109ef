#include "app/CommandBar.h"

#include "widgets/Grid.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QVariant>

#include <algorithm>

namespace {

constexpr int iconPx = 20;

QIcon icon(const char *name)
{
    return QIcon(QStringLiteral("./resource/%1").arg(QLatin1String(name)));
}

} // namespace

CommandBar::CommandBar(QWidget *parent)
    : QWidget(parent)
    , m_titleRow(new QHBoxLayout)
    , m_countLabel(new QLabel(this))
    , m_buttonRows(new QHBoxLayout)
    , m_listRow(new QHBoxLayout)
    , m_serviceRow(new QHBoxLayout)
{
    setObjectName(QStringLiteral("tool_bar"));

    auto *const title = new QLabel(tr("Your Device List"), this);
    title->setObjectName(QStringLiteral("MainTitle"));
    title->setProperty("class", QStringLiteral("MainTitle"));
    m_countLabel->setObjectName(QStringLiteral("countLabel"));
    m_countLabel->setProperty("class", QStringLiteral("CountLabel"));

    m_titleRow->setSpacing(2 * gridPx);
    m_titleRow->addWidget(title);
    m_titleRow->addStretch();
    m_titleRow->addWidget(m_countLabel);

    m_listRow->setSpacing(gridPx);
    m_newButton = addListButton(*m_listRow, tr("New"), "tool_newBtn", "tool_new.png", "CTRL+N",
                                tr("New Device"));
    m_newsButton = addListButton(*m_listRow, tr("News"), "tool_newsBtn", "tool_news.png", "CTRL+T",
                                 tr("New Devices"));
    m_importButton = addListButton(*m_listRow, tr("Import"), "tool_importBtn", "tool_import.png",
                                   "CTRL+I", tr("Import Device List"));
    m_exportButton = addListButton(*m_listRow, tr("Export"), "tool_exportBtn", "tool_export.png",
                                   "CTRL+E", tr("Export Device List"));
    m_deleteAllButton = addListButton(*m_listRow, tr("Delete All"), "tool_deleteAllBtn",
                                      "tool_delete_all.png", "CTRL+D", tr("Delete All Devices"));
    m_serviceRow->setSpacing(gridPx);
    m_httpButton = addButton(*m_serviceRow, "tool_httpButton");
    showHttpOpen(false);
    m_pnpButton = addButton(*m_serviceRow, "tool_pnpButton");
    showPnpEnabled(false);

    m_buttonRows->setSpacing(gridPx);
    m_buttonRows->addLayout(m_listRow);
    m_buttonRows->setAlignment(m_listRow, Qt::AlignLeft);
    m_buttonRows->addLayout(m_serviceRow);
    m_buttonRows->setAlignment(m_serviceRow, Qt::AlignRight);

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gridPx);
    column->addLayout(m_titleRow);
    column->addLayout(m_buttonRows);

    setDeviceCount(0);
}

QSize CommandBar::minimumSizeHint() const
{
    const int widest =
        std::max({m_titleRow->minimumSize().width(), m_listRow->minimumSize().width(),
                  m_serviceRow->minimumSize().width()});
    return {widest, QWidget::minimumSizeHint().height()};
}

bool CommandBar::event(QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest) {
        const int both = m_listRow->sizeHint().width() + m_serviceRow->sizeHint().width();
        m_buttonRows->setDirection(width() < both + 2 * gridPx ? QBoxLayout::TopToBottom
                                                               : QBoxLayout::LeftToRight);
    }
    return QWidget::event(event);
}

void CommandBar::setDeviceCount(int count)
{
    m_countLabel->setText(tr("Total device") + tr(":") + QString::number(count));
}

void CommandBar::setSeenCount(int seen)
{
    const QString text =
        tr("Phones that have asked for their file since the program was started: %1").arg(seen);
    m_countLabel->setToolTip(text);
    m_countLabel->setAccessibleDescription(text);
}

void CommandBar::addNote(QWidget *note)
{
    m_titleRow->insertWidget(m_titleRow->indexOf(m_countLabel), note);
    // Setting the order both ways keeps widgets created later from coming in between.
    auto *const button = note->findChild<QPushButton *>();
    setTabOrder(m_newButton, button);
    setTabOrder(button, m_newButton);
}

void CommandBar::showHttpOpen(bool open)
{
    showService(*m_httpButton, open ? tr("&Close HTTPD") : tr("&Open HTTPD"),
                open ? "httpdCloseIcon.png" : "httpdOpenIcon.png");
    m_httpButton->setToolTip(open ? tr("Close the HTTPD server") : tr("Open the HTTPD server"));
}

bool CommandBar::isHttpOpen() const
{
    return m_httpButton->text() == tr("&Close HTTPD");
}

void CommandBar::showPnpEnabled(bool enabled)
{
    showService(*m_pnpButton, enabled ? tr("&Disable PNP Server") : tr("&Enable PNP Server"),
                enabled ? "pnpCloseIcon.png" : "pnpOpenIcon.png");
}

void CommandBar::showService(QPushButton &button, const QString &text, const char *iconName)
{
    button.setText(text);
    button.setIcon(icon(iconName));
    // A key with two owners reaches neither, and a menu opens by no other key.
    if (isMenuKey(button.shortcut()))
        button.setShortcut({});
}

bool CommandBar::isMenuKey(const QKeySequence &key) const
{
    const auto *const mainWindow = qobject_cast<const QMainWindow *>(window());
    const auto *const bar = mainWindow ? mainWindow->findChild<QMenuBar *>() : nullptr;
    const QList<QAction *> menus = bar ? bar->actions() : QList<QAction *>();
    return std::any_of(menus.begin(), menus.end(), [&key](const QAction *menu) {
        return QKeySequence::mnemonic(menu->text()) == key;
    });
}

bool CommandBar::isPnpEnabled() const
{
    return m_pnpButton->text() == tr("&Disable PNP Server");
}

QPushButton *CommandBar::addListButton(QHBoxLayout &row, const QString &text, const char *name,
                                       const char *iconName, const char *shortcut,
                                       const QString &tip)
{
    auto *const button = addButton(row, name);
    const QKeySequence keys(QLatin1String(shortcut), QKeySequence::PortableText);
    button->setText(text);
    button->setIcon(icon(iconName));
    button->setShortcut(keys);
    button->setToolTip(tip + QLatin1String("  ") + keys.toString(QKeySequence::NativeText));
    return button;
}

QPushButton *CommandBar::addButton(QHBoxLayout &row, const char *name)
{
    auto *const button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setIconSize({iconPx, iconPx});
    button->setAutoDefault(false);
    row.addWidget(button);
    return button;
}
