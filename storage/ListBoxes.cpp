#include "storage/ListBoxes.h"

#include "net/PrintableText.h"
#include "widgets/Modal.h"

ListJob::Answer ListBoxes::ask(const ListJob::Question &question)
{
    if (question.about == ListJob::About::ListedDevice)
        return askAboutListed(question);
    const QString text = tr("The backup of the device list can not be written: %1. "
                            "Do you want to go on without a backup?")
                             .arg(question.reason);
    const Modal::Answer answer = Modal::question(nullptr, tr("Backup Error"), text);
    return answer == Modal::Answer::Yes ? ListJob::Answer::Yes : ListJob::Answer::No;
}

ListJob::Answer ListBoxes::askAboutListed(const ListJob::Question &question)
{
    const QString text = QLatin1String("MAC:") + shortPrintableText(question.mac) +
                         tr(" has already exist") + tr(",") + tr("do you want to replace it?");
    const QString title = tr("Replace action");
    switch (question.several ? Modal::questionOfMany(nullptr, title, text)
                             : Modal::question(nullptr, title, text)) {
    case Modal::Answer::Yes:
        return ListJob::Answer::Yes;
    case Modal::Answer::YesToAll:
        return ListJob::Answer::YesToAll;
    case Modal::Answer::NoToAll:
        return ListJob::Answer::NoToAll;
    case Modal::Answer::No:
    case Modal::Answer::Dismissed:
        break;
    }
    return ListJob::Answer::No;
}

void ListBoxes::tellChangeFailed(const QString &reason)
{
    Modal::message(nullptr, QMessageBox::Warning, tr("Save Error"),
                   tr("The device list can not be changed: %1.").arg(reason));
}

void ListBoxes::tellSaveFailed(const QString &reason, bool isStoreUsable)
{
    const QString text =
        isStoreUsable
            ? tr("The device list can not be saved: %1. "
                 "It is kept in the window and will be saved with the next change.")
            : tr("The device list can not be saved: %1. "
                 "It is kept in the window, and a copy is written when the program ends.");
    Modal::message(nullptr, QMessageBox::Warning, tr("Save Error"), text.arg(reason));
}

void ListBoxes::tellKeptInCopy(const QString &reason, const QString &path)
{
    Modal::message(
        nullptr, QMessageBox::Warning, tr("Save Error"),
        tr("The device list can not be saved: %1. A copy of it is kept in %2.").arg(reason, path));
}

bool ListBoxes::mayLoseList(const QString &reason)
{
    return Modal::question(nullptr, tr("Save Error"),
                           tr("Neither the device list nor a copy of it can be written: %1. "
                              "Do you want to quit and lose the changes?")
                               .arg(reason)) == Modal::Answer::Yes;
}

void ListBoxes::tellDatabaseCopied(const QString &path)
{
    Modal::message(nullptr, QMessageBox::Information, tr("Backup"),
                   tr("phonebook.db held rows that are not in this list. The list is saved over "
                      "them, and the file as it was is kept in %1.")
                       .arg(path));
}
