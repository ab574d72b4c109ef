#pragma once

#include "model/WholeFile.h"

#include <QIODevice>
#include <QString>
#include <QVector>

#include <functional>

class QDomDocument;

/// What the settings documents under "language/" have in common: a root element whose children
/// hold one text each, indented by 4, in UTF-8 without an XML declaration.
namespace SettingsFile {

struct Value
{
    QString element;
    QString text;
};
using Values = QVector<Value>;

/// Parses the file into `document`. False when there is no such file, when it cannot be opened in
/// `mode`, and when it is no settings document: damaged, far too long, nested, or with a document
/// type, whose entities could unfold without end.
bool read(const QString &filePath, QIODevice::OpenMode mode, QDomDocument &document);

/// Writes a document that holds just these values. The file is replaced as a whole or left as it
/// was.
WriteResult create(const QString &filePath, const Values &values);

/// Replaces the values' texts and keeps what else the document holds. When it does not parse, or
/// `holdsValues` does not find the values in the result, a new document takes its place. Writes as
/// create() does.
WriteResult update(const QString &filePath, const Values &values,
                   const std::function<bool(const QDomDocument &)> &holdsValues);

} // namespace SettingsFile
