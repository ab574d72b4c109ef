#pragma once

#include "model/WholeFile.h"

#include <QString>

/// Reads the language word from "language/config.xml": the text of the root's child "Language", or
/// of the last of several in a row; empty without one. Returns false if the file is missing or does
/// not parse.
bool readLanguageFile(const QString &filePath, QString &language);

/// Writes a new file.
WriteResult createLanguageFile(const QString &filePath, const QString &language);

/// Changes the word in an existing file. A file that is damaged or has no language word is written
/// anew.
WriteResult updateLanguageFile(const QString &filePath, const QString &language);

/// The language of the installer, from the first line of the note that it leaves: "zh" or "en";
/// empty without a note, or if it names neither.
QString languageHint(const QString &filePath);
