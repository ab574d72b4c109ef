#include "widgets/Modal.h"

#include <QApplication>
#include <QDialog>
#include <QIcon>
#include <QMainWindow>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace {

Modal::Runner &currentRunner()
{
    static Modal::Runner runner;
    return runner;
}

void setUp(QMessageBox &box, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    box.setWindowIcon(Modal::windowIcon());
    box.setIcon(icon);
    box.setWindowTitle(title);
    box.setText(text);
}

/// The program's window where it is on screen.
const QWidget *mainWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isVisible() && qobject_cast<const QMainWindow *>(window);
    });
    return found == windows.end() ? nullptr : *found;
}

/// Over the program's window. Qt would take the parent, which for a question of a service is not on
/// screen, or there is none.
void centre(QDialog &dialog)
{
    const QWidget *const parent = dialog.parentWidget();
    const QWidget *const window = mainWindow();
    if (!window || (parent && parent->isVisible()))
        return;
    dialog.adjustSize();
    dialog.move(window->geometry().center() - dialog.rect().center());
}

} // namespace

namespace Modal {

int run(QDialog &dialog)
{
    if (currentRunner())
        return currentRunner()(dialog);
    centre(dialog);
    return dialog.exec();
}

void setRunner(Runner runner)
{
    currentRunner() = std::move(runner);
}

QIcon windowIcon()
{
    return QIcon(QStringLiteral("./resource/logo.png"));
}

void message(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    QMessageBox box(parent);
    setUp(box, icon, title, text);
    box.setStandardButtons(QMessageBox::Ok);
    run(box);
}

Answer question(QWidget *parent, const QString &title, const QString &text)
{
    QMessageBox box(parent);
    setUp(box, QMessageBox::Question, title, text);
    const QPushButton *yes =
        box.addButton(QCoreApplication::translate("Modal", "Yes"), QMessageBox::YesRole);
    QPushButton *no =
        box.addButton(QCoreApplication::translate("Modal", "No"), QMessageBox::NoRole);
    // What a key pressed too early does must be harmless.
    box.setDefaultButton(no);
    run(box);
    if (box.clickedButton() == yes)
        return Answer::Yes;
    return box.clickedButton() == no ? Answer::No : Answer::Dismissed;
}

} // namespace Modal
