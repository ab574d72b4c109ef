#pragma once

#include "app/OptionsFile.h"

#include <QObject>

class DataMgr;
class QAction;
class QWidget;

/// The three options. Owns them as they are stored, the actions that show them, the entry that
/// starts the program with the user's session, and the boxes that follow a change. GUI thread.
class OptionsSetting : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of the actions; `folder` holds "language/" and
    /// ends in "/". `dataMgr` must outlive this object.
    OptionsSetting(DataMgr &dataMgr, const QString &folder, QWidget &window);

    /// Each is checked while its option is on.
    QAction *autoStartAction() const { return m_autoStart; }
    QAction *recoveryDataAction() const { return m_recoveryData; }
    QAction *autoHttpdAction() const { return m_autoHttpd; }

    /// Reads the stored options and shows them. Lets the data manager recover the stored list if
    /// they say so. False when there are none.
    bool readAndApply();
    /// True when the HTTP service is to be opened at the start.
    bool opensHttpd() const;
    /// Stores the options as the actions show them; they count from the next start on. Where they
    /// cannot be stored, the user is told and the actions show what is.
    void storeShown();

    /// Lets the user's session start the program, or no longer.
    static WriteResult setAutoStart(bool on);
    /// Write the options to a new file, and to one that is there.
    WriteResult createFile(const Options &options) const;
    WriteResult updateFile(const Options &options) const;

private:
    void show(const Options &options);
    bool store(const Options &wanted);

    DataMgr &m_dataMgr;
    QString m_path;
    Options m_stored;
    QAction *m_autoStart;
    QAction *m_recoveryData;
    QAction *m_autoHttpd;
};
