#pragma once

#include <QElapsedTimer>
#include <QWidget>

class ContactView;
class DataMgr;
class DeviceRows;
class QLabel;
class QPushButton;

/// Shows the last change of the list, with a button that undoes it or, once undone, redoes it.
/// Invisible until something was changed. Also provides the shortcuts for both in its window.
class UndoBar : public QWidget
{
    Q_OBJECT
public:
    /// `dataMgr`, and `view`, which shows the list, must outlive the bar.
    UndoBar(DataMgr &dataMgr, ContactView &view, QWidget *parent = nullptr);

private:
    void addKey(const char *key, void (UndoBar::*step)());
    void undoByKey();
    void redoByKey();
    void onHistoryChanged();
    void onClicked();
    void show(const QString &text, const QString &button, const QString &key);
    void showRestored(int first, const DeviceRows &rows);
    QString shortened(const QString &text) const;

    DataMgr &m_dataMgr;
    ContactView &m_view;
    QLabel *m_label;
    QPushButton *m_button;
    QElapsedTimer m_sinceClick;
};
