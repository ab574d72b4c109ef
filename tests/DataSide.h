#pragma once

#include "TestDevices.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QSet>
#include <QSignalSpy>

#include <functional>

/// What the tests of the program's data side work with: a user, and runs of the program over one
/// folder.

struct SeenBox
{
    QString title;
    QString text;
    QSet<QString> buttons; ///< in no order: that is the desktop's choice
};

/// Stands for the user: remembers every box and presses a button of it.
class User
{
public:
    User()
    {
        Modal::setRunner([this](QDialog &dialog) {
            auto &box = static_cast<QMessageBox &>(dialog);
            const QString answer = answers.size() > 1 ? answers.takeFirst() : answers.value(0);
            SeenBox seen{box.windowTitle(), box.text(), {}};
            QAbstractButton *pressed = nullptr;
            const QList<QAbstractButton *> buttons = box.buttons();
            for (QAbstractButton *button : buttons) {
                seen.buttons.insert(button->text());
                if (button->text() == answer)
                    pressed = button;
            }
            boxes.append(seen);
            if (meanwhile)
                meanwhile();
            if (pressed)
                pressed->click();
            return 0;
        });
    }
    ~User() { Modal::setRunner({}); }
    User(const User &) = delete;
    User &operator=(const User &) = delete;

    QStringList titles() const
    {
        QStringList titles;
        for (const SeenBox &box : boxes)
            titles.append(box.title);
        return titles;
    }

    QList<SeenBox> boxes;
    QStringList answers;             ///< buttons to press in turn, the last one again and again
    std::function<void()> meanwhile; ///< happens while each box is open
};

const QString yes = QStringLiteral("Yes");
const QString no = QStringLiteral("No");
const QString replaceAction = QStringLiteral("Replace action");
const QString saveError = QStringLiteral("Save Error");
const QString backupError = QStringLiteral("Backup Error");
const QString backupTold = QStringLiteral("Backup");

/// The program's data side over one folder, as one run of the program has it. Every job is over
/// when the call that starts it returns, unless a test wants slices.
struct Run
{
    explicit Run(const QString &folder)
        : dbOperator(folder + QLatin1Char('/'))
        , mgr(dbOperator, folder + QLatin1Char('/'))
        , changes(&mgr, &DataMgr::updateModel)
    {
        mgr.setSlice(-1);
        QObject::connect(&mgr.worker(), &ListWorker::ended, &mgr, [this](const ListJob &job) {
            lastPhase = job.phase();
            lastReason = job.reason();
        });
    }

    /// Opened, with the devices of these stamps when there are any.
    Run(const QString &folder, const char *stamps);

    /// The MACs without the ".mac" of stamped devices, with a blank between.
    QString stamps() const
    {
        QStringList stamps;
        for (int row = 0; row < mgr.devices().size(); ++row)
            stamps.append(mgr.devices().at(row).info.mac.section(QLatin1Char('.'), 0, 0));
        return stamps.join(QLatin1Char(' '));
    }
    QList<ContactInfo> contacts() const { return mgr.devices().snapshot().contacts(); }

    /// Whether the job that these calls start did what it was to.
    bool load()
    {
        lastPhase = ListJob::Phase::GivenUp; // unless it ends
        mgr.recoverPreviousData();
        return lastPhase == ListJob::Phase::Done;
    }
    bool import(const QString &path)
    {
        lastPhase = ListJob::Phase::GivenUp; // unless it ends
        mgr.importFile(path);
        return lastPhase == ListJob::Phase::Done;
    }
    bool save()
    {
        mgr.save();
        return mgr.isSaved();
    }
    bool deleteAll()
    {
        lastPhase = ListJob::Phase::GivenUp; // unless it ends
        mgr.deleteAllContacts();
        return lastPhase == ListJob::Phase::Done;
    }

    DBOperator dbOperator;
    DataMgr mgr;
    QSignalSpy changes;
    ListJob::Phase lastPhase = ListJob::Phase::Reading; ///< of the job that ended last
    QString lastReason;
};

/// The devices with these stamps, which stand with a blank between them.
inline QList<ContactInfo> stampedDevices(const char *stamps)
{
    QList<ContactInfo> devices;
    const QStringList list = QString::fromLatin1(stamps).split(QLatin1Char(' '));
    for (const QString &stamp : list)
        devices.append(stampedDevice(stamp));
    return devices;
}

inline Run::Run(const QString &folder, const char *stamps)
    : Run(folder)
{
    if (!mgr.openDatabase())
        qFatal("the store can not be opened");
    if (*stamps) {
        mgr.addContacts(stampedDevices(stamps));
        changes.clear();
    }
}

/// `devices` as they are listed, numbered from 1.
inline QList<ContactInfo> numbered(QList<ContactInfo> devices)
{
    for (int row = 0; row < devices.size(); ++row)
        devices[row].id = row + 1;
    return devices;
}

/// A list of devices whose fields need no quoting.
inline QString csvText(const QString &header, const QList<ContactInfo> &devices,
                       const QString &lineEnd = QStringLiteral("\n"))
{
    QString text = header + lineEnd;
    for (const ContactInfo &device : devices) {
        QStringList row;
        for (const ContactField &field : contactCsvFields())
            row.append(device.*field.member);
        text += row.join(QLatin1Char(',')) + lineEnd;
    }
    return text;
}

/// What a backup of these devices holds.
inline QByteArray backupText(const QList<ContactInfo> &devices)
{
    return csvText(englishCsvHeader(), devices, QStringLiteral("\r\n")).toUtf8();
}
