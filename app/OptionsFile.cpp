#include "app/OptionsFile.h"

#include <QDomDocument>
#include <QFile>

#include <array>

namespace {

struct Switch
{
    const char *element;
    bool Options::*value;
};

constexpr std::array<Switch, 3> switches = {{
    {"AutoStart", &Options::autoStart},
    {"RecoveryData", &Options::recoveryData},
    {"AutoHttpd", &Options::autoHttpd},
}};

} // namespace

bool readOptionsFile(const QString &filePath, Options &options)
{
    QFile file(filePath);
    QDomDocument document;
    if (!file.exists() || !file.open(QIODevice::ReadWrite) || !document.setContent(&file))
        return false;
    QDomNode node = document.documentElement().firstChild();
    for (const Switch &option : switches) {
        if (node.nodeName() != QLatin1String(option.element))
            break;
        options.*option.value = node.toElement().text().toInt() == 1;
        node = node.nextSibling();
    }
    return true;
}
