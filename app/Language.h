#pragma once

#include "model/ExportType.h"

#include <QString>
#include <QVector>

#include <array>

class QObject;
class QTranslator;

/// A language of the interface.
struct Language
{
    const char *word;          ///< in the settings; the name of its menu action and its catalogue
    const char *name;          ///< its name in that language, in UTF-8
    const char *installerWord; ///< in the installer's note
    const char *qtCatalogue;   ///< with the texts of Qt's own boxes; empty if Qt has them built in
    ExportType listFile;       ///< the device list file with titles in that language
};

/// The languages in the order of the menu. The last one is that of the sources.
constexpr std::array<Language, 2> languages = {{
    {"zh", "简体中文", "chinese", "qt_zh_CN.qm", CsvChinese},
    {"en", "English", "english", "", CsvEnglish},
}};

/// The folder of the catalogues, in the program's folder.
inline const QString languageFolder = QStringLiteral("language/");

/// The language with exactly this word, or the language of the sources.
const Language &languageOf(const QString &word);

/// Installs the catalogues of a language from `folder`. A missing one leaves the texts of the
/// sources. `owner` owns the translators; destroying them removes them.
QVector<QTranslator *> installTranslators(const Language &language, const QString &folder,
                                          QObject *owner);
