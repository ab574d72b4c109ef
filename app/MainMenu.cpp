#include "app/MainMenu.h"

#include "app/LanguageSetting.h"
#include "app/MainWindow.h"
#include "app/OptionsSetting.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace {

/// The menu only shows these keys. The button of the same name reacts to them, as a shortcut with
/// two owners reaches neither.
using ShownKeys = QList<QKeySequence>;

QAction *addAction(MainWindow &window, const QString &text, const QString &statusTip,
                   void (MainWindow::*slot)(), const ShownKeys &keys = {})
{
    auto *const action = new QAction(text, &window);
    action->setStatusTip(statusTip);
    action->setShortcuts(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(action, &QAction::triggered, &window, slot);
    return action;
}

/// A null action stands for a separator.
void addMenu(MainWindow &window, const QString &text, const char *name,
             const QList<QAction *> &actions)
{
    QMenu *const menu = window.menuBar()->addMenu(text);
    menu->setObjectName(QLatin1String(name));
    for (QAction *const action : actions) {
        if (action)
            menu->addAction(action);
        else
            menu->addSeparator();
    }
}

ShownKeys key(const char *text)
{
    return {QKeySequence(QLatin1String(text))};
}

} // namespace

void MainMenu::addTo(MainWindow &window, const LanguageSetting &language,
                     const OptionsSetting &options)
{
    window.menuBar()->setObjectName(QStringLiteral("menu_bar"));
    addMenu(window, tr("&File"), "fileMenu",
            {addAction(window, tr("&New"), tr("construct a new device"),
                       &MainWindow::constructNewFile, QKeySequence::keyBindings(QKeySequence::New)),
             addAction(window, tr("&News"), tr("construct new devices"),
                       &MainWindow::constructNewFiles, key("CTRL+T")),
             nullptr,
             addAction(window, tr("&Exit"), tr("Quit program"), &MainWindow::closeWindow)});
    addMenu(window, tr("&Import"), "importMenu",
            {addAction(window, tr("&Local Import"), tr("Import file local"),
                       &MainWindow::localImport, key("CTRL+I"))});
    addMenu(window, tr("&Export"), "exportMenu",
            {addAction(window, tr("&Local Export"), tr("Export file local"),
                       &MainWindow::localExport, key("CTRL+E"))});
    // This action is in no menu.
    addAction(window, tr("&Httpd"), tr("Open httpd service"), &MainWindow::selectHttpdService);

    const QList<QAction *> languages = language.actions();
    addMenu(window, tr("&Language"), "langMenu", languages);
    for (QAction *const action : languages)
        QObject::connect(action, &QAction::triggered, &window, &MainWindow::restoreLanguageSetting);
    addMenu(window, tr("&Options"), "",
            {options.autoStartAction(), options.autoHttpdAction(),
             addAction(window, tr("Configure Httpd Port"), tr("Configure Httpd Port"),
                       &MainWindow::configHttpdPortOption)});
    for (QAction *const action :
         {options.autoStartAction(), options.recoveryDataAction(), options.autoHttpdAction()})
        QObject::connect(action, &QAction::triggered, &window, &MainWindow::restoreOptions);

    addMenu(window, tr("&Help"), "HelpMenu",
            {addAction(window, tr("Help"), tr("User Guide Help"), &MainWindow::showUserGuide)});
    addMenu(window, tr("&About"), "aboutMenu",
            {addAction(window, tr("About"), tr("Show about info"), &MainWindow::about)});
}
