#include "app/ImportPage.h"

#include <QCheckBox>
#include <QLabel>

ImportPage::ImportPage(QWidget *parent)
    : PathPage(
          {QStringLiteral("import"), tr("Import file"), QString(), tr("Select File"), tr("Import")},
          parent)
    , m_clearListBox(new QCheckBox(tr("Clear list"), this))
    , m_hintLabel(new QLabel(this))
{
    m_clearListBox->setObjectName(QStringLiteral("clearListCheckBox"));
    m_clearListBox->setToolTip(tr("When checked, the devices of the file are added to the present "
                                  "list; when unchecked, they replace it, and it is kept in the "
                                  "folder backup/."));
    m_hintLabel->setObjectName(QStringLiteral("clearListHintLabel"));
    m_hintLabel->setWordWrap(true);
    connect(m_clearListBox, &QCheckBox::toggled, this, &ImportPage::updateHint);
    addOption(m_clearListBox);
    addOption(m_hintLabel, 1);
    updateHint();
}

bool ImportPage::clearList() const
{
    return m_clearListBox->isChecked();
}

void ImportPage::updateHint()
{
    m_hintLabel->setText(clearList() ? tr("The devices of the file are added to the present list.")
                                     : tr("The devices of the file replace the present list, "
                                          "which is kept in the folder backup/."));
    m_clearListBox->setAccessibleDescription(m_hintLabel->text());
}
