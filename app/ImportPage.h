#pragma once

#include "app/PathPage.h"

class QCheckBox;
class QLabel;

/// Asks which file to import, and what becomes of the present list.
class ImportPage : public PathPage
{
    Q_OBJECT

public:
    explicit ImportPage(QWidget *parent);

    /// State of the "Clear list" box. When it is set, the import keeps the present list.
    bool clearList() const;

private:
    void updateHint();

    QCheckBox *m_clearListBox;
    QLabel *m_hintLabel; ///< says what the box, as it stands, does
};
