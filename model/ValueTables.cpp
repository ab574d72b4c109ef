#include "model/ValueTables.h"

namespace {

constexpr std::array<LanguageEntry, 21> languages = {{
    {0, "en", QT_TRANSLATE_NOOP("LanguageTable", "English(US)")},
    {1, "zh", QT_TRANSLATE_NOOP("LanguageTable", "Simplified Chinese")},
    {2, "zh-tw", QT_TRANSLATE_NOOP("LanguageTable", "Chinese Traditional")},
    {3, "kr", QT_TRANSLATE_NOOP("LanguageTable", "Korean")},
    {4, "es", QT_TRANSLATE_NOOP("LanguageTable", "Spanish")},
    //: The phone will speak the language of the code, which is German.
    {5, "de", QT_TRANSLATE_NOOP("LanguageTable", "Dutch")},
    {6, "fr", QT_TRANSLATE_NOOP("LanguageTable", "French")},
    {7, "it", QT_TRANSLATE_NOOP("LanguageTable", "Italian")},
    {8, "jp", QT_TRANSLATE_NOOP("LanguageTable", "Japanese")},
    {9, "ru", QT_TRANSLATE_NOOP("LanguageTable", "Russian")},
    {10, "pl", QT_TRANSLATE_NOOP("LanguageTable", "Poland")},
    {11, "nl", QT_TRANSLATE_NOOP("LanguageTable", "Holland")},
    {12, "hu", QT_TRANSLATE_NOOP("LanguageTable", "Magyar")},
    {13, "fi", QT_TRANSLATE_NOOP("LanguageTable", "Finland")},
    {14, "no", QT_TRANSLATE_NOOP("LanguageTable", "Norsk")},
    {15, "sv", QT_TRANSLATE_NOOP("LanguageTable", "Sweden")},
    {16, "da", QT_TRANSLATE_NOOP("LanguageTable", "Danish")},
    {17, "cs", QT_TRANSLATE_NOOP("LanguageTable", "Czech")},
    {18, "pt", QT_TRANSLATE_NOOP("LanguageTable", "Portugal")},
    {19, "en_gb", QT_TRANSLATE_NOOP("LanguageTable", "English(UK)")},
    {20, "th", QT_TRANSLATE_NOOP("LanguageTable", "Thailand")},
}};

constexpr bool isInOrder()
{
    for (std::size_t place = 0; place < languages.size(); ++place) {
        if (languages[place].index != static_cast<qint32>(place))
            return false;
    }
    return true;
}
static_assert(isInOrder(), "each index is the place in the choice list");

} // namespace

const QStringList &productModels()
{
    static const QStringList models = {
        QStringLiteral("KTP16XX"), QStringLiteral("KTP21XX"), QStringLiteral("KTP2200"),
        QStringLiteral("KTP14XX"), QStringLiteral("KTP11XX"), QStringLiteral("DK71X"),
        QStringLiteral("KTV31XX"), QStringLiteral("KTV32XX"),
    };
    return models;
}

const QStringList &speechCodecs()
{
    static const QStringList codecs = {
        QStringLiteral("PCMU"),    QStringLiteral("PCMA"),    QStringLiteral("G722"),
        QStringLiteral("G729A/B"), QStringLiteral("G723.1"),  QStringLiteral("G726-32"),
        QStringLiteral("GSM"),     QStringLiteral("L16-256"),
    };
    return codecs;
}

const std::array<LanguageEntry, 21> &languageTable()
{
    return languages;
}

void applyLanguageChoice(int position, QString &language)
{
    for (const LanguageEntry &entry : languageTable()) {
        if (entry.index == position)
            language = QLatin1String(entry.code);
    }
}

int languagePosition(const QString &code)
{
    for (const LanguageEntry &entry : languageTable()) {
        if (code == QLatin1String(entry.code))
            return entry.index;
    }
    return -1;
}

QString defaultDialPlan()
{
    return QStringLiteral("{ x+ | *x+ | *xx*x+ }");
}
