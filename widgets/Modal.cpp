#include "widgets/Modal.h"

#include <QCoreApplication>
#include <QDialog>
#include <QIcon>
#include <QPushButton>

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

} // namespace

namespace Modal {

int run(QDialog &dialog)
{
    return currentRunner() ? currentRunner()(dialog) : dialog.exec();
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
    const QPushButton *no =
        box.addButton(QCoreApplication::translate("Modal", "No"), QMessageBox::NoRole);
    run(box);
    if (box.clickedButton() == yes)
        return Answer::Yes;
    return box.clickedButton() == no ? Answer::No : Answer::Dismissed;
}

} // namespace Modal
