#pragma once

#include "widgets/SlidePage.h"

class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

/// The common part of the import page and the export page: a path, a button to select one, a button
/// to begin, and a button to give up. The page only holds these; a flow connects them.
class PathPage : public SlidePage
{
    Q_OBJECT

public:
    QString path() const;
    void setPath(const QString &path);
    void clearPath();

signals:
    void selectRequested();
    /// The path was typed or set, even if to the same path again.
    void pathChanged(const QString &path);
    /// The button was pressed, or Enter in the path.
    void beginRequested();
    void abortRequested();

protected:
    struct Texts
    {
        QString name; ///< prefix of the object names of the page and its widgets
        QString title;
        QString pathLabel; ///< beside the path; if empty, the title names the path
        QString select;
        QString begin;
    };

    PathPage(const Texts &texts, QWidget *parent);

    /// Adds a widget to the row of the buttons, at the other end, and to the tab order before them.
    void addOption(QWidget *option, int stretch = 0);
    /// Adds a widget of full width between the path and the buttons.
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
