#include "app/LanguageSetting.h"

#include "app/Appearance.h"
#include "app/LanguageFile.h"
#include "app/NotWritten.h"
#include "widgets/Modal.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QFile>
#include <QTranslator>

namespace {

const QLatin1String languageFolder("language/");
const QLatin1String configName("language/config.xml");
const QLatin1String notePath("./VLManager.ini");
const QLatin1String chinese("zh");
const QLatin1String english("en");

} // namespace

LanguageSetting::LanguageSetting(const QString &folder, QWidget &window)
    : QObject(&window)
    , m_folder(folder)
    , m_configPath(folder + configName)
    , m_language(english)
    , m_stored(english)
    , m_actions(new QActionGroup(this))
{
    // Each language is named in that language.
    auto *const chineseAction = new QAction(QStringLiteral("简体中文"), &window);
    chineseAction->setObjectName(chinese);
    auto *const englishAction = new QAction(QStringLiteral("English"), &window);
    englishAction->setObjectName(english);
    for (QAction *const action : {chineseAction, englishAction}) {
        action->setCheckable(true);
        m_actions->addAction(action);
    }
    m_actions->setExclusive(true);
    showStored();
}

bool LanguageSetting::isChinese() const
{
    return m_language == chinese;
}

QList<QAction *> LanguageSetting::actions() const
{
    return m_actions->actions();
}

bool LanguageSetting::load()
{
    takeInstallersNote();
    QString language;
    const bool isStored = readLanguageFile(m_configPath, language);
    if (isStored)
        use(language);
    showStored();
    return isStored;
}

void LanguageSetting::takeInstallersNote()
{
    const QString language = languageHint(notePath);
    if (language.isEmpty())
        return;
    use(language);
    // The note is removed last: a choice that cannot be stored yet must not be lost.
    if (store(language))
        QFile::remove(notePath);
}

void LanguageSetting::use(const QString &language)
{
    if (language == chinese)
        loadChinese();
    else
        loadEnglish();
}

void LanguageSetting::loadChinese()
{
    m_language = chinese;
    installTranslators({QStringLiteral("qt_zh_CN.qm"), QStringLiteral("zh.qm")});
    applyChineseFont();
}

void LanguageSetting::loadEnglish()
{
    m_language = english;
    installTranslators({QStringLiteral("en.qm")});
}

/// Replaces the installed translators. A missing file leaves the built-in English texts.
void LanguageSetting::installTranslators(const QStringList &fileNames)
{
    m_stored = m_language;
    qDeleteAll(m_translators);
    m_translators.clear();
    for (const QString &name : fileNames) {
        auto *const translator = new QTranslator(this);
        m_translators.append(translator);
        if (translator->load(name, m_folder + languageFolder))
            QCoreApplication::installTranslator(translator);
    }
}

void LanguageSetting::storeChosen()
{
    const QString language = m_actions->checkedAction()->objectName();
    if (language == m_stored)
        return;
    const WriteResult stored = store(language);
    if (!stored) {
        showStored();
        NotWritten::tell(nullptr, tr("Language change"), m_configPath, stored);
        return;
    }
    m_stored = language;
    Modal::message(nullptr, QMessageBox::Information, tr("Language change"),
                   tr("Language change will take effect after reboot."));
}

void LanguageSetting::showStored()
{
    const QList<QAction *> actions = m_actions->actions();
    for (QAction *const action : actions)
        action->setChecked(action->objectName() == m_stored);
}

WriteResult LanguageSetting::store(const QString &language) const
{
    return QFile::exists(m_configPath) ? updateFile(language) : createFile(language);
}

WriteResult LanguageSetting::createFile(const QString &language) const
{
    return createLanguageFile(m_configPath, language);
}

WriteResult LanguageSetting::updateFile(const QString &language) const
{
    return updateLanguageFile(m_configPath, language);
}
