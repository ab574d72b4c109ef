#pragma once

#include "model/WholeFile.h"

#include <QObject>
#include <QVector>

class QAction;
class QActionGroup;
class QTranslator;

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

    /// "zh" or "en".
    const QString &language() const { return m_language; }
    bool isChinese() const;
    /// In menu order. Each has its language word as object name.
    QList<QAction *> actions() const;

    /// Loads the language by the installer's note if there is one, which it uses up, else as it was
    /// stored. To be called before anything that shows a text: no widget is translated again. False
    /// when nothing readable is stored.
    bool load();
    /// Install the translators, and remember the language word.
    void loadChinese();
    void loadEnglish();
    /// Stores the language whose action is checked; it counts from the next start on. Where it
    /// cannot be stored, the user is told and the actions show what is.
    void storeChosen();

    /// Write the language word to a new file, and to one that is there.
    WriteResult createFile(const QString &language) const;
    WriteResult updateFile(const QString &language) const;

private:
    void use(const QString &language);
    void installTranslators(const QStringList &fileNames);
    void takeInstallersNote();
    WriteResult store(const QString &language) const;
    void showStored();

    QString m_folder;
    QString m_configPath;
    QString m_language; ///< of this run
    QString m_stored;   ///< of the next
    QVector<QTranslator *> m_translators;
    QActionGroup *m_actions;
};
