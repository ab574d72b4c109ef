#pragma once

#include "model/RequestEnd.h"

#include <QList>
#include <QTimer>
#include <QWidget>

#include <variant>

class QLabel;
class QPlainTextEdit;

/// The box below the list with the reports of the HTTP service: where it runs and which phone asked
/// for what. Where it runs stays visible above the box when the box scrolls.
///
/// Keeps only the newest reports, so that a network that asks all day costs no memory. Many reports
/// at once show together, a moment later.
class ReportBox : public QWidget
{
    Q_OBJECT
public:
    explicit ReportBox(QWidget *parent = nullptr);

    /// Adds a line on the service itself.
    void addLine(const QString &line);
    /// Adds a report after an empty line.
    void addReport(const QString &report);
    /// Adds a line on how a request ended, without an empty line.
    void addEnd(const RequestEnd &request);
    void clear();
    /// All text of the box; shows the pending reports first.
    QString text();

private:
    /// A report, or a request's end. The latter becomes a text only when it is shown, as in a storm
    /// of requests most never are.
    using Entry = std::variant<QString, RequestEnd>;

    static QString textOf(const Entry &entry);
    void add(const Entry &entry);
    void append(const QString &text);
    void showPending();

    QLabel *m_service; ///< the lines on the service
    QPlainTextEdit *m_text;
    QList<Entry> m_pending; ///< not shown yet
    QTimer m_timer;         ///< shows the pending reports; runs until there are none
    int m_shown = 0;        ///< reports shown since the timer was started
};
