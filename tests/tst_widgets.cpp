#include "widgets/LoadingWidget.h"
#include "widgets/SlidePage.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

Q_DECLARE_METATYPE(SlidePage::Edge)

namespace {

constexpr Qt::GlobalColor pageColor = Qt::green;
constexpr Qt::GlobalColor listColor = Qt::red;

/// A window with a menu, a line edit and a button that fills the rest.
struct Window : QMainWindow
{
    Window()
        : content(new QWidget(this))
        , edit(new QLineEdit(content))
        , button(new QPushButton(QStringLiteral("&Delete"), content))
        , action(new QAction(QStringLiteral("&New"), this))
    {
        action->setShortcut(QKeySequence(QStringLiteral("CTRL+T")));
        menuBar()->addMenu(QStringLiteral("&File"))->addAction(action);
        edit->setStyleSheet(QStringLiteral("background-color: red; color: red; border: none"));
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        auto *const column = new QVBoxLayout(content);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(edit);
        column->addWidget(button);
        setCentralWidget(content);
        resize(400, 300);
        show();
        QApplication::setActiveWindow(this);
        edit->setFocus();
    }

    QWidget *content;
    QLineEdit *edit;
    QPushButton *button;
    QAction *action;
};

/// A page whose first input that can be used is the line edit.
struct Page : SlidePage
{
    Page(Edge edge, QWidget *parent)
        : SlidePage(edge, parent)
        , atBottom(edge == Edge::Bottom)
        , edit(new QLineEdit)
        , box(new QCheckBox)
        , button(new QPushButton)
    {
        setPalette(QColor(pageColor));
        auto *const disabled = new QLineEdit;
        disabled->setEnabled(false);
        auto *const column = new QVBoxLayout(this);
        for (QWidget *const child : {static_cast<QWidget *>(new QLabel),
                                     static_cast<QWidget *>(disabled), static_cast<QWidget *>(edit),
                                     static_cast<QWidget *>(box), static_cast<QWidget *>(button)})
            column->addWidget(child);
    }

    QRect shownGeometry() const
    {
        const QSize room = parentWidget()->size();
        const int height = sizeHint().height();
        return {0, atBottom ? room.height() - height : 0, room.width(), height};
    }

    bool atBottom;
    QLineEdit *edit;
    QCheckBox *box;
    QPushButton *button;
};

} // namespace

class TestWidgets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void coverFollowsTheWindow();
    void coverTakesTheMouse();
    void coverTakesTheKeys_data();
    void coverTakesTheKeys();
    void coverLeavesOtherWindows();
    void coverReturnsTheFocus();

    void slides_data();
    void slides();
    void turnsBackOnTheWay();
    void focusComesAndGoes();
    void escapeCloses();
    void clicksOnTheWayOutAreNotMeant();
    void paintsWhatItCovers();

private:
    std::unique_ptr<Window> m_window;
};

void TestWidgets::initTestCase()
{
    QVERIFY(QDir::setCurrent(QStringLiteral(VL_SOURCE_DIR)));
}

void TestWidgets::init()
{
    m_window = std::make_unique<Window>();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void TestWidgets::cleanup()
{
    m_window.reset();
}

void TestWidgets::coverFollowsTheWindow()
{
    auto *const cover = new LoadingWidget;
    QVERIFY(!cover->isVisible());
    cover->showOver(m_window.get());
    QCOMPARE(cover->geometry(), m_window->rect());
    m_window->resize(640, 480);
    QTRY_COMPARE(cover->size(), QSize(640, 480));
    QCOMPARE(m_window->childAt(5, 5), cover);
    const auto *const text = cover->findChild<QLabel *>(QStringLiteral("loadingTextLabel"));
    QCOMPARE(text->text(), QStringLiteral("Operating,please wait."));

    // The picture dims what it covers and is not painted a second time behind the labels.
    const QImage image = m_window->grab().toImage();
    QVERIFY(image.pixelColor(5, 470).lightness() < 128);
    const QPoint corner = text->mapTo(m_window.get(), QPoint(1, 1));
    QCOMPARE(image.pixelColor(corner), image.pixelColor(corner - QPoint(0, 10)));
    cover->hide();
    QVERIFY(m_window->grab().toImage().pixelColor(5, 470).lightness() > 128);
}

void TestWidgets::coverTakesTheMouse()
{
    LoadingWidget cover(m_window.get());
    QSignalSpy clicks(m_window->button, &QPushButton::clicked);
    const QPoint onButton =
        m_window->button->mapTo(m_window.get(), m_window->button->rect().center());
    const auto click = [&] {
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, onButton);
        // To the button itself, as a grab would bring it there.
        QTest::mouseClick(m_window->button, Qt::LeftButton);
    };
    cover.showOver(m_window.get());
    click();
    QCOMPARE(clicks.size(), 0);
    cover.hide();
    click();
    QCOMPARE(clicks.size(), 2);
}

void TestWidgets::coverTakesTheKeys_data()
{
    QTest::addColumn<QKeySequence>("keys");
    QTest::newRow("letter") << QKeySequence(Qt::Key_A);
    QTest::newRow("next input") << QKeySequence(Qt::Key_Tab);
    QTest::newRow("shortcut of an action") << QKeySequence(QStringLiteral("Ctrl+T"));
    QTest::newRow("mnemonic of a button") << QKeySequence(QStringLiteral("Alt+D"));
    QTest::newRow("mnemonic of a menu") << QKeySequence(QStringLiteral("Alt+F"));
}

void TestWidgets::coverTakesTheKeys()
{
    QFETCH(QKeySequence, keys);

    LoadingWidget cover(m_window.get());
    QSignalSpy triggered(m_window->action, &QAction::triggered);
    QSignalSpy clicked(m_window->button, &QPushButton::clicked);
    const auto press = [&] { QTest::keySequence(m_window->windowHandle(), keys); };
    const auto somethingHappened = [&] {
        return !m_window->edit->text().isEmpty() || triggered.size() + clicked.size() > 0 ||
               QApplication::activePopupWidget() || m_window->button->hasFocus();
    };
    cover.showOver(m_window.get());
    press();
    QVERIFY(!somethingHappened());
    // However the focus got below the cover.
    m_window->edit->setFocus();
    press();
    QVERIFY(!somethingHappened());
    cover.hide();
    press();
    QTRY_VERIFY(somethingHappened());
}

void TestWidgets::coverLeavesOtherWindows()
{
    LoadingWidget cover(m_window.get());
    cover.showOver(m_window.get());
    QDialog question(m_window.get());
    question.setModal(true);
    auto *const edit = new QLineEdit(&question);
    auto *const button = new QPushButton(QStringLiteral("Yes"), &question);
    button->move(0, 50);
    QSignalSpy clicks(button, &QPushButton::clicked);
    question.show();
    QApplication::setActiveWindow(&question);
    QVERIFY(QTest::qWaitForWindowActive(&question));
    QTest::keyClick(question.windowHandle(), Qt::Key_A);
    QTest::mouseClick(question.windowHandle(), Qt::LeftButton, {}, button->geometry().center());
    QCOMPARE(edit->text(), QStringLiteral("a"));
    QCOMPARE(clicks.size(), 1);
}

void TestWidgets::coverReturnsTheFocus()
{
    LoadingWidget cover(m_window.get());
    cover.showOver(m_window.get());
    QVERIFY(cover.hasFocus());
    cover.showOver(m_window.get());
    cover.hide();
    QVERIFY(m_window->edit->hasFocus());

    cover.showOver(m_window.get());
    m_window->button->setFocus();
    cover.hide();
    QVERIFY(m_window->button->hasFocus());
}

void TestWidgets::slides_data()
{
    QTest::addColumn<SlidePage::Edge>("edge");
    QTest::newRow("from the top") << SlidePage::Edge::Top;
    QTest::newRow("from the bottom") << SlidePage::Edge::Bottom;
}

void TestWidgets::slides()
{
    QFETCH(SlidePage::Edge, edge);

    Page page(edge, m_window->content);
    m_window->hide();
    m_window->show();
    QVERIFY(!page.isVisible());

    page.slideIn();
    QVERIFY(page.isOpen() && page.isVisible());
    QVERIFY(!page.geometry().intersects(m_window->content->rect()));
    QTRY_VERIFY(page.shownPart() > 0 && page.shownPart() < 1);
    QVERIFY(page.geometry().intersects(m_window->content->rect()));
    QTRY_COMPARE(page.geometry(), page.shownGeometry());

    // It follows its window, and a longer text needs more room.
    for (const int width : {700, 500}) {
        m_window->resize(width, 400);
        QTRY_COMPARE(page.geometry(), page.shownGeometry());
        QCOMPARE(page.width(), width);
    }
    const int before = page.height();
    page.button->setMinimumHeight(80);
    QTRY_VERIFY(page.height() > before);
    QCOMPARE(page.geometry(), page.shownGeometry());

    page.slideOut();
    QVERIFY(!page.isOpen() && page.isVisible());
    QTRY_VERIFY(!page.isVisible());
    QVERIFY(!page.geometry().intersects(m_window->content->rect()));
}

void TestWidgets::turnsBackOnTheWay()
{
    Page page(SlidePage::Edge::Top, m_window->content);
    page.slideIn();
    QTRY_VERIFY(page.shownPart() > 0.2);
    const qreal part = page.shownPart();
    page.slideOut();
    page.slideIn();
    QVERIFY(page.shownPart() >= part);
    QTRY_COMPARE(page.shownPart(), 1.0);
    QVERIFY(page.isOpen() && page.isVisible());
    page.slideOut();
    page.slideOut();
    QTRY_VERIFY(!page.isVisible());
    QCOMPARE(page.shownPart(), 0.0);
}

void TestWidgets::focusComesAndGoes()
{
    Page page(SlidePage::Edge::Top, m_window->content);
    page.slideIn();
    QVERIFY(page.edit->hasFocus());
    page.box->setFocus();
    page.slideOut();
    QVERIFY(m_window->edit->hasFocus());
    QTRY_VERIFY(!page.isVisible());
    QVERIFY(m_window->edit->hasFocus());

    // With nowhere to return to, no key goes to the page on its way out.
    m_window->edit->clearFocus();
    page.slideIn();
    page.slideOut();
    QVERIFY(!page.edit->hasFocus());

    // What took the focus meanwhile keeps it.
    page.slideIn();
    m_window->button->setFocus();
    page.slideOut();
    QVERIFY(m_window->button->hasFocus());
}

void TestWidgets::escapeCloses()
{
    Page page(SlidePage::Edge::Top, m_window->content);
    const QVector<QWidget *> inputs = {page.edit, page.box, page.button};
    for (QWidget *const input : inputs) {
        page.slideIn();
        input->setFocus();
        QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
        QVERIFY(!page.isOpen());
    }
}

void TestWidgets::clicksOnTheWayOutAreNotMeant()
{
    Page page(SlidePage::Edge::Top, m_window->content);
    QSignalSpy clicks(page.button, &QPushButton::clicked);
    const auto click = [&] {
        const QPoint center = page.button->mapTo(m_window.get(), page.button->rect().center());
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, center);
    };
    page.slideIn();
    QTRY_COMPARE(page.shownPart(), 1.0);
    click();
    QCOMPARE(clicks.size(), 1);
    page.slideOut();
    click();
    QCOMPARE(clicks.size(), 1);
    page.slideIn();
    QTRY_COMPARE(page.shownPart(), 1.0);
    click();
    QCOMPARE(clicks.size(), 2);
}

void TestWidgets::paintsWhatItCovers()
{
    Page page(SlidePage::Edge::Top, m_window->content);
    // What stands on the screen, unlike grab(), which would paint it anew.
    const auto colorAt = [this](int y) {
        const QPoint point = m_window->content->mapTo(m_window.get(), QPoint(200, y));
        const QPixmap screen = m_window->screen()->grabWindow(m_window->winId());
        return screen.toImage().pixelColor(point);
    };
    QTRY_COMPARE(colorAt(3), QColor(listColor));
    page.slideIn();
    QTRY_COMPARE(page.shownPart(), 1.0);
    QTRY_COMPARE(colorAt(3), QColor(pageColor));
    QCOMPARE(colorAt(page.height() - 1), QColor(pageColor));
    QVERIFY(colorAt(page.height()) != QColor(pageColor));
    page.slideOut();
    QTRY_COMPARE(colorAt(3), QColor(listColor));
    QTRY_VERIFY(!page.isVisible());
}

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
