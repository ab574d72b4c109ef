#include "widgets/UserGuide.h"

#include "widgets/ScreenRoom.h"
#include "widgets/UserGuideControl.h"
#include "widgets/UserGuideWidget.h"

#include <QCloseEvent>
#include <QDomDocument>
#include <QFile>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>

namespace {

constexpr QSize firstSize(1000, 560);
constexpr int smallestPictureWidth = 200;
constexpr int barMargin = 24;
constexpr int barSpacing = 16;

constexpr QRgb windowColor = 0xff22272e;

const QString folder = QStringLiteral("./resource/UserGuide/%1");
const QString chineseFolder = QStringLiteral("./resource/UserGuide/chinese/%1");

/// %1 is "arrow_up" or "arrow_down". Outside a dialog no button is ever the default one, so the
/// third rule never applies; the fourth shows its picture on a disabled button.
const QString arrowStyle = QStringLiteral(
    "QPushButton {border-image : url(./resource/UserGuide/%1_unpressed.png);}"
    "QPushButton:pressed {border-image : url(./resource/UserGuide/%1_pressed.png);}"
    "QPushButton:default {border-image : url(./resource/UserGuide/%1_disable.png);}"
    "QPushButton:disabled {border-image : url(./resource/UserGuide/%1_disable.png);}"
    "QPushButton:focus {outline: 2px solid #8ee0ff; outline-radius: 20px;}"
    // Overrides the sizes of the program's style sheet.
    "QPushButton {min-width: 40px; max-width: 40px; min-height: 40px; max-height: 40px;}");
const QString counterStyle =
    QStringLiteral("background : transparent;font-size : 18px;color : white;");

struct PageTexts
{
    const char *title;
    const char *text;
};

constexpr PageTexts pageTexts[] = {
    {QT_TRANSLATE_NOOP("UserGuide", "Create single device"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "You can click on the New File to create a new device. Fill in all the "
                       "nessesary messages like MAC, SIP Authentication ID, SIP Authentication "
                       "Password and so on, then click save.")},
    {QT_TRANSLATE_NOOP("UserGuide", "Create several devices by order"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "Click on the Create by order button to create several devices with MAC "
                       "and User ID increased by integer you determined, Fill in other messages "
                       "useful to you, then click save.")},
    {QT_TRANSLATE_NOOP("UserGuide", "Import an exist device file"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "By clicking Import button on the menu bar, you can select a csv format "
                       "file that contains several device information to import.")},
    {QT_TRANSLATE_NOOP("UserGuide", "Export current devices"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "You can export all existed device infomation in the tool to where you "
                       "want to place it, exported file's name is devices.csv. You can edit it "
                       "with Office Excel.")},
    {QT_TRANSLATE_NOOP("UserGuide", "View and Modifications"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "Clicking eye looked icon belongs to every single item can popup a dialog "
                       "that is same with New File dialog that contains all messages of the "
                       "device you have clicked. You can also do some modifications in the "
                       "dialog, click save to take effect.")},
    {QT_TRANSLATE_NOOP("UserGuide", "Search by keyword"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "You can search the device you want to by entering keyword in input box "
                       "above every column. Such as MAC, IP and so on.")},
    {QT_TRANSLATE_NOOP("UserGuide", "Language Option"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "Select the menu language options, the current tool support between "
                       "Chinese and english. And the language switch will start after reboot take "
                       "effect.")},
    {QT_TRANSLATE_NOOP("UserGuide", "Other config options"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "Select the menu option button, tool provides some config options include "
                       "startup boot, edit recovery and auto httpd server. Startup boot means "
                       "Start up tool with your pc. Edit recovery means recovery the status of "
                       "the tool's last save and exit. Automaticly Open httpd server when you "
                       "pitch on the menu of auto httpd server.")},
    {QT_TRANSLATE_NOOP("UserGuide", "Httpd Server and PNP Server"),
     QT_TRANSLATE_NOOP("UserGuide",
                       "Click Open Httpd Server button to start a http server to provide CFG when "
                       "some devices is asking for it, PNP Server is used to broadcast Config "
                       "Server Path to every exist device in tool which is httpd server path in "
                       "fact. These two servers provide a convinent way to apply CFG change to "
                       "all devices in the tool.")},
};

} // namespace

UserGuide::UserGuide(const QString &language, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_background(folder.arg(QStringLiteral("right_BG.jpg")))
    , m_control(new UserGuideControl(this))
    , m_upButton(createArrow(QStringLiteral("arrow_up"), tr("Previous page")))
    , m_downButton(createArrow(QStringLiteral("arrow_down"), tr("Next page")))
    , m_counter(new QLabel(this))
{
    setObjectName(QStringLiteral("userGuide"));
    setWindowTitle(tr("Velloran Device Management Tool Help"));
    setWindowIcon(QIcon(folder.arg(QStringLiteral("UserGuide.png"))));
    createPages();
    loadPictures(language);
    createLayout();
    fitInto(screenRoom(*this));
    createShortcuts();
    connect(m_upButton, &QPushButton::released, this, &UserGuide::leftPressed);
    connect(m_downButton, &QPushButton::released, this, &UserGuide::rightPressed);
    m_control->showPage(m_pages.first());
    showPosition();
    m_downButton->setFocus();
}

void UserGuide::createPages()
{
    for (const PageTexts &texts : pageTexts)
        m_pages.append({tr(texts.title), tr(texts.text), QString()});
}

void UserGuide::loadPictures(const QString &language)
{
    QFile file(folder.arg(QStringLiteral("userguide.xml")));
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text) || !document.setContent(&file))
        return;
    const QDomElement root = document.documentElement();
    if (root.tagName() != QLatin1String("root"))
        return;
    const QString &place = language == QLatin1String("en") ? folder : chineseFolder;
    const QString tag = QStringLiteral("item");
    for (QDomElement item = root.firstChildElement(tag); !item.isNull();
         item = item.nextSiblingElement(tag)) {
        const QString picture = item.attribute(QStringLiteral("pic"));
        const int number = item.attribute(QStringLiteral("text")).toInt();
        if (!picture.isEmpty() && number >= 1 && number <= m_pages.size())
            m_pages[number - 1].picture = place.arg(picture);
    }
}

QPushButton *UserGuide::createArrow(const QString &name, const QString &text)
{
    auto *const button = new QPushButton(this);
    button->setObjectName(name);
    button->setStyleSheet(arrowStyle.arg(name));
    button->setAccessibleName(text);
    button->setToolTip(text);
    return button;
}

void UserGuide::createLayout()
{
    m_counter->setObjectName(QStringLiteral("guideCounter"));
    m_counter->setStyleSheet(counterStyle);
    m_counter->setAlignment(Qt::AlignCenter);

    // The bar has a background, so that a page being turned does not show through.
    auto *const bar = new QWidget(this);
    bar->setObjectName(QStringLiteral("guideBar"));
    bar->setFixedWidth(UserGuideWidget::columnWidth);
    bar->setAutoFillBackground(true);
    bar->setPalette(QColor(windowColor));
    auto *const row = new QHBoxLayout(bar);
    row->setContentsMargins(barMargin, barMargin / 2, barMargin, barMargin);
    row->setSpacing(barSpacing);
    row->addWidget(m_upButton);
    row->addWidget(m_counter);
    row->addWidget(m_downButton);
    row->addStretch();

    // The page lies under the bar and covers the whole window.
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->setRowStretch(0, 1);
    grid->setColumnMinimumWidth(1, smallestPictureWidth);
    grid->setColumnStretch(1, 1);
    grid->addWidget(m_control, 0, 0, 2, 2);
    grid->addWidget(bar, 1, 0);
}

void UserGuide::fitInto(const QRect &room)
{
    const auto *const bar = findChild<QWidget *>(QStringLiteral("guideBar"));
    const int textRoom = room.height() - bar->sizeHint().height();
    int textPx = UserGuideWidget::largestTextPx;
    while (highestText(textPx) > textRoom && textPx > UserGuideWidget::smallestTextPx)
        --textPx;
    m_control->setTextPx(textPx);
    auto *const grid = static_cast<QGridLayout *>(layout());
    grid->setRowMinimumHeight(0, highestText(textPx));
    grid->activate();
    resize(firstSize.boundedTo(room.size()).expandedTo(grid->minimumSize()));
}

int UserGuide::highestText(int textPx) const
{
    int height = 0;
    for (const GuidePage &page : m_pages)
        height = std::max(height, UserGuideWidget::textHeight(page, textPx));
    return height;
}

void UserGuide::createShortcuts()
{
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_PageUp})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &UserGuide::leftPressed);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_PageDown})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &UserGuide::rightPressed);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

void UserGuide::leftPressed()
{
    goTo(m_current - 1);
}

void UserGuide::rightPressed()
{
    goTo(m_current + 1);
}

void UserGuide::goTo(int page)
{
    if (page < 0 || page >= m_pages.size())
        return;
    m_control->turnTo(m_pages.at(page), page < m_current ? UserGuideControl::Direction::Back
                                                         : UserGuideControl::Direction::Forward);
    m_current = page;
    showPosition();
}

void UserGuide::showPosition()
{
    m_counter->setText(QStringLiteral("%1/%2").arg(m_current + 1).arg(m_pages.size()));
    // A focused button would pass the focus to the other one when it is disabled, and the next
    // Space would turn back.
    const bool first = m_current == 0;
    const bool last = m_current == m_pages.size() - 1;
    if ((first && m_upButton->hasFocus()) || (last && m_downButton->hasFocus()))
        setFocus(Qt::OtherFocusReason);
    m_upButton->setEnabled(!first);
    m_downButton->setEnabled(!last);
    if (hasFocus() && !first && !last)
        m_downButton->setFocus(Qt::OtherFocusReason);
}

void UserGuide::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    emit closeClicked();
}

void UserGuide::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(windowColor));
    if (m_background.isNull())
        return;
    // The background covers the side of the pictures, whatever its shape.
    const QRect side = rect().adjusted(UserGuideWidget::columnWidth, 0, 0, 0);
    QRect cover(QPoint(), m_background.size().scaled(side.size(), Qt::KeepAspectRatioByExpanding));
    cover.moveCenter(side.center());
    painter.setClipRect(side);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(cover, m_background);
}
