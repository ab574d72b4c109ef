#pragma once

#include <QElapsedTimer>
#include <QWidget>

class ContactView;
class DataMgr;
class DeviceRows;
class QLabel;
class QPushButton;

/// Says what was changed last in the list, with a button that takes it back or, once it is taken
/// back, makes it again. Out of sight until something was changed. Also has the keys for both, in
/// the window that it is a part of.
class UndoBar : public QWidget
{
    Q_OBJECT
public:
    /// `dataMgr` and `view`, which shows its list, must outlive the bar.
    UndoBar(DataMgr &dataMgr, ContactView &view, QWidget *parent = nullptr);

private:
    void addKey(const QKeySequence &key, void (DataMgr::*step)());
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
