#include "app/OptionsFile.h"

#include "model/SettingsFile.h"

#include <QDomDocument>

#include <algorithm>
#include <array>

namespace {

struct Switch
{
    const char *element;
    std::optional<bool> Options::*value;
    bool shipped;
};

constexpr std::array<Switch, 3> switches = {{
    {"AutoStart", &Options::autoStart, false},
    {"RecoveryData", &Options::recoveryData, true},
    {"AutoHttpd", &Options::autoHttpd, false},
}};

Options optionsIn(const QDomDocument &document)
{
    Options options;
    QDomNode node = document.documentElement().firstChild();
    for (const Switch &option : switches) {
        if (node.nodeName() != QLatin1String(option.element))
            break;
        options.*option.value = node.toElement().text().toInt() == 1;
        node = node.nextSibling();
    }
    return options;
}

/// Whether all three switches are in the expected order.
bool hasEverySwitch(const QDomDocument &document)
{
    QDomNode node = document.documentElement().firstChild();
    return std::all_of(switches.begin(), switches.end(), [&node](const Switch &option) {
        const bool found = node.nodeName() == QLatin1String(option.element);
        node = node.nextSibling();
        return found;
    });
}

SettingsFile::Values valuesOf(const Options &options)
{
    SettingsFile::Values values;
    for (const Switch &option : switches)
        values.append({QLatin1String(option.element),
                       (options.*option.value).value_or(option.shipped) ? QStringLiteral("1")
                                                                        : QStringLiteral("0")});
    return values;
}

} // namespace

bool readOptionsFile(const QString &filePath, Options &options)
{
    options = {};
    QDomDocument document;
    if (!SettingsFile::read(filePath, QIODevice::ReadWrite, document))
        return false;
    options = optionsIn(document);
    return true;
}

WriteResult createOptionsFile(const QString &filePath, const Options &options)
{
    return SettingsFile::create(filePath, valuesOf(options));
}

WriteResult updateOptionsFile(const QString &filePath, const Options &options)
{
    return SettingsFile::update(filePath, valuesOf(options), hasEverySwitch);
}
