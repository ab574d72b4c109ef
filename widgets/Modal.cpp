#include "widgets/Modal.h"

#include <QApplication>
#include <QDialog>
#include <QHash>
#include <QIcon>
#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

Modal::Runner &currentRunner()
{
    static Modal::Runner runner;
    return runner;
}

void setUp(QMessageBox &box, QMessageBox::Icon icon, const QString &title, const QString &text,
           const QString &note)
{
    box.setWindowIcon(Modal::windowIcon());
    box.setIcon(icon);
    box.setWindowTitle(title);
    box.setText(text);
    box.setInformativeText(note);
    // The text format of the box would not apply to the note.
    const auto labels = box.findChildren<QLabel *>();
    for (QLabel *const label : labels)
        label->setTextFormat(Qt::PlainText);
}

/// The main window if it is visible, else null.
const QWidget *mainWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isVisible() && qobject_cast<const QMainWindow *>(window);
    });
    return found == windows.end() ? nullptr : *found;
}

/// Centres a dialog that has no position yet over the main window. Qt would take the parent, but a
/// question from a service has a hidden one or none. The dialog knows its size only once it is
/// shown.
void centreWhenShown(QDialog &dialog)
{
    const QWidget *const parent = dialog.parentWidget();
    const QPointer<const QWidget> window = mainWindow();
    if (!window || (parent && parent->isVisible()) || dialog.testAttribute(Qt::WA_Moved))
        return;
    QTimer::singleShot(0, &dialog, [&dialog, window] {
        if (window)
            dialog.move(window->geometry().center() - dialog.rect().center());
    });
}

Modal::Answer ask(QWidget *parent, const QString &title, const QString &text, bool ofMany,
                  const QString &note = {})
{
    using Modal::Answer;
    QMessageBox box(parent);
    setUp(box, QMessageBox::Question, title, text, note);
    QHash<const QAbstractButton *, Answer> answers;
    const auto add = [&](const QString &label, QMessageBox::ButtonRole role, Answer answer) {
        QPushButton *const button = box.addButton(label, role);
        answers.insert(button, answer);
        return button;
    };
    add(QCoreApplication::translate("Modal", "Yes"), QMessageBox::YesRole, Answer::Yes);
    QPushButton *const no =
        add(QCoreApplication::translate("Modal", "No"), QMessageBox::NoRole, Answer::No);
    if (ofMany) {
        add(QCoreApplication::translate("Modal", "Yes to All"), QMessageBox::YesRole,
            Answer::YesToAll);
        add(QCoreApplication::translate("Modal", "No to All"), QMessageBox::NoRole,
            Answer::NoToAll);
    }
    // A key pressed too early must do no harm.
    box.setDefaultButton(no);
    if (ofMany)
        box.setEscapeButton(no); // a single "No" is found by its role
    Modal::run(box);
    return answers.value(box.clickedButton(), Answer::Dismissed);
}

} // namespace

namespace Modal {

int run(QDialog &dialog)
{
    if (currentRunner())
        return currentRunner()(dialog);
    centreWhenShown(dialog);
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

void message(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text,
             const QString &note)
{
    QMessageBox box(parent);
    setUp(box, icon, title, text, note);
    box.setStandardButtons(QMessageBox::Ok);
    run(box);
}

Answer question(QWidget *parent, const QString &title, const QString &text, const QString &note)
{
    return ask(parent, title, text, false, note);
}

Answer questionOfMany(QWidget *parent, const QString &title, const QString &text)
{
    return ask(parent, title, text, true);
}

} // namespace Modal
