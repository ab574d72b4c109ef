#pragma once

#include "model/WholeFile.h"

#include <QIODevice>
#include <QString>
#include <QVector>

#include <functional>
#include <optional>

class QDomDocument;

/// Reads and writes settings documents: small XML files whose elements hold one text each. A
/// document written here has a root element, an indentation of 4, UTF-8, and no XML declaration.
/// Any thread.
namespace SettingsFile {

struct Value
{
    QString element;
    QString text;
};
using Values = QVector<Value>;

/// Parses the file into `document`. False when the file is missing, cannot be opened in `mode`, or
/// is no settings document: damaged, too long, too deeply nested, or with a document type, whose
/// entities could expand without limit.
bool read(const QString &filePath, QIODevice::OpenMode mode, QDomDocument &document);

/// Reads the elements of the file at any depth, in file order, up to the first damage: each with
/// the text that directly follows its start tag. Elements without such a text are left out.
/// Returns nothing when the file is missing or cannot be opened.
std::optional<Values> readTexts(const QString &filePath);

/// Writes a document that holds only these values. The file is replaced as a whole or left
/// unchanged.
WriteResult create(const QString &filePath, const Values &values);

/// Replaces the texts of these values and keeps the rest of the document. When the document does
/// not parse, or `holdsValues` rejects the result, a new document takes its place. Writes as
/// create() does.
WriteResult update(const QString &filePath, const Values &values,
                   const std::function<bool(const QDomDocument &)> &holdsValues);

} // namespace SettingsFile
