#include "app/Appearance.h"
#include "app/CommandLine.h"
#include "app/MainWindow.h"
#include "app/SingleApplication.h"
#include "model/ContactInfo.h"
#include "model/ProgramFolder.h"

#include <QDir>
#include <QLoggingCategory>

namespace {

void quietDebugLog()
{
#ifdef NDEBUG
    // Qt's logging rules from the environment can switch the messages on again.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    quietDebugLog();
    if (CommandLine::isWanted(argc, argv))
        return CommandLine::run(argc, argv);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    // With rounding, 150% becomes 200%, and the window is too large for screens that are set to it.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);

    auto *const application = new SingleApplication(argc, argv);
    // The program may be started from anywhere, but finds its files by relative paths.
    QDir::setCurrent(programFolder());
    registerContactTypes();
    applyAppearance(*application);

    auto *const window = new MainWindow;
    QObject::connect(window, &MainWindow::globalQuit, application, &QCoreApplication::quit);
    QObject::connect(application, &SingleApplication::showUp, window, &MainWindow::bringToFront);
    window->show();

    const int status = QApplication::exec();
    delete window;
    delete application;
    return status;
}
