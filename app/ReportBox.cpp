#include "app/ReportBox.h"

#include "widgets/EffectScrollBar.h"
#include "widgets/Grid.h"

#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace {

constexpr int keptLines = 5000;
constexpr int boxHeight = 168;

} // namespace

ReportBox::ReportBox(QWidget *parent)
    : QWidget(parent)
    , m_text(new QPlainTextEdit(this))
{
    auto *const title = new QLabel(tr("HTTPD server request informations"), this);
    title->setObjectName(QStringLiteral("reportTitle"));
    title->setProperty("class", QStringLiteral("ReportTitle"));
    title->setBuddy(m_text);

    m_text->setObjectName(QStringLiteral("reportBox"));
    m_text->setAccessibleName(title->text());
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setMaximumBlockCount(keptLines);
    m_text->setVerticalScrollBar(new EffectScrollBar(Qt::Vertical));
    m_text->setHorizontalScrollBar(new EffectScrollBar(Qt::Horizontal));
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gridPx);
    column->addWidget(title);
    column->addWidget(m_text);
    setFixedHeight(boxHeight);
}

void ReportBox::addLine(const QString &line)
{
    m_text->appendPlainText(line);
}

void ReportBox::addReport(const QString &report)
{
    addLine(QString());
    addLine(report);
}

void ReportBox::clear()
{
    m_text->clear();
}

QString ReportBox::text() const
{
    return m_text->toPlainText();
}
