#pragma once

#include "model/WholeFile.h"

#include <QObject>
#include <QVector>

class QAction;
class QActionGroup;
class QTranslator;
struct Language;

/// The language of the interface. Owns the language word of this run and the one that is stored for
/// the next, the installed translators, the two actions that choose between the languages, and the
/// boxes that follow a choice. GUI thread.
class LanguageSetting : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of the actions; `folder` holds "language/" and
    /// ends in "/". English until load().
    LanguageSetting(const QString &folder, QWidget &window);

    /// The language of this run.
    const Language &language() const { return *m_language; }
    /// The actions in menu order. The object name of each is its language word.
    QList<QAction *> actions() const;

    /// Loads the stored language, after storing that of the installer's note, if any. Removes the
    /// note once its language is stored. Call this before anything shows a text: no widget is
    /// translated again. Returns false if nothing readable is stored.
    bool load();
    /// Change the language of this run.
    void loadChinese();
    void loadEnglish();
    /// Stores the language of the checked action, for the next start. If that fails, tells the user
    /// and makes the actions show the stored language.
    void storeChosen();

    /// Write the language word to a new file, or to an existing one.
    WriteResult createFile(const QString &language) const;
    WriteResult updateFile(const QString &language) const;

private:
    void use(const QString &language);
    void speak(const Language &language);
    void takeInstallersNote();
    WriteResult store(const QString &language) const;
    void showStored();

    QString m_folder;
    QString m_configPath;
    const Language *m_language; ///< of this run
    QString m_stored;           ///< language word of the next run
    QVector<QTranslator *> m_translators;
    QActionGroup *m_actions;
};
