#include "app/PathPage.h"

#include "widgets/Grid.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <limits>

namespace {

const QColor pageColor(0xb5, 0xb5, 0xb5);

} // namespace

PathPage::PathPage(const Texts &texts, QWidget *parent)
    : SlidePage(Edge::Top, parent)
    , m_pathEdit(new QLineEdit(this))
    , m_optionRow(new QHBoxLayout)
    , m_column(new QVBoxLayout)
{
    setObjectName(texts.name + QLatin1String("Page"));
    setAccessibleName(texts.title);
    setStyleSheet(QStringLiteral(".QLabel {background-color:#b5b5b5}"));
    // The page has the colour of its labels.
    QPalette colors = palette();
    colors.setColor(QPalette::Window, pageColor);
    setPalette(colors);

    auto *const title = new QLabel(texts.title, this);
    title->setObjectName(texts.name + QLatin1String("TitleLabel"));
    title->setProperty("class", QStringLiteral("MainTitle"));
    m_pathEdit->setObjectName(texts.name + QLatin1String("PathLineEdit"));
    m_pathEdit->setMaxLength(std::numeric_limits<int>::max());
    m_pathEdit->setAccessibleName(texts.pathLabel.isEmpty() ? texts.title : texts.pathLabel);
    connect(m_pathEdit, &QLineEdit::textChanged, this, &PathPage::pathChanged);
    connect(m_pathEdit, &QLineEdit::returnPressed, this, &PathPage::beginRequested);

    auto *const pathRow = new QHBoxLayout;
    pathRow->setSpacing(gridPx);
    if (texts.pathLabel.isEmpty()) {
        title->setBuddy(m_pathEdit);
    } else {
        auto *const label = new QLabel(texts.pathLabel, this);
        label->setObjectName(texts.name + QLatin1String("PathLabel"));
        label->setBuddy(m_pathEdit);
        pathRow->addWidget(label);
    }
    pathRow->addWidget(m_pathEdit, 1);
    QPushButton *const select =
        addButton(*pathRow, texts.name + QLatin1String("SelectButton"), texts.select);
    connect(select, &QPushButton::clicked, this, &PathPage::selectRequested);
    m_lastBeforeButtons = select;

    auto *const buttonRow = new QHBoxLayout;
    buttonRow->setSpacing(gridPx);
    m_optionRow->setSpacing(2 * gridPx);
    buttonRow->addLayout(m_optionRow, 1);
    buttonRow->addStretch();
    m_beginButton = addButton(*buttonRow, texts.name + QLatin1String("BeginButton"), texts.begin);
    m_beginButton->setDefault(true);
    connect(m_beginButton, &QPushButton::clicked, this, &PathPage::beginRequested);
    QPushButton *const cancel =
        addButton(*buttonRow, texts.name + QLatin1String("CancelButton"), tr("Cancel"));
    connect(cancel, &QPushButton::clicked, this, &PathPage::abortRequested);

    setLayout(m_column);
    m_column->setContentsMargins(2 * gridPx, 2 * gridPx, 2 * gridPx, 2 * gridPx);
    m_column->setSpacing(gridPx);
    m_column->addWidget(title);
    m_column->addLayout(pathRow);
    m_column->addLayout(buttonRow);
}

QPushButton *PathPage::addButton(QHBoxLayout &row, const QString &name, const QString &text)
{
    auto *const button = new QPushButton(text, this);
    button->setObjectName(name);
    row.addWidget(button);
    return button;
}

void PathPage::addOption(QWidget *option, int stretch)
{
    m_optionRow->addWidget(option, stretch);
    if (option->focusPolicy() == Qt::NoFocus)
        return;
    QWidget::setTabOrder(m_lastBeforeButtons, option);
    m_lastBeforeButtons = option;
}

void PathPage::addLine(QWidget *line)
{
    m_column->insertWidget(m_column->count() - 1, line);
}

QString PathPage::path() const
{
    return m_pathEdit->text();
}

void PathPage::setPath(const QString &path)
{
    if (path == m_pathEdit->text())
        emit pathChanged(path); // the file may have changed
    else
        m_pathEdit->setText(path);
}

void PathPage::clearPath()
{
    m_pathEdit->clear();
}
