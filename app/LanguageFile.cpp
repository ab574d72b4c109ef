#include "app/LanguageFile.h"

#include "app/Language.h"
#include "model/SettingsFile.h"

#include <QDomDocument>
#include <QFile>
#include <QTextStream>

#include <algorithm>

namespace {

constexpr qint64 maxHintLength = qint64(64) * 1024;

QString elementName()
{
    return QStringLiteral("Language");
}

QString languageIn(const QDomDocument &document)
{
    QString language;
    QDomElement element = document.documentElement().firstChildElement(elementName());
    while (element.tagName() == elementName()) {
        language = element.text();
        element = element.nextSiblingElement();
    }
    return language;
}

} // namespace

bool readLanguageFile(const QString &filePath, QString &language)
{
    QDomDocument document;
    if (!SettingsFile::read(filePath, QIODevice::ReadOnly, document))
        return false;
    language = languageIn(document);
    return true;
}

WriteResult createLanguageFile(const QString &filePath, const QString &language)
{
    return SettingsFile::create(filePath, {{elementName(), language}});
}

WriteResult updateLanguageFile(const QString &filePath, const QString &language)
{
    return SettingsFile::update(
        filePath, {{elementName(), language}},
        [&language](const QDomDocument &written) { return languageIn(written) == language; });
}

QString languageHint(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    QTextStream stream(&file);
    const QString line = stream.readLine(maxHintLength);
    const auto *const language =
        std::find_if(languages.begin(), languages.end(), [&line](const Language &one) {
            return line.contains(QLatin1String(one.installerWord));
        });
    return language == languages.end() ? QString() : QLatin1String(language->word);
}
