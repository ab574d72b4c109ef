#include "dialogs/FormDialog.h"

#include "dialogs/ContactForm.h"
#include "dialogs/IpLine.h"
#include "widgets/Modal.h"
#include "widgets/OpenWhereClosed.h"
#include "widgets/ScreenRoom.h"
#include "widgets/ScrollArea.h"
#include "widgets/ToolTipWidget.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int margin = 10;
constexpr int spacing = 10;
constexpr int scrollAreaWidth = 609;
constexpr int scrollAreaHeight = 371;
constexpr int macByteCount = 6;

} // namespace

FormDialog::FormDialog(QWidget *parent)
    : QDialog(parent)
    , m_form(new ContactForm)
    , m_scrollArea(new ScrollArea(this))
    , m_toolTip(new ToolTipWidget(this))
{
    setWindowIcon(Modal::windowIcon());
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_scrollArea->setObjectName(QStringLiteral("formScrollArea"));
    m_scrollArea->setFixedSize(scrollAreaWidth, scrollAreaHeight);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setWidget(m_form);
}

void FormDialog::createLayout(QPushButton *extra, QWidget *note)
{
    auto *const buttons = new QHBoxLayout;
    buttons->setSpacing(spacing);
    QWidget *before = m_form->lastInput();
    const auto add = [&](QPushButton *button) {
        buttons->addWidget(button);
        QWidget::setTabOrder(before, button);
        before = button;
    };
    if (extra) {
        // "Save" is the only button that Return presses, and the only one that looks so.
        extra->setAutoDefault(false);
        add(extra);
    }
    buttons->addStretch();

    auto *const saveButton = new QPushButton(tr("Save"), this);
    saveButton->setObjectName(QStringLiteral("saveButton"));
    saveButton->setDefault(true);
    connect(saveButton, &QPushButton::clicked, this, [this] {
        // A second click during a long save arrives when the dialog is already hidden.
        if (isVisible())
            doSaveAction();
    });
    add(saveButton);
    auto *const cancelButton = new QPushButton(tr("Cancel"), this);
    cancelButton->setObjectName(QStringLiteral("cancelButton"));
    connect(cancelButton, &QPushButton::clicked, this, &FormDialog::close);
    add(cancelButton);

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(spacing);
    layout->addWidget(m_scrollArea);
    if (note)
        layout->addWidget(note);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->activate();

    const auto lines = m_form->findChildren<IpLine *>();
    for (IpLine *const line : lines)
        connect(line, &IpLine::refused, this,
                [this, line](const QString &reason) { complain(*line, reason); });
    openWhereClosed(*this);
}

void FormDialog::finish(const std::function<void()> &handOver)
{
    m_staysOpen = false;
    handOver();
    if (!m_staysOpen)
        close();
}

void FormDialog::bringBack()
{
    m_staysOpen = true;
    show();
    raise();
    activateWindow();
}

void FormDialog::setVisible(bool visible)
{
    if (visible) {
        const int others = sizeHint().height() - m_scrollArea->height();
        m_scrollArea->setFixedHeight(
            std::min(scrollAreaHeight, screenRoom(*this).height() - others));
        layout()->activate();
    }
    QDialog::setVisible(visible);
}

void FormDialog::scrollToTop()
{
    m_scrollArea->verticalScrollBar()->setValue(0);
}

void FormDialog::complain(QWidget &input, const QString &text)
{
    m_scrollArea->ensureWidgetVisible(&input);
    m_toolTip->showMessage(text, &input);
}

bool FormDialog::isWholeMac(const QString &text)
{
    return text.split(QLatin1Char(':'), Qt::SkipEmptyParts).size() == macByteCount;
}

bool FormDialog::checkMac(IpLine &line)
{
    if (isWholeMac(line.text()))
        return true;
    line.focusFirstEmptyPart();
    complain(line, tr("Please fulfill correct MAC address!"));
    return false;
}
