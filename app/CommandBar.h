#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;

/// What stands above the list: its title with the device count, the buttons that work on the list,
/// and the two buttons that switch the services. The buttons only exist here; what they do is
/// connected by the window.
class CommandBar : public QWidget
{
    Q_OBJECT
public:
    explicit CommandBar(QWidget *parent = nullptr);

    void setDeviceCount(int count);

    QPushButton *newButton() const { return m_newButton; }
    QPushButton *newsButton() const { return m_newsButton; }
    QPushButton *importButton() const { return m_importButton; }
    QPushButton *exportButton() const { return m_exportButton; }
    QPushButton *deleteAllButton() const { return m_deleteAllButton; }
    QPushButton *httpButton() const { return m_httpButton; }
    QPushButton *pnpButton() const { return m_pnpButton; }

    /// A service button keeps the service's state in its text, so these set text, icon and tip
    /// together.
    void showHttpOpen(bool open);
    bool isHttpOpen() const;
    void showPnpEnabled(bool enabled);
    bool isPnpEnabled() const;

private:
    QPushButton *addListButton(QHBoxLayout &row, const QString &text, const char *name,
                               const char *icon, const char *shortcut, const QString &tip);
    QPushButton *addButton(QHBoxLayout &row, const char *name);

    QLabel *m_countLabel;
    QPushButton *m_newButton;
    QPushButton *m_newsButton;
    QPushButton *m_importButton;
    QPushButton *m_exportButton;
    QPushButton *m_deleteAllButton;
    QPushButton *m_httpButton;
    QPushButton *m_pnpButton;
};
