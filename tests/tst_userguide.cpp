#include "tests/Literal.h"
#include "widgets/UserGuide.h"
#include "widgets/UserGuideControl.h"
#include "widgets/UserGuideWidget.h"

#include <QAbstractAnimation>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

static const QString guideFolder = "./resource/UserGuide/"_s;

class TestUserGuide : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        QDir::setCurrent(m_folder->path());
        QVERIFY(QDir().mkpath(guideFolder));
    }

    void cleanup() { m_guide.reset(); }

    void takesPicturesFromTheList()
    {
        struct Row
        {
            QByteArray list;
            const char *expected;
            QString language = "en"_s;
        };
        const QByteArray two =
            R"(<root><item text="1" pic="a.png"/><item text="9" pic="b.png"/></root>)";
        const Row rows[] = {
            {"", ""}, // there is none
            {two, "1:a.png 9:b.png"},
            {two, "1:chinese/a.png 9:chinese/b.png", "EN"_s}, // any other language
            {R"(<?xml version="1.0" encoding="UTF-8"?><!-- c --><root><x text="2" pic="x"/>
            <item text="1" pic="a.png">t</item><x><item text="3" pic="x"/></x>
            <item pic="b.png" text=" 9 "/></root>)",
             "1:a.png 9:b.png"},
            // Numbers that are no page.
            {R"(<root><item text="10" pic="x"/><item text="0" pic="x"/>
            <item text="-1" pic="x"/><item text="0x2" pic="x"/><item text="" pic="x"/>
            <item pic="x"/><item text="99999999999999999999" pic="x"/>
            <item text="1" pic="a.png"/></root>)",
             "1:a.png"},
            // Without a picture, and twice.
            {R"(<root><item text="1" pic="x"/><item text="1" pic="a.png"/>
            <item text="1"/><item text="1" pic=""/></root>)",
             "1:a.png"},
            {QByteArray(two).replace("root", "Root"), ""},
            {two.chopped(8), ""},
            {"", ""}};
        for (const Row &row : rows) {
            QFile file(guideFolder + "userguide.xml"_s);
            if (&row != rows) {
                QVERIFY(file.open(QIODevice::WriteOnly));
                file.write(row.list);
                file.close();
            }
            const UserGuide guide(row.language);
            QStringList pictures;
            for (int i = 0; i < guide.pages().size(); ++i) {
                const QString picture = guide.pages().at(i).picture;
                if (picture.startsWith(guideFolder))
                    pictures.append("%1:"_s.arg(i + 1) + picture.mid(guideFolder.size()));
                else
                    QCOMPARE(picture, QString());
            }
            QCOMPARE(pictures.join(QLatin1Char(' ')), QLatin1String(row.expected));
            QCOMPARE(guide.pages().size(), 9);
        }
    }

    void drawsThePictureOfItsPage()
    {
        QImage wide(3000, 100, QImage::Format_RGB32);
        wide.fill(Qt::cyan);
        QVERIFY(wide.save(guideFolder + "wide.png"_s));
        UserGuideWidget page;
        page.resize(800, 500);
        page.setPage({"t"_s, "x"_s, guideFolder + "wide.png"_s});
        // It is shrunk, beside the texts and short of the edge.
        const QImage image = page.grab().toImage();
        const std::pair<int, bool> places[] = {
            {(UserGuideWidget::columnWidth + page.width()) / 2, true},
            {UserGuideWidget::columnWidth - 2, false},
            {page.width() - 2, false}};
        for (const auto &[x, isPicture] : places)
            QCOMPARE(image.pixelColor(x, page.height() / 2) == Qt::cyan, isPicture);
    }

    void pagesFromEndToEnd()
    {
        open();
        auto *const up = m_guide->findChild<QPushButton *>("arrow_up"_s);
        auto *const down = m_guide->findChild<QPushButton *>("arrow_down"_s);
        m_guide->leftPressed();
        // Who goes on by Space does not turn back.
        const std::pair<Qt::Key, int> keys[] = {
            {Qt::Key_PageUp, 1}, {Qt::Key_Down, 2}, {Qt::Key_PageDown, 3}, {Qt::Key_Down, 4},
            {Qt::Key_Up, 3},     {Qt::Key_Down, 4}, {Qt::Key_PageDown, 5}, {Qt::Key_PageUp, 4},
            {Qt::Key_Down, 5},   {Qt::Key_Down, 6}, {Qt::Key_Down, 7},     {Qt::Key_Down, 8},
            {Qt::Key_Down, 9},   {Qt::Key_Down, 9}, {Qt::Key_Space, 9}};
        for (const auto &[key, page] : keys) {
            QTest::keyClick(QApplication::focusWidget(), key);
            QCOMPARE(counter(), "%1/9"_s.arg(page));
            QCOMPARE(up->isEnabled(), page > 1);
            QCOMPARE(down->isEnabled(), page < 9);
        }
        QTest::mouseClick(up, Qt::LeftButton);
        QTest::keyClick(up, Qt::Key_Space);
        QTest::mouseClick(down, Qt::LeftButton);
        QCOMPARE(counter(), "8/9"_s);
        QTRY_COMPARE(visibleTitles(), QStringList(m_guide->pages().at(7).title));
    }

    void pagesWhileAPageIsTurned()
    {
        open();
        const auto *const control = m_guide->findChild<UserGuideControl *>();
        const auto turns = [&] { return control->findChildren<QAbstractAnimation *>(); };
        // Two pages on, one back, with the turn at a different point each time.
        for (int step = 1; step <= 21; ++step) {
            if (step % 3)
                m_guide->rightPressed();
            else
                m_guide->leftPressed();
            QVERIFY(control->isRunning());
            QCOMPARE(visibleTitles().size(), 2);
            if (step == 7)
                m_guide->resize(m_guide->size() + QSize(40, 30));
            turns().last()->setCurrentTime(turns().last()->duration() * step / 25);
        }
        QCOMPARE(counter(), "8/9"_s);
        QTRY_VERIFY(!control->isRunning());
        QCOMPARE(visibleTitles(), QStringList(m_guide->pages().at(7).title));
        const auto pages = control->findChildren<UserGuideWidget *>();
        for (const UserGuideWidget *page : pages)
            QVERIFY(!page->isVisible() || page->geometry() == control->rect());
        QTRY_VERIFY(turns().isEmpty()); // they have deleted themselves
    }

    void closesAndOpensAtItsPage()
    {
        open();
        const QSignalSpy closed(m_guide.get(), &UserGuide::closeClicked);
        m_guide->rightPressed();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(!m_guide->isVisible());
        QCOMPARE(closed.size(), 1);
        m_guide->show();
        QCOMPARE(counter(), "2/9"_s);
        // Closed with the page still on its way, it opens with the page in its place.
        QTRY_COMPARE(visibleTitles(), QStringList(m_guide->pages().at(1).title));
        // Gone in the middle of a turn, which then has nothing to end.
        for (int turn = 0; turn < 2; ++turn)
            m_guide->rightPressed();
        m_guide.reset();
        QCoreApplication::processEvents();
    }

private:
    void open()
    {
        m_guide = std::make_unique<UserGuide>("en"_s);
        m_guide->show();
        m_guide->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_guide.get()));
    }

    QString counter() { return m_guide->findChild<QLabel *>("guideCounter"_s)->text(); }
    /// Of the pages on screen: two while a page is turned.
    QStringList visibleTitles()
    {
        QStringList titles;
        const auto widgets = m_guide->findChildren<UserGuideWidget *>();
        for (const UserGuideWidget *widget : widgets) {
            if (!widget->isHidden())
                titles.append(widget->accessibleName());
        }
        return titles;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<UserGuide> m_guide;
};

QTEST_MAIN(TestUserGuide)
#include "tst_userguide.moc"
