#pragma once

#include "widgets/SlidePage.h"

class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

/// What the import and the export page have in common: a path, a button that lets the user select
/// one, a button that begins with it, and one that gives up. The page only holds these; what they
/// do is connected by the window.
class PathPage : public SlidePage
{
    Q_OBJECT

public:
    QString path() const;
    void setPath(const QString &path);
    void clearPath();

signals:
    void selectRequested();
    /// Typed, or set, be it to the same path again.
    void pathChanged(const QString &path);
    /// The button, or Enter in the path.
    void beginRequested();
    void abortRequested();

protected:
    struct Texts
    {
        QString name; ///< what the object names of the page and its widgets begin with
        QString title;
        QString pathLabel; ///< beside the path; without one the title names the path
        QString select;
        QString begin;
    };

    PathPage(const Texts &texts, QWidget *parent);

    /// Adds a widget to the row of the buttons, on the other side, and to the tab order between
    /// the path and the buttons.
    void addOption(QWidget *option, int stretch = 0);
    /// Adds a widget of the page's width between the path and the buttons.
    void addLine(QWidget *line);
    QPushButton &beginButton() const { return *m_beginButton; }

private:
    QPushButton *addButton(QHBoxLayout &row, const QString &name, const QString &text);

    QLineEdit *m_pathEdit;
    QHBoxLayout *m_optionRow;
    QVBoxLayout *m_column;
    QPushButton *m_beginButton = nullptr;
    QWidget *m_lastBeforeButtons = nullptr;
};
