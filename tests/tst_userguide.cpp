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

namespace {

const QString guideFolder = QStringLiteral("./resource/UserGuide/");

} // namespace

class TestUserGuide : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_guide.reset(); }

    void takesPicturesFromTheList_data();
    void takesPicturesFromTheList();
    void drawsThePictureOfItsPage();
    void pagesFromEndToEnd();
    void pagesWhileAPageIsTurned();
    void closesAndOpensAtItsPage();

private:
    void open();
    QPushButton *arrow(const char *name)
    {
        return m_guide->findChild<QPushButton *>(QLatin1String(name));
    }
    QString counter()
    {
        return m_guide->findChild<QLabel *>(QStringLiteral("guideCounter"))->text();
    }
    QStringList visibleTitles();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<UserGuide> m_guide;
};

void TestUserGuide::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QDir::setCurrent(m_folder->path());
    QVERIFY(QDir().mkpath(guideFolder));
}

void TestUserGuide::open()
{
    m_guide = std::make_unique<UserGuide>(QStringLiteral("en"));
    m_guide->show();
    m_guide->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_guide.get()));
}

QStringList TestUserGuide::visibleTitles()
{
    QStringList titles;
    const auto widgets = m_guide->findChildren<UserGuideWidget *>();
    for (const UserGuideWidget *widget : widgets) {
        if (!widget->isHidden())
            titles.append(widget->accessibleName());
    }
    return titles;
}

void TestUserGuide::takesPicturesFromTheList_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &list, const char *expected,
                        const char *language = "en") {
        QTest::newRow(name) << QString::fromLatin1(language) << list
                            << QString::fromLatin1(expected);
    };
    const QByteArray two =
        R"(<root><item text="1" pic="a.png"/><item text="9" pic="b.png"/></root>)";
    row("English", two, "1:a.png 9:b.png");
    row("any other language", two, "1:chinese/a.png 9:chinese/b.png", "EN");
    row("declaration, comments, other elements",
        R"(<?xml version="1.0" encoding="UTF-8"?><!-- c --><root><x text="2" pic="x"/>
           <item text="1" pic="a.png">t</item><x><item text="3" pic="x"/></x>
           <item pic="b.png" text=" 9 "/></root>)",
        "1:a.png 9:b.png");
    row("numbers that are no page", R"(<root><item text="10" pic="x"/><item text="0" pic="x"/>
           <item text="-1" pic="x"/><item text="0x2" pic="x"/><item text="" pic="x"/>
           <item pic="x"/><item text="99999999999999999999" pic="x"/>
           <item text="1" pic="a.png"/></root>)",
        "1:a.png");
    row("without picture, and twice", R"(<root><item text="1" pic="x"/><item text="1" pic="a.png"/>
           <item text="1"/><item text="1" pic=""/></root>)",
        "1:a.png");
    row("another root", QByteArray(two).replace("root", "Root"), "");
    row("cut off", two.chopped(8), "");
    row("empty", "", "");
    row("missing", QByteArray(), "");
}

void TestUserGuide::takesPicturesFromTheList()
{
    QFETCH(const QString, language);
    QFETCH(const QByteArray, list);
    if (!list.isNull()) {
        QFile file(guideFolder + QStringLiteral("userguide.xml"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(list);
    }
    m_guide = std::make_unique<UserGuide>(language);
    QStringList pictures;
    for (int i = 0; i < m_guide->pages().size(); ++i) {
        QString picture = m_guide->pages().at(i).picture;
        if (picture.startsWith(guideFolder))
            pictures.append(QString::number(i + 1) + QLatin1Char(':') +
                            picture.remove(guideFolder));
        else
            QCOMPARE(picture, QString());
    }
    QTEST(pictures.join(QLatin1Char(' ')), "expected");
    m_guide->rightPressed();
    QCOMPARE(counter(), QStringLiteral("2/9"));
}

void TestUserGuide::drawsThePictureOfItsPage()
{
    QImage wide(3000, 100, QImage::Format_RGB32);
    wide.fill(Qt::cyan);
    QVERIFY(wide.save(guideFolder + QStringLiteral("wide.png")));
    UserGuideWidget page;
    page.resize(800, 500);
    const QPoint middle((UserGuideWidget::columnWidth + page.width()) / 2, page.height() / 2);
    const auto draw = [&page](const char *picture) {
        page.setPage(
            {QStringLiteral("t"), QStringLiteral("x"), guideFolder + QLatin1String(picture)});
        return page.grab().toImage();
    };
    const QImage image = draw("wide.png");
    QCOMPARE(image.pixelColor(middle), QColor(Qt::cyan));
    // It is shrunk, beside the texts and short of the edge.
    QVERIFY(image.pixelColor(UserGuideWidget::columnWidth - 2, middle.y()) != QColor(Qt::cyan));
    QCOMPARE(image.pixelColor(page.width() - 2, middle.y()), image.pixelColor(page.width() - 2, 2));
    const QImage none = draw("missing.png");
    QCOMPARE(none.pixelColor(middle), none.pixelColor(page.width() - 2, 2));
}

void TestUserGuide::pagesFromEndToEnd()
{
    open();
    QPushButton *const up = arrow("arrow_up");
    QPushButton *const down = arrow("arrow_down");
    QCOMPARE(counter(), QStringLiteral("1/9"));
    QVERIFY(!up->isEnabled());
    QTest::keyClick(m_guide.get(), Qt::Key_PageUp);
    m_guide->leftPressed();
    QCOMPARE(counter(), QStringLiteral("1/9"));

    for (int page = 2; page <= 9; ++page) {
        if (page == 2)
            QTest::mouseClick(down, Qt::LeftButton);
        else if (page == 3)
            QTest::keyClick(down, Qt::Key_Space);
        else
            QTest::keyClick(QApplication::focusWidget(),
                            page % 2 ? Qt::Key_Down : Qt::Key_PageDown);
        QCOMPARE(counter(), QStringLiteral("%1/9").arg(page));
        QVERIFY(up->isEnabled());
        QCOMPARE(down->isEnabled(), page < 9);
    }
    // Who goes on by Space does not turn back.
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Down}) {
        QTest::keyClick(QApplication::focusWidget(), key);
        QCOMPARE(counter(), QStringLiteral("9/9"));
    }
    QTest::keyClick(up, Qt::Key_Up);
    QCOMPARE(counter(), QStringLiteral("8/9"));
    QVERIFY(down->isEnabled());
    QTRY_COMPARE(visibleTitles(), QStringList(m_guide->pages().at(7).title));
}

void TestUserGuide::pagesWhileAPageIsTurned()
{
    open();
    const auto *const control = m_guide->findChild<UserGuideControl *>();
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
        QTest::qWait(step * 3);
    }
    QCOMPARE(counter(), QStringLiteral("8/9"));
    QTRY_VERIFY(!control->isRunning());
    QCOMPARE(visibleTitles(), QStringList(m_guide->pages().at(7).title));
    const auto pages = control->findChildren<UserGuideWidget *>();
    for (const UserGuideWidget *page : pages) {
        if (page->isVisible())
            QCOMPARE(page->geometry(), control->rect());
    }
    // Each turn's animation has deleted itself.
    QTRY_VERIFY(control->findChildren<QAbstractAnimation *>().isEmpty());
}

void TestUserGuide::closesAndOpensAtItsPage()
{
    open();
    const QSignalSpy closed(m_guide.get(), &UserGuide::closeClicked);
    m_guide->rightPressed();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(!m_guide->isVisible());
    QCOMPARE(closed.size(), 1);
    m_guide->show();
    QCOMPARE(counter(), QStringLiteral("2/9"));
    // Closed with the page still on its way, it opens with the page in its place.
    QTRY_COMPARE(visibleTitles(), QStringList(m_guide->pages().at(1).title));

    // Gone in the middle of a turn, which then has nothing to end.
    m_guide->rightPressed();
    QTest::qWait(20);
    m_guide->rightPressed();
    m_guide.reset();
    QTest::qWait(20);
}

QTEST_MAIN(TestUserGuide)
#include "tst_userguide.moc"
