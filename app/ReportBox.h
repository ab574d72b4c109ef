#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>

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
    void clear();
    /// What the box holds, shown or about to be.
    QString text();

private:
    void append(const QString &text);
    void showPending();

    QLabel *m_service; ///< the lines on the service
    QPlainTextEdit *m_text;
    QStringList m_pending; ///< reports that do not show yet
    QTimer m_timer;        ///< runs out some time after reports were shown
    int m_shown = 0;       ///< reports shown since it was started
};
