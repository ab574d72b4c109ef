#pragma once

#include <QObject>

class DataMgr;
class ImportLook;
class ImportPage;
class ListJob;
class LoadingWidget;

/// The import of a list: from the page that asks for a file, or a file dropped on the window, to
/// the end of the data manager's import. Owns the page, which holds the path; the look ahead at
/// that file; the overlay, which shows exactly while an import is under way; and the boxes on the
/// way. GUI thread.
class ImportFlow : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of its boxes, and takes dropped files; `content`
    /// is the parent of the page. Create this object after the window's text boxes. `dataMgr` must
    /// outlive this object; `folder` holds the work files and ends in "/".
    ImportFlow(DataMgr &dataMgr, const QString &folder, QWidget &window, QWidget &content);

    /// Shows the page with an empty path. Does nothing while it is open.
    void open();
    /// Hides the page.
    void close();
    /// Lets the user choose the file.
    void selectFile();
    /// Begins to import the file in the path, under the overlay.
    void begin();
    /// Call this when an import has ended, whatever its outcome.
    void end(const ListJob &job);

    /// Ends the look ahead, before the program ends.
    void stopLooking();
    /// Hides the overlay if an end of the program, for which an import was given up, does not
    /// happen.
    void giveUp();

signals:
    /// The page is about to show.
    void opening();

private:
    bool isImporting() const;
    void openWith(const QString &path);
    void look(const QString &path);

    DataMgr &m_dataMgr;
    QString m_folder;
    QWidget &m_window;
    ImportPage *m_page; ///< belongs to the content
    ImportLook *m_look;
    LoadingWidget *m_loading; ///< belongs to the window
};
