#pragma once

#include "model/RequestEnd.h"

#include <QList>
#include <QTimer>
#include <QWidget>

#include <variant>

class QLabel;
class QPlainTextEdit;

/// The box below the list in which the HTTP service reports: where it runs and which phone asked
/// for what. Where it runs stays in sight above the box when that has scrolled on.
///
/// Keeps the newest reports only, so that a network that asks all day costs no memory. When many
/// come at once, they show a moment later, together.
class ReportBox : public QWidget
{
    Q_OBJECT
public:
    explicit ReportBox(QWidget *parent = nullptr);

    /// Adds a line on the service itself.
    void addLine(const QString &line);
    /// Adds a report, set apart from what stands before by an empty line.
    void addReport(const QString &report);
    /// Adds a line on how a request ended, right below what stands before.
    void addEnd(const RequestEnd &request);
    void clear();
    /// What the box holds, shown or about to be.
    QString text();

private:
    /// A report, or a request's end. That becomes a text when it is to show, as in a storm most
    /// never do.
    using Entry = std::variant<QString, RequestEnd>;

    static QString textOf(const Entry &entry);
    void add(const Entry &entry);
    void append(const QString &text);
    void showPending();

    QLabel *m_service; ///< the lines on the service
    QPlainTextEdit *m_text;
    QList<Entry> m_pending; ///< reports that do not show yet
    QTimer m_timer;         ///< runs out some time after reports were shown
    int m_shown = 0;        ///< reports shown since it was started
};
