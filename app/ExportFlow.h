#pragma once

#include <QObject>

class DataMgr;
class ExportPage;
class LanguageSetting;

/// The export of the list: from the page that asks for a folder to the file. Owns the page, which
/// holds the path, and the boxes on the way. GUI thread.
class ExportFlow : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of its boxes, `content` that of the page.
    /// `dataMgr`, and `language`, which decides on the titles of the columns, must outlive this
    /// object.
    ExportFlow(DataMgr &dataMgr, const LanguageSetting &language, QWidget &window,
               QWidget &content);

    /// Shows the page with an empty path. Does nothing while it is open.
    void open();
    /// Hides the page.
    void close();
    /// Lets the user choose the folder.
    void selectFolder();
    /// Exports to the folder in the path, and closes the page on success.
    void begin();

signals:
    /// The page is about to show.
    void opening();

private:
    void write(const QString &folder, const QString &target);

    DataMgr &m_dataMgr;
    const LanguageSetting &m_language;
    QWidget &m_window;
    ExportPage *m_page; ///< belongs to the content
};
