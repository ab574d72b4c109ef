#pragma once

#include "app/PathPage.h"
#include "storage/ImportLook.h"

#include <QTimer>

class QCheckBox;
class QLabel;

/// Asks which file to import, and what becomes of the present list. Says of a file that is chosen
/// what its import will do.
class ImportPage : public PathPage
{
    Q_OBJECT

public:
    explicit ImportPage(QWidget *parent);

    /// State of the "Clear list" box. When it is set, the import keeps the present list.
    bool clearList() const;

    /// Says what is known of the file.
    void showOutlook(const ImportOutlook &outlook);
    /// Asks for a look at the file that is chosen, in a moment.
    void lookAhead();

signals:
    /// The file at `path`, which need not exist, is to be looked at; none, when it is empty.
    void lookWanted(const QString &path);

protected:
    void hideEvent(QHideEvent *event) override;

private:
    void updateHint();
    void updatePreview();
    QString previewText() const;
    QString numbersText() const;

    QCheckBox *m_clearListBox;
    QLabel *m_hintLabel;    ///< says what the box, as it stands, does
    QLabel *m_previewLabel; ///< says what an import of the file would do
    ImportOutlook m_outlook;
    QTimer m_typingPause; ///< until a path that is being typed is looked at
};
