#pragma once

#include <QWidget>

class QBoxLayout;
class QHBoxLayout;
class QKeySequence;
class QLabel;
class QPushButton;

/// What stands above the list: its title with the device count, the buttons that work on the list,
/// and the two buttons that switch the services, which go below the others where the window is too
/// narrow for all. The buttons only exist here; what they do is connected by the window.
class CommandBar : public QWidget
{
    Q_OBJECT
public:
    explicit CommandBar(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

    void setDeviceCount(int count);
    /// How many devices' telephones have asked for their files, beside the count.
    void setSeenCount(int seen);
    /// Puts `note` beside the device count, with its button before the bar's in the order of the
    /// Tab key. The bar becomes its parent.
    void addNote(QWidget *note);

    QPushButton *newButton() const { return m_newButton; }
    QPushButton *newsButton() const { return m_newsButton; }
    QPushButton *importButton() const { return m_importButton; }
    QPushButton *exportButton() const { return m_exportButton; }
    QPushButton *deleteAllButton() const { return m_deleteAllButton; }
    QPushButton *httpButton() const { return m_httpButton; }
    QPushButton *pnpButton() const { return m_pnpButton; }

    /// A service button keeps the service's state in its text, so these set text, icon and tip
    /// together. Text and icon say what a press does. The underlined letter is a key unless a menu
    /// of the window has it.
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
