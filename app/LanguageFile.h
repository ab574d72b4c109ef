#pragma once

#include "model/WholeFile.h"

#include <QString>

/// In the program's folder.
inline const QString languageFileName = QStringLiteral("language/config.xml");

/// Reads the language word from the settings file: the text of the root's child "Language", or
/// of the last of several in a row; empty without one. Returns false if the file is missing or does
/// not parse.
bool readLanguageFile(const QString &filePath, QString &language);

/// Writes a new file.
WriteResult createLanguageFile(const QString &filePath, const QString &language);

/// Changes the word in an existing file. A file that is damaged or has no language word is written
/// anew.
WriteResult updateLanguageFile(const QString &filePath, const QString &language);

/// The word of the installer's language, from the first line of the note that it leaves; empty
/// without a note, or if it names no language of the interface.
QString languageHint(const QString &filePath);
