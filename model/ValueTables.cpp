#include "model/ValueTables.h"

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
    static constexpr std::array<LanguageEntry, 21> languages = {{
        {0, "en", "English(US)"},
        {1, "zh", "Simplified Chinese"},
        {2, "zh-tw", "Chinese Traditional"},
        {3, "kr", "Korean"},
        {4, "es", "Spanish"},
        {5, "de", "Dutch"},
        {6, "fr", "French"},
        {7, "it", "Italian"},
        {8, "jp", "Japanese"},
        {9, "ru", "Russian"},
        {10, "pl", "Poland"},
        {11, "nl", "Holland"},
        {12, "hu", "Magyar"},
        {13, "fi", "Finland"},
        {14, "no", "Norsk"},
        {15, "sv", "Sweden"},
        {16, "da", "Danish"},
        {17, "cs", "Czech"},
        {18, "pt", "Portugal"},
        {19, "en_gb", "English(UK)"},
        {20, "th", "Thailand"},
    }};
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
