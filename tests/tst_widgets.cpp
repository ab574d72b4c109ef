#include "tests/Literal.h"
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
#include <QSignalSpy>
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
        for (QWidget *const child : QVector<QWidget *>{disabled, edit, box, button})
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

    void coverFollowsTheWindow()
    {
        auto *const cover = new LoadingWidget;
        QVERIFY(!cover->isVisible());
        cover->showOver(m_window.get());
        QCOMPARE(cover->geometry(), m_window->rect());
        m_window->resize(640, 480);
        QTRY_COMPARE(cover->size(), QSize(640, 480));
        QCOMPARE(m_window->childAt(5, 5), cover);
        const auto *const text = cover->findChild<QLabel *>("loadingTextLabel"_s);
        QCOMPARE(text->text(), "Operating,please wait."_s);

        const auto lightness = [&] {
            return m_window->grab().toImage().pixelColor(5, 470).lightness();
        };
        QVERIFY(lightness() < 128);
        cover->hide();
        QVERIFY(lightness() > 128);
    }

    void coverTakesTheMouse()
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
            // However the focus got below the cover.
            window.edit->setFocus();
            press();
            QVERIFY2(!isHeard(), qPrintable(keys));
            cover.hide();
            press();
            QTRY_VERIFY2(isHeard(), qPrintable(keys));
        }
    }

    void coverLeavesOtherWindows()
    {
        LoadingWidget cover(m_window.get());
        cover.showOver(m_window.get());
        QDialog question(m_window.get());
        question.setModal(true);
        auto *const edit = new QLineEdit(&question);
        auto *const button = new QPushButton("Yes"_s, &question);
        button->move(0, 50);
        QSignalSpy clicks(button, &QPushButton::clicked);
        question.show();
        QApplication::setActiveWindow(&question);
        QVERIFY(QTest::qWaitForWindowActive(&question));
        QTest::keyClick(question.windowHandle(), Qt::Key_A);
        QTest::mouseClick(question.windowHandle(), Qt::LeftButton, {}, button->geometry().center());
        QCOMPARE(edit->text(), "a"_s);
        QCOMPARE(clicks.size(), 1);
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

    void closesByEscapeAndIsDeafThen()
    {
        Page page(SlidePage::Edge::Top, m_window->content);
        const QSignalSpy clicks(page.button, &QPushButton::clicked);
        int meant = 0;
        for (QWidget *const input : QVector<QWidget *>{page.edit, page.box, page.button}) {
            page.slideIn();
            QTRY_COMPARE(page.shownPart(), 1.0);
            const QPoint center = page.button->mapTo(m_window.get(), page.button->rect().center());
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, center);
            QCOMPARE(clicks.size(), ++meant);
            input->setFocus();
            QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
            QVERIFY(!page.isOpen());
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, center);
            QCOMPARE(clicks.size(), meant);
        }
    }

private:
    std::unique_ptr<Window> m_window;
};

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
