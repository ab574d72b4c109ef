// The window's settings: the interface language, the options and the port of the HTTP service.
#include "app/Appearance.h"
#include "app/AutoStart.h"
#include "app/LanguageFile.h"
#include "app/MainWindow.h"
#include "app/OptionsFile.h"
#include "app/PortDialog.h"
#include "model/DebugLog.h"
#include "net/HttpdPort.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

#include <QActionGroup>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTranslator>

#include <utility>

namespace {

const QLatin1String languageFolder("language/");
const QLatin1String optionsPath("language/options.xml");
const QLatin1String configPath("language/config.xml");
const QLatin1String portPath("port.xml");
const QLatin1String hintPath("./VLManager.ini");
const QLatin1String chinese("zh");
const QLatin1String english("en");

} // namespace

bool MainWindow::loadLanguageSetting()
{
    const QString hint = languageHint(hintPath);
    if (!hint.isEmpty()) {
        loadLanguage(hint);
        // In this order: a choice that cannot be stored yet must not be gone.
        if (storeLanguage(hint))
            QFile::remove(hintPath);
    }
    QString language;
    if (!readLanguageFile(m_folder + configPath, language))
        return false;
    loadLanguage(language);
    return true;
}

void MainWindow::loadLanguage(const QString &language)
{
    if (language == chinese)
        loadZhLang();
    else
        loadEnLang();
}

void MainWindow::loadZhLang()
{
    m_language = chinese;
    installTranslators({QStringLiteral("qt_zh_CN.qm"), QStringLiteral("zh.qm")});
    applyChineseFont();
}

void MainWindow::loadEnLang()
{
    m_language = english;
    installTranslators({QStringLiteral("en.qm")});
}

/// In place of those that are there. One whose file is missing leaves the built-in English texts.
void MainWindow::installTranslators(const QStringList &fileNames)
{
    m_chosenLanguage = m_language;
    qDeleteAll(m_translators);
    m_translators.clear();
    for (const QString &name : fileNames) {
        auto *const translator = new QTranslator(this);
        m_translators.append(translator);
        if (translator->load(name, m_folder + languageFolder))
            QCoreApplication::installTranslator(translator);
    }
}

void MainWindow::restoreLanguageSetting()
{
    const QString language = m_languageGroup->checkedAction()->objectName();
    if (language == m_chosenLanguage)
        return;
    const WriteResult stored = storeLanguage(language);
    if (!stored) {
        for (QAction *const action : m_languageGroup->actions())
            action->setChecked(action->objectName() == m_chosenLanguage);
        tellNotStored(nullptr, tr("Language change"), m_folder + configPath, stored);
        return;
    }
    m_chosenLanguage = language;
    Modal::message(nullptr, QMessageBox::Information, tr("Language change"),
                   tr("Language change will take effect after reboot."));
}

WriteResult MainWindow::storeLanguage(const QString &language)
{
    return QFile::exists(m_folder + configPath) ? updateConfigFile(language)
                                                : createConfigFile(language);
}

WriteResult MainWindow::createConfigFile(const QString &language)
{
    return createLanguageFile(m_folder + configPath, language);
}

WriteResult MainWindow::updateConfigFile(const QString &language)
{
    return updateLanguageFile(m_folder + configPath, language);
}

bool MainWindow::readOptionsAndSet()
{
    if (!readOptionsFile(m_folder + optionsPath, m_options))
        return false;
    showOptions(m_options);
    if (m_recoveryDataAction->isChecked() && m_dataMgr.isStoreUsable())
        m_dataMgr.recoverPreviousData();
    return true;
}

void MainWindow::showOptions(const Options &options)
{
    m_autoStartAction->setChecked(options.autoStart.value_or(false));
    m_recoveryDataAction->setChecked(options.recoveryData.value_or(false));
    m_autoHttpdAction->setChecked(options.autoHttpd.value_or(false));
}

void MainWindow::restoreOptions()
{
    Options wanted = {m_autoStartAction->isChecked(), m_recoveryDataAction->isChecked(),
                      m_autoHttpdAction->isChecked()};
    // Off, but not because anybody has chosen so.
    if (!m_options.recoveryData && !*wanted.recoveryData)
        wanted.recoveryData = true;
    showOptions(m_options);
    if (!storeOptions(wanted))
        return;
    m_options = wanted;
    showOptions(m_options);
    Modal::message(nullptr, QMessageBox::Information, tr("Options change"),
                   tr("Config's change will take effect after reboot."));
}

/// All of it or, as far as that can be had, nothing.
bool MainWindow::storeOptions(const Options &wanted)
{
    const bool before = m_options.autoStart.value_or(false);
    const bool changesAutoStart = *wanted.autoStart != before;
    if (changesAutoStart) {
        const WriteResult entered = setAutoStart(*wanted.autoStart);
        if (!entered) {
            tellNotStored(nullptr, tr("Options change"), AutoStart::place(), entered);
            return false;
        }
    }
    const WriteResult stored =
        QFile::exists(m_folder + optionsPath)
            ? updateOptionsFile(*wanted.autoStart, *wanted.recoveryData, *wanted.autoHttpd)
            : createOptionsFile(*wanted.autoStart, *wanted.recoveryData, *wanted.autoHttpd);
    if (stored)
        return true;
    if (changesAutoStart)
        static_cast<void>(setAutoStart(before));
    tellNotStored(nullptr, tr("Options change"), m_folder + optionsPath, stored);
    return false;
}

void MainWindow::tellNotStored(QWidget *parent, const QString &title, const QString &place,
                               const WriteResult &result)
{
    Modal::message(
        parent, QMessageBox::Warning, title,
        tr("%1 can not be written: %2.").arg(QDir::toNativeSeparators(place), result.reason()));
}

WriteResult MainWindow::setAutoStart(bool on)
{
    const QString appPath = QCoreApplication::applicationFilePath();
    qCDebug(debugLog) << "appPath = " << QDir::toNativeSeparators(appPath);
    qCDebug(debugLog) << "keyPath = " << QDir::toNativeSeparators(AutoStart::place());
    return AutoStart::set(appPath, on);
}

WriteResult MainWindow::createOptionsFile(bool autoStart, bool recoveryData, bool autoHttpd)
{
    return ::createOptionsFile(m_folder + optionsPath, {autoStart, recoveryData, autoHttpd});
}

WriteResult MainWindow::updateOptionsFile(bool autoStart, bool recoveryData, bool autoHttpd)
{
    return ::updateOptionsFile(m_folder + optionsPath, {autoStart, recoveryData, autoHttpd});
}

void MainWindow::configHttpdPortOption()
{
    if (!m_portDialog) {
        m_portDialog = new PortDialog(this);
        m_portDialog->setWindowModality(Qt::WindowModal);
        const HttpdPort stored = readHttpdPort(portPath);
        // What is neither choice is not to be kept by a press of OK.
        if (QFile::exists(portPath) && (stored.useDefault == 0 || stored.useDefault == 1))
            m_portDialog->setStored(stored.useDefault == 1, stored.portText);
        connect(m_portDialog->useDefaultBox(), &QCheckBox::clicked, this,
                &MainWindow::slotUseDefault);
        connect(m_portDialog->okButton(), &QPushButton::clicked, this,
                &MainWindow::configHttpdPortBegin);
        connect(m_portDialog->cancelButton(), &QPushButton::clicked, this,
                &MainWindow::configHttpdPortAbort);
        connect(m_portDialog, &QDialog::rejected, this, &MainWindow::configHttpdPortAbort);
    }
    m_portDialog->show();
}

void MainWindow::slotUseDefault(bool useDefault)
{
    if (m_portDialog)
        m_portDialog->setPortEnabled(!useDefault);
}

void MainWindow::configHttpdPortBegin()
{
    if (!m_portDialog)
        return;
    if (m_portDialog->isAsStored()) {
        configHttpdPortAbort();
        return;
    }
    const int port = m_portDialog->portText().toInt();
    const bool inRange = port >= PortDialog::lowestPort && port <= PortDialog::highestPort;
    if (!inRange && !m_portDialog->useDefault()) {
        Modal::message(m_portDialog, QMessageBox::Critical, tr("Port Error"),
                       tr("The port should between 5000 and 65535!"));
        if (m_portDialog)
            m_portDialog->showWrongPort();
        return;
    }
    const WriteResult stored =
        writeHttpdPort(portPath, m_portDialog->useDefault(), m_portDialog->portText());
    if (stored)
        configHttpdPortAbort();
    else
        tellNotStored(m_portDialog, tr("Port Error"), portPath, stored);
}

void MainWindow::configHttpdPortAbort()
{
    PortDialog *const dialog = std::exchange(m_portDialog, nullptr);
    if (!dialog)
        return;
    dialog->hide();
    dialog->deleteLater();
}
