#pragma once

#include "import/FileRewrite.h"
#include "import/ImportFault.h"
#include "import/LineEnds.h"
#include "import/TabColumns.h"
#include "import/TextConversion.h"
#include "import/TextEncoding.h"

#include <QStringList>

#include <memory>

/// Brings the text of a list file into the form that the CSV reader takes, in steps of a few
/// milliseconds: "tmp.csv" is the unchanged file, "tmp1.csv" the same in UTF-8 if it was in another
/// encoding, "tmp2.csv" has LF alone at the line ends and commas between the columns.
class TextSource
{
public:
    enum class State { Copying, Converting, Cleaning, Done, Failed };

    /// `encoding` is that of the file. When it is empty, the file's bytes tell, and
    /// `legacyEncoding` is taken if they do not. `folder` is the start of the work files' paths.
    TextSource(const QString &path, const QString &folder, const QString &encoding,
               const QString &legacyEncoding);

    /// Does the next piece of work.
    State readOn();
    /// Why it failed.
    ImportFault fault() const { return m_fault; }

    /// See LineEnds.
    bool isTitleBroken() const { return m_lineEnds.isTitleBroken(); }

    /// The encoding of the file; empty until it is known.
    QString encoding() const { return m_encoding; }

    /// The encoding of the file, found out as above. Reads the whole file.
    static QString encodingOf(const QString &path, const QString &legacyEncoding);
    /// The paths of the three work files.
    static QStringList workFiles(const QString &folder);
    /// Whether the file at `path` is one of these.
    static bool isWorkFile(const QString &path, const QString &folder);

private:
    State copyOn();
    State encodingFound();
    State convertOn();
    State cleanOn();
    State failed(ImportFault fault);

    State m_state = State::Copying;
    ImportFault m_fault = ImportFault::None;
    QString m_encoding;
    QString m_legacyEncoding;
    QStringList m_workFiles;
    EncodingProbe m_probe;
    std::unique_ptr<TextConversion> m_conversion;
    LineEnds m_lineEnds;
    FileRewrite m_files; ///< those of the present state
    TabColumns m_tabColumns;
};
