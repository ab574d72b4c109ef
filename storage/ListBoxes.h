#pragma once

#include "storage/ListJob.h"

#include <QCoreApplication>

/// The message boxes of the work on the list. GUI thread; each call returns when its box is closed.
class ListBoxes
{
    Q_DECLARE_TR_FUNCTIONS(ListBoxes)
public:
    /// Puts a job's question to the user.
    static ListJob::Answer ask(const ListJob::Question &question);
    static void tellChangeFailed(const QString &reason);
    /// Tells that the list could not be saved, and when it will be: with the next change if the
    /// store is usable, else in a copy at the program's end.
    static void tellSaveFailed(const QString &reason, bool isStoreUsable);
    /// At the end of the program: the list was written to a copy instead.
    static void tellKeptInCopy(const QString &reason, const QString &path);
    /// At the end of the program: not even a copy could be written. True when the user quits.
    static bool mayLoseList(const QString &reason);
    /// A save replaced rows that were never in the list; the copy at `path` has them.
    static void tellDatabaseCopied(const QString &path);

private:
    static ListJob::Answer askAboutListed(const ListJob::Question &question);
};
