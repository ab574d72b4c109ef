#include "app/ReportBox.h"

#include "widgets/EffectScrollBar.h"
#include "widgets/Grid.h"

#include <QElapsedTimer>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include <limits>

namespace {

constexpr int keptLines = 2000;

/// This many reports show at once. Further ones show together at the end of each interval
/// (milliseconds): one by one, a few thousand would take seconds.
constexpr int shownAtOnce = 20;
constexpr qint64 shortestInterval = 100;
constexpr qint64 longestInterval = 1000;

/// An interval is this many times as long as showing the last reports took, so that a storm of
/// requests leaves time for the window and the phones.
constexpr qint64 restFactor = 20;

/// The most reports that wait to be shown; the box would not keep more anyway.
constexpr int keptReports = 2 * keptLines / 5; ///< reports of four lines alternate with ends of one

constexpr int boxHeight = 168;
constexpr int lowestBoxHeight = 96; ///< where the window has no room for more

} // namespace

ReportBox::ReportBox(QWidget *parent)
    : QWidget(parent)
    , m_service(new QLabel(this))
    , m_text(new QPlainTextEdit(this))
{
    m_timer.setInterval(shortestInterval);
    connect(&m_timer, &QTimer::timeout, this, &ReportBox::showPending);

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

    m_service->setObjectName(QStringLiteral("reportService"));
    m_service->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_service->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_service->setWordWrap(true);

    auto *const header = new QHBoxLayout;
    header->addWidget(title);
    header->addWidget(m_service, 1);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gridPx);
    column->addLayout(header);
    column->addWidget(m_text);
    setMinimumHeight(lowestBoxHeight);
    setMaximumHeight(boxHeight);
}

void ReportBox::addLine(const QString &line)
{
    const QString before = m_service->text();
    m_service->setText(before.isEmpty() ? line : before + QLatin1String("   ") + line);
    append(line);
}

void ReportBox::addReport(const QString &report)
{
    add(report);
}

void ReportBox::addEnd(const RequestEnd &request)
{
    add(request);
}

QString ReportBox::textOf(const Entry &entry)
{
    const auto *const request = std::get_if<RequestEnd>(&entry);
    return request ? request->line() : QLatin1Char('\n') + std::get<QString>(entry);
}

void ReportBox::add(const Entry &entry)
{
    if (!m_timer.isActive()) {
        m_shown = 0;
        m_timer.start(shortestInterval);
    }
    if (m_pending.isEmpty() && ++m_shown <= shownAtOnce) {
        append(textOf(entry));
        return;
    }
    m_pending.append(entry);
    if (m_pending.size() > keptReports)
        m_pending.removeFirst();
}

void ReportBox::append(const QString &text)
{
    m_text->appendPlainText(text);
}

void ReportBox::showPending()
{
    if (m_pending.isEmpty()) {
        m_timer.stop();
        return;
    }
    QElapsedTimer effort;
    effort.start();
    m_shown = m_pending.size() <= shownAtOnce ? 0 : shownAtOnce;
    // The whole text is replaced: removing thousands of lines from its start costs far more.
    QStringList lines;
    if (m_pending.size() < keptReports)
        lines = m_text->toPlainText().split(QLatin1Char('\n'));
    for (const Entry &entry : qAsConst(m_pending))
        lines += textOf(entry).split(QLatin1Char('\n'));
    m_pending.clear();
    QScrollBar &bar = *m_text->verticalScrollBar();
    const int place = bar.value() < bar.maximum() ? bar.value() : std::numeric_limits<int>::max();
    m_text->setPlainText(lines.mid(qMax(0, lines.size() - keptLines)).join(QLatin1Char('\n')));
    bar.setValue(place);
    m_timer.start(
        static_cast<int>(qBound(shortestInterval, restFactor * effort.elapsed(), longestInterval)));
}

void ReportBox::clear()
{
    m_timer.stop();
    m_pending.clear();
    m_service->clear();
    m_text->clear();
}

QString ReportBox::text()
{
    showPending();
    return m_text->toPlainText();
}
