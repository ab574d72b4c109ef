#include "app/ImportPage.h"

#include <QAccessible>
#include <QCheckBox>
#include <QHideEvent>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int typingPauseMilliseconds = 200;
constexpr int previewLines = 2;

} // namespace

ImportPage::ImportPage(QWidget *parent)
    : PathPage(
          {QStringLiteral("import"), tr("Import file"), QString(), tr("Select File"), tr("Import")},
          parent)
    , m_clearListBox(new QCheckBox(tr("Clear list"), this))
    , m_hintLabel(new QLabel(this))
    , m_previewLabel(new QLabel(this))
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
    m_previewLabel->setObjectName(QStringLiteral("importPreview"));
    m_previewLabel->setWordWrap(true);
    m_previewLabel->ensurePolished(); // sets the font of the style sheet
    m_previewLabel->setMinimumHeight(previewLines * m_previewLabel->fontMetrics().lineSpacing());
    addLine(m_previewLabel);
    m_typingPause.setSingleShot(true);
    m_typingPause.setInterval(typingPauseMilliseconds);
    connect(&m_typingPause, &QTimer::timeout, this, [this] { emit lookWanted(path()); });
    connect(this, &PathPage::pathChanged, this, &ImportPage::lookAhead);
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
    updatePreview();
}

void ImportPage::lookAhead()
{
    // The outlook so far is that of another file, or of another list.
    emit lookWanted({});
    m_typingPause.start();
}

void ImportPage::hideEvent(QHideEvent *event)
{
    PathPage::hideEvent(event);
    if (event->spontaneous())
        return; // the window is hidden or minimized
    m_typingPause.stop();
    emit lookWanted({});
}

void ImportPage::showOutlook(const ImportOutlook &outlook)
{
    m_outlook = outlook;
    updatePreview();
    if (outlook.state != ImportOutlook::State::Ready &&
        outlook.state != ImportOutlook::State::Refused)
        return;
    QAccessibleEvent alert(m_previewLabel, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ImportPage::updatePreview()
{
    m_previewLabel->setText(previewText());
    beginButton().setAccessibleDescription(m_previewLabel->text());
}

QString ImportPage::previewText() const
{
    switch (m_outlook.state) {
    case ImportOutlook::State::Nothing:
        return tr("Choose a file to see here what its import will do.");
    case ImportOutlook::State::Looking:
        return tr("Looking at the file...");
    case ImportOutlook::State::Refused:
        return m_outlook.reason;
    case ImportOutlook::State::Ready:
        break;
    }
    return numbersText();
}

QString ImportPage::numbersText() const
{
    const QString rows = m_outlook.rows == 1 ? tr("1 row") : tr("%1 rows").arg(m_outlook.rows);
    QStringList parts = {
        tr("%1, %2: %3 new, %4 in place of listed devices.", "encoding, rows in the file")
            .arg(m_outlook.encoding, rows)
            .arg(m_outlook.added)
            .arg(m_outlook.replacing)};
    if (m_outlook.repeated > 0)
        parts.append(tr("Rows that repeat a MAC of the file: %1.").arg(m_outlook.repeated));
    if (m_outlook.missing > 0)
        parts.append((clearList() ? tr("Listed devices that are not in the file and stay: %1.")
                                  : tr("Listed devices that are not in the file and go: %1."))
                         .arg(m_outlook.missing));
    else if (m_outlook.listed > 0)
        parts.append(tr("The file has every listed device."));
    return parts.join(QLatin1Char(' '));
}
