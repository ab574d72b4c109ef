#pragma once

#include <QWidget>

class QBoxLayout;
class QHBoxLayout;
class QKeySequence;
class QLabel;
class QPushButton;

/// The bar above the list: its title with the device count, the buttons that work on the list, and
/// the two buttons that switch the services. The latter move below the others if the window is too
/// narrow. The window connects the buttons.
class CommandBar : public QWidget
{
    Q_OBJECT
public:
    explicit CommandBar(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

    void setDeviceCount(int count);
    /// Tells, in the tool tip of the count, how many phones have asked for their files.
    void setSeenCount(int seen);
    /// Puts `note`, which becomes a child of the bar, beside the device count. Its button comes
    /// before those of the bar in the tab order.
    void addNote(QWidget *note);

    QPushButton *newButton() const { return m_newButton; }
    QPushButton *newsButton() const { return m_newsButton; }
    QPushButton *importButton() const { return m_importButton; }
    QPushButton *exportButton() const { return m_exportButton; }
    QPushButton *deleteAllButton() const { return m_deleteAllButton; }
    QPushButton *httpButton() const { return m_httpButton; }
    QPushButton *pnpButton() const { return m_pnpButton; }

    /// A service button shows the service's state by its text and icon, which say what a press
    /// does. The underlined letter is a shortcut unless a menu of the window has it.
    void showHttpOpen(bool open);
    bool isHttpOpen() const;
    void showPnpEnabled(bool enabled);
    bool isPnpEnabled() const;

protected:
    bool event(QEvent *event) override;

private:
    QPushButton *addListButton(QHBoxLayout &row, const QString &text, const char *name,
                               const char *icon, const char *shortcut, const QString &tip);
    QPushButton *addButton(QHBoxLayout &row, const char *name);
    void showService(QPushButton &button, const QString &text, const char *iconName);
    bool isMenuKey(const QKeySequence &key) const;

    QHBoxLayout *m_titleRow;
    QLabel *m_countLabel;
    QBoxLayout *m_buttonRows;
    QHBoxLayout *m_listRow;
    QHBoxLayout *m_serviceRow;
    QPushButton *m_newButton;
    QPushButton *m_newsButton;
    QPushButton *m_importButton;
    QPushButton *m_exportButton;
    QPushButton *m_deleteAllButton;
    QPushButton *m_httpButton;
    QPushButton *m_pnpButton;
};
