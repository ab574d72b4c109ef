#include "tests/Literal.h"
#include "widgets/LoadingWidget.h"
#include "widgets/SlidePage.h"
#include "widgets/UserGuide.h"
#include "widgets/UserGuideWidget.h"

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
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

namespace {

/// A window with a menu, a line edit and a button that fills the rest.
struct Window : QMainWindow
{
    Window()
    {
        action->setShortcut(QKeySequence("CTRL+T"_s));
        menuBar()->addMenu("&File"_s)->addAction(action);
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

    QWidget *content = new QWidget(this);
    QLineEdit *edit = new QLineEdit(content);
    QPushButton *button = new QPushButton("&Delete"_s, content);
    QAction *action = new QAction("&New"_s, this);
};

/// A page whose first input that can be used is the line edit.
struct Page : SlidePage
{
    Page(Edge edge, QWidget *parent)
        : SlidePage(edge, parent)
        , atBottom(edge == Edge::Bottom)
    {
        auto *const column = new QVBoxLayout(this);
        disabled->setEnabled(false);
        for (QWidget *const child : std::initializer_list<QWidget *>{disabled, edit, box, button})
            column->addWidget(child);
    }

    QRect shownGeometry() const
    {
        const QSize room = parentWidget()->size();
        const int height = sizeHint().height();
        return {0, atBottom ? room.height() - height : 0, room.width(), height};
    }

    bool atBottom;
    QLineEdit *disabled = new QLineEdit;
    QLineEdit *edit = new QLineEdit;
    QCheckBox *box = new QCheckBox;
    QPushButton *button = new QPushButton;
};

} // namespace

class TestWidgets : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(QDir::setCurrent(QStringLiteral(VL_SOURCE_DIR))); }
    void init()
    {
        m_window = std::make_unique<Window>();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    void cleanup() { m_window.reset(); }

    void coverTakesTheKeys()
    {
        // A letter, the next input, and the keys of an action, a button and a menu.
        for (const QString &keys : {"A"_s, "Tab"_s, "Ctrl+T"_s, "Alt+D"_s, "Alt+F"_s}) {
            Window window;
            QVERIFY(QTest::qWaitForWindowActive(&window));
            LoadingWidget cover(&window);
            const QSignalSpy triggered(window.action, &QAction::triggered);
            const QSignalSpy clicked(window.button, &QPushButton::clicked);
            const auto press = [&] {
                QTest::keySequence(window.windowHandle(), QKeySequence(keys));
            };
            const auto isHeard = [&] {
                return !window.edit->text().isEmpty() || triggered.size() + clicked.size() > 0 ||
                       QApplication::activePopupWidget() || window.button->hasFocus();
            };
            cover.showOver(&window);
            press();
            QVERIFY2(!isHeard(), qPrintable(keys));
            // It is the same with the focus below the cover.
            window.edit->setFocus();
            press();
            QVERIFY2(!isHeard(), qPrintable(keys));
            cover.hide();
            press();
            QTRY_VERIFY2(isHeard(), qPrintable(keys));
        }
    }

    void coverReturnsTheFocus()
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

    void slides()
    {
        for (const auto edge : {SlidePage::Edge::Top, SlidePage::Edge::Bottom}) {
            Page page(edge, m_window->content);
            const QSignalSpy clicks(page.button, &QPushButton::clicked);
            page.slideIn();
            QVERIFY(!page.geometry().intersects(m_window->content->rect()));
            QTRY_VERIFY(page.shownPart() > 0 && page.shownPart() < 1);
            QVERIFY(page.geometry().intersects(m_window->content->rect()));
            QTRY_COMPARE(page.geometry(), page.shownGeometry());
            // The page follows its window, and grows with its content.
            m_window->resize(m_window->width() + 50, 400);
            QTRY_COMPARE(page.width(), m_window->width());
            page.button->setMinimumHeight(80);
            QTRY_VERIFY(page.height() > 80 && page.geometry() == page.shownGeometry());

            // A page on its way out takes no input.
            const QPoint center = page.button->mapTo(m_window.get(), page.button->rect().center());
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, center);
            QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
            QVERIFY(!page.isOpen() && page.isVisible());
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, center);
            QCOMPARE(clicks.size(), 1);
            QTRY_VERIFY(!page.isVisible());
        }
    }

    void focusComesAndGoes()
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

    void guideTurnsItsPages()
    {
        auto guide = std::make_unique<UserGuide>("en"_s);
        const auto counter = [&] { return guide->findChild<QLabel *>("guideCounter"_s)->text(); };
        const auto visibleTitles = [&] {
            QStringList titles;
            const auto widgets = guide->findChildren<UserGuideWidget *>();
            for (const UserGuideWidget *widget : widgets) {
                if (!widget->isHidden())
                    titles.append(widget->accessibleName());
            }
            return titles;
        };
        guide->show();
        guide->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(guide.get()));
        // Space on the last page does not turn back.
        const std::pair<Qt::Key, int> keys[] = {
            {Qt::Key_PageUp, 1}, {Qt::Key_Down, 2}, {Qt::Key_PageDown, 3}, {Qt::Key_Up, 2},
            {Qt::Key_Down, 3},   {Qt::Key_Down, 4}, {Qt::Key_Down, 5},     {Qt::Key_PageUp, 4},
            {Qt::Key_Down, 5},   {Qt::Key_Down, 6}, {Qt::Key_Down, 7},     {Qt::Key_Down, 8},
            {Qt::Key_Down, 9},   {Qt::Key_Down, 9}, {Qt::Key_Space, 9}};
        for (const auto &[key, page] : keys) {
            QTest::keyClick(QApplication::focusWidget(), key);
            QCOMPARE(counter(), "%1/9"_s.arg(page));
            QCOMPARE(guide->findChild<QPushButton *>("arrow_up"_s)->isEnabled(), page > 1);
            QCOMPARE(guide->findChild<QPushButton *>("arrow_down"_s)->isEnabled(), page < 9);
        }
        QTest::mouseClick(guide->findChild<QPushButton *>("arrow_up"_s), Qt::LeftButton);
        // Closed with the page still on its way, it opens with the page in its place.
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(!guide->isVisible());
        guide->show();
        QCOMPARE(counter(), "8/9"_s);
        QTRY_COMPARE(visibleTitles(), QStringList(guide->pages().at(7).title));
        // The guide may be deleted in the middle of a turn.
        for (int turn = 0; turn < 2; ++turn)
            guide->leftPressed();
        guide.reset();
        QCoreApplication::processEvents();
    }

private:
    std::unique_ptr<Window> m_window;
};

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
