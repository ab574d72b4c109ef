#pragma once

#include <QString>
#include <QStringList>

#include <array>

/// One language that a phone can show: its place in the choice list, the code that the record
/// keeps, and the name that the user sees, a key of the translation context "LanguageTable". Phones
/// and existing device lists expect these codes and names: do not tidy them.
struct LanguageEntry
{
    qint32 index;
    const char *code;
    const char *name;
};

/// Product models in the order of the choice list. A record stores the text.
const QStringList &productModels();

/// Speech codecs in the order of the choice list. A record stores the text.
const QStringList &speechCodecs();

/// Languages in the order of the choice list. A record stores the code.
const std::array<LanguageEntry, 21> &languageTable();

/// Writes the code of the language whose index equals `position` into `language`. An unknown
/// position leaves `language` unchanged.
void applyLanguageChoice(int position, QString &language);

/// The list position of a language code, or -1 when the code is not in the table.
int languagePosition(const QString &code);

/// The dial plan that a new device starts with.
QString defaultDialPlan();
