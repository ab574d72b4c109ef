#pragma once

#include "app/PathPage.h"
#include "storage/ImportLook.h"

#include <QTimer>

class QCheckBox;
class QLabel;

/// Asks which file to import, and what becomes of the present list. Tells what the import of the
/// chosen file will do.
class ImportPage : public PathPage
{
    Q_OBJECT

public:
    explicit ImportPage(QWidget *parent);

    /// State of the box "Clear list". Despite the label, an import with a checked box keeps the
    /// present list and adds to it.
    bool clearList() const;

    /// Shows what is known of the file.
    void showOutlook(const ImportOutlook &outlook);
    /// Requests a look at the chosen file, after a short delay.
    void lookAhead();

signals:
    /// The file at `path`, which need not exist, is to be looked at; an empty path ends the look.
    void lookWanted(const QString &path);

protected:
    void hideEvent(QHideEvent *event) override;

private:
    void updateHint();
    void updatePreview();
    QString previewText() const;
    QString numbersText() const;

    QCheckBox *m_clearListBox;
    QLabel *m_hintLabel;    ///< tells what the box does in its present state
    QLabel *m_previewLabel; ///< tells what an import of the file would do
    ImportOutlook m_outlook;
    QTimer m_typingPause; ///< delay of the look while a path is being typed
};
