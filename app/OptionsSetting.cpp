#include "app/OptionsSetting.h"

#include "app/AutoStart.h"
#include "app/NotWritten.h"
#include "model/DebugLog.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

QAction *optionAction(const QString &text, const QString &statusTip, QWidget &window)
{
    auto *const action = new QAction(text, &window);
    action->setStatusTip(statusTip);
    action->setCheckable(true);
    return action;
}

} // namespace

OptionsSetting::OptionsSetting(DataMgr &dataMgr, const QString &folder, QWidget &window)
    : QObject(&window)
    , m_dataMgr(dataMgr)
    , m_path(folder + QLatin1String("language/options.xml"))
    , m_autoStart(optionAction(tr("Auto Start"), tr("auto start"), window))
    , m_recoveryData(optionAction(tr("Recovery Data"), tr("recovery data"), window))
    , m_autoHttpd(optionAction(tr("Auto Httpd"), tr("auto httpd"), window))
{
}

bool OptionsSetting::readAndApply()
{
    if (!readOptionsFile(m_path, m_stored))
        return false;
    show(m_stored);
    if (m_recoveryData->isChecked() && m_dataMgr.isStoreUsable())
        m_dataMgr.recoverPreviousData();
    return true;
}

bool OptionsSetting::opensHttpd() const
{
    return m_autoHttpd->isChecked();
}

void OptionsSetting::show(const Options &options)
{
    m_autoStart->setChecked(options.autoStart.value_or(false));
    m_recoveryData->setChecked(options.recoveryData.value_or(false));
    m_autoHttpd->setChecked(options.autoHttpd.value_or(false));
}

void OptionsSetting::storeShown()
{
    Options wanted = {m_autoStart->isChecked(), m_recoveryData->isChecked(),
                      m_autoHttpd->isChecked()};
    // The switch is off because the file lacks it, not because anybody chose so.
    if (!m_stored.recoveryData && !*wanted.recoveryData)
        wanted.recoveryData = true;
    show(m_stored);
    if (!store(wanted))
        return;
    m_stored = wanted;
    show(m_stored);
    Modal::message(nullptr, QMessageBox::Information, tr("Options change"),
                   tr("Config's change will take effect after reboot."));
}

/// Stores everything or, as far as possible, nothing.
bool OptionsSetting::store(const Options &wanted)
{
    const bool before = m_stored.autoStart.value_or(false);
    const bool changesAutoStart = *wanted.autoStart != before;
    if (changesAutoStart) {
        const WriteResult entered = setAutoStart(*wanted.autoStart);
        if (!entered) {
            NotWritten::tell(nullptr, tr("Options change"), AutoStart::place(), entered);
            return false;
        }
    }
    const WriteResult stored = QFile::exists(m_path) ? updateFile(wanted) : createFile(wanted);
    if (stored)
        return true;
    if (changesAutoStart)
        static_cast<void>(setAutoStart(before));
    NotWritten::tell(nullptr, tr("Options change"), m_path, stored);
    return false;
}

WriteResult OptionsSetting::setAutoStart(bool on)
{
    const QString appPath = QCoreApplication::applicationFilePath();
    qCDebug(debugLog) << "appPath = " << QDir::toNativeSeparators(appPath);
    qCDebug(debugLog) << "keyPath = " << QDir::toNativeSeparators(AutoStart::place());
    return AutoStart::set(appPath, on);
}

WriteResult OptionsSetting::createFile(const Options &options) const
{
    return createOptionsFile(m_path, options);
}

WriteResult OptionsSetting::updateFile(const Options &options) const
{
    return updateOptionsFile(m_path, options);
}
