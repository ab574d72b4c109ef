#pragma once

#include "app/OptionsFile.h"

#include <QObject>

class DataMgr;
class QAction;
class QWidget;

/// The three options. Owns their stored values, the actions that show them, the entry that starts
/// the program with the user's session, and the boxes that follow a change. GUI thread.
class OptionsSetting : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of the actions; `folder` holds "language/" and
    /// ends in "/". `dataMgr` must outlive this object.
    OptionsSetting(DataMgr &dataMgr, const QString &folder, QWidget &window);

    /// Each action is checked while its option is on.
    QAction *autoStartAction() const { return m_autoStart; }
    QAction *recoveryDataAction() const { return m_recoveryData; }
    QAction *autoHttpdAction() const { return m_autoHttpd; }

    /// Reads the stored options and shows them. Makes the data manager recover the stored list if
    /// the option for that is on. Returns false if no options can be read.
    bool readAndApply();
    /// Whether the HTTP service is to be opened at the start.
    bool opensHttpd() const;
    /// Stores the options that the actions show, for the next start. If that fails, tells the user
    /// and makes the actions show the stored options.
    void storeShown();

    /// Enters whether the user's session starts the program.
    static WriteResult setAutoStart(bool on);
    /// Write the options to a new file, or to an existing one.
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
