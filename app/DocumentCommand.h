#pragma once

#include "export/DocumentWriter.h"
#include "model/DeviceList.h"

#include <QCoreApplication>
#include <QString>

#include <vector>

/// Writes the documents of the stored list into a folder, and reports on the console. The database
/// is only read, even while another program has the list open. GUI thread.
class DocumentCommand
{
    Q_DECLARE_TR_FUNCTIONS(DocumentCommand)

public:
    /// `listFolder` holds the database and ends in "/"; the documents go into `folder`.
    DocumentCommand(const QString &listFolder, const QString &folder);

    /// Returns false on failure, after reporting the reason.
    bool run(bool removeOthers);

private:
    bool readList();
    bool writeDocuments(bool removeOthers);
    void showProgress(int begun);
    void clearProgress() const;
    void tellOmitted(const std::vector<DocumentWriter::Outcome> &outcomes) const;
    bool fail(const QString &reason) const;

    QString m_listFolder;
    QString m_folder;
    DeviceList m_list;
    bool m_isWatched;
    int m_nextShown = 0; ///< number of devices begun at which the bar moves next
};
