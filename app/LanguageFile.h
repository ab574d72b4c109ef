#pragma once

#include "model/WholeFile.h"

#include <QString>

/// Reads the language word from "language/config.xml": the text of the root's child "Language", of
/// several in a row the last one's; empty without one. False when there is no such file or it does
/// not parse.
bool readLanguageFile(const QString &filePath, QString &language);

/// Writes the file anew.
WriteResult createLanguageFile(const QString &filePath, const QString &language);

/// Changes the word of a file that is there; one that is damaged or names no language is written
/// anew.
WriteResult updateLanguageFile(const QString &filePath, const QString &language);

/// The language in which the installer ran, by the first line of the note that it leaves: "zh" or
/// "en", or empty without a note or when it names neither.
QString languageHint(const QString &filePath);
