#include "app/LanguageSetting.h"

#include "app/Appearance.h"
#include "app/Language.h"
#include "app/LanguageFile.h"
#include "app/NotWritten.h"
#include "widgets/Modal.h"

#include <QActionGroup>
#include <QFile>
#include <QTranslator>

namespace {

const QLatin1String notePath("./VLManager.ini");
const QLatin1String chinese("zh");
const QLatin1String english("en");

} // namespace

LanguageSetting::LanguageSetting(const QString &folder, QWidget &window)
    : QObject(&window)
    , m_folder(folder)
    , m_configPath(folder + languageFileName)
    , m_language(&languageOf(english))
    , m_stored(english)
    , m_actions(new QActionGroup(this))
{
    for (const Language &language : languages) {
        auto *const action = new QAction(QString::fromUtf8(language.name), &window);
        action->setObjectName(QLatin1String(language.word));
        action->setCheckable(true);
        m_actions->addAction(action);
    }
    m_actions->setExclusive(true);
    showStored();
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
    speak(languageOf(language));
    m_stored = QLatin1String(m_language->word);
}

void LanguageSetting::loadChinese()
{
    speak(languageOf(chinese));
}

void LanguageSetting::loadEnglish()
{
    speak(languageOf(english));
}

void LanguageSetting::speak(const Language &language)
{
    m_language = &language;
    qDeleteAll(m_translators);
    m_translators = installTranslators(language, m_folder + languageFolder, this);
    if (QLatin1String(language.word) == chinese)
        applyChineseFont();
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
