#pragma once

#include <QWidget>

class QPlainTextEdit;

/// The box below the list in which the HTTP service reports: where it runs and which phone asked
/// for what. Keeps the newest reports only, so that a network that asks all day costs no memory.
class ReportBox : public QWidget
{
    Q_OBJECT
public:
    explicit ReportBox(QWidget *parent = nullptr);

    void addLine(const QString &line);
    /// Adds a report, set apart from what stands before by an empty line.
    void addReport(const QString &report);
    void clear();
    QString text() const;

private:
    QPlainTextEdit *m_text;
};
