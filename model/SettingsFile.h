#pragma once

#include "model/WholeFile.h"

#include <QIODevice>
#include <QString>
#include <QVector>

#include <functional>
#include <optional>

class QDomDocument;

/// The one place where settings documents are read. They are small XML files of elements that hold
/// one text each. Those that are written here have a root element, an indentation of 4, UTF-8, and
/// no XML declaration. Any thread.
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

/// Reads what can be understood of the file: each element, however nested, with the text that
/// directly follows its start tag, in the order of the file, up to the first damage. Elements
/// without such a text are left out. No value when the file is missing or cannot be opened.
std::optional<Values> readTexts(const QString &filePath);

/// Writes a document that holds just these values. The file is replaced as a whole or left as it
/// was.
WriteResult create(const QString &filePath, const Values &values);

/// Replaces the values' texts and keeps what else the document holds. When it does not parse, or
/// `holdsValues` does not find the values in the result, a new document takes its place. Writes as
/// create() does.
WriteResult update(const QString &filePath, const Values &values,
                   const std::function<bool(const QDomDocument &)> &holdsValues);

} // namespace SettingsFile
