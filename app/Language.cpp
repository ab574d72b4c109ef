#include "app/Language.h"

#include <QCoreApplication>
#include <QTranslator>

#include <algorithm>

const Language &languageOf(const QString &word)
{
    const auto *const language =
        std::find_if(languages.begin(), languages.end(),
                     [&word](const Language &one) { return word == QLatin1String(one.word); });
    return language == languages.end() ? languages.back() : *language;
}

QVector<QTranslator *> installTranslators(const Language &language, const QString &folder,
                                          QObject *owner)
{
    QVector<QTranslator *> translators;
    const QString ownCatalogue = QLatin1String(language.word) + QLatin1String(".qm");
    for (const QString &name : {QString::fromLatin1(language.qtCatalogue), ownCatalogue}) {
        if (name.isEmpty())
            continue;
        auto *const translator = new QTranslator(owner);
        translators.append(translator);
        if (translator->load(name, folder))
            QCoreApplication::installTranslator(translator);
    }
    return translators;
}
