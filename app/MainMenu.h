#pragma once

#include <QCoreApplication>

class LanguageSetting;
class MainWindow;
class OptionsSetting;

/// The menu bar of the window.
class MainMenu
{
    Q_DECLARE_TR_FUNCTIONS(MainMenu)

public:
    /// Creates the menus, and those actions that no setting owns. The window owns them, and each
    /// action is connected to its slot there.
    static void addTo(MainWindow &window, const LanguageSetting &language,
                      const OptionsSetting &options);
};
