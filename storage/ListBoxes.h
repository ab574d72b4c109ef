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
    /// The present list could not be saved. What becomes of it depends on whether the store can be
    /// used in this run.
    static void tellSaveFailed(const QString &reason, bool isStoreUsable);
    /// At the end of the program, the list was written to a copy instead.
    static void tellKeptInCopy(const QString &reason, const QString &path);
    /// At its end again, neither could be written. True when the user quits all the same.
    static bool mayLoseList(const QString &reason);
    /// A save went over rows of another program, which the user may miss.
    static void tellDatabaseCopied(const QString &path);

private:
    static ListJob::Answer askAboutListed(const ListJob::Question &question);
};
