#pragma once

#include "import/FileRewrite.h"
#include "import/ImportFault.h"
#include "import/LineEnds.h"
#include "import/TabColumns.h"
#include "import/TextConversion.h"
#include "import/TextEncoding.h"

#include <QStringList>

#include <memory>

/// Brings the text of a list file into the form in which the CSV reader takes it, in steps of a few
/// milliseconds: "tmp.csv" is the file as it is, "tmp1.csv" the same in UTF-8 where it was in
/// another encoding, "tmp2.csv" has LF alone at the line ends and commas between the columns.
class TextSource
{
public:
    enum class State { Copying, Converting, Cleaning, Done, Failed };

    /// The file is in the encoding `encoding`; when that is empty, it is found out, and
    /// `legacyEncoding` is what it is when its bytes do not tell. `folder` ends in "/".
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

    /// The encoding of the file, told as the constructor does. Reads all of it.
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
    FileRewrite m_files; ///< of this state
    TabColumns m_tabColumns;
};
