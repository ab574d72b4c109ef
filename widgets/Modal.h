#pragma once

#include <QMessageBox>

#include <functional>

class QDialog;

/// The only place where the program stops to ask the user: every message box, file dialog and
/// chooser is built in full and then run here. A test installs a runner, which gets the real
/// dialog, checks its texts and presses its buttons, so that no test waits for a person.
namespace Modal {

/// Takes the dialog and returns its result, as QDialog::exec() does.
using Runner = std::function<int(QDialog &)>;

/// Runs `dialog` modally and returns its result. GUI thread. The state of the program may have
/// changed when this returns, as an event loop ran meanwhile.
int run(QDialog &dialog);

/// Replaces how dialogs are run; an empty runner restores QDialog::exec(). For tests.
void setRunner(Runner runner);

/// The icon of every message box and dialog of the program.
QIcon windowIcon();

/// Shows a message with a single Ok button. `note`, if any, stands below the text. All boxes show
/// their texts as plain text.
void message(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text,
             const QString &note = {});

enum class Answer {
    Yes,
    No,
    YesToAll,
    NoToAll,
    Dismissed, ///< the box was closed without a button
};
/// Asks a question with the buttons "Yes" and "No". `note`, if any, stands below the question.
Answer question(QWidget *parent, const QString &title, const QString &text,
                const QString &note = {});

/// The same with two more buttons, "Yes to All" and "No to All".
Answer questionOfMany(QWidget *parent, const QString &title, const QString &text);

} // namespace Modal
