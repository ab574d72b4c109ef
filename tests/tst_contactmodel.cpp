#include "tests/TestDevices.h"
#include "view/ContactModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>

namespace {

QList<ContactInfo> stampedDevices(const QString &stamps)
{
    QList<ContactInfo> devices;
    for (const QChar stamp : stamps)
        devices.append(stampedDevice(QString(stamp)));
    return devices;
}

/// What the model shows, in the order of its rows: the stamp of each device.
QString shownStamps(const QAbstractItemModel &model)
{
    QString stamps;
    for (int row = 0; row < model.rowCount(); ++row)
        stamps +=
            model.index(row, ContactModel::Mac).data().toString().section(QLatin1Char('.'), 0, 0);
    return stamps;
}

/// Every announcement of a model, in the order in which it was made: "+first-last", "-first-last",
/// "~first-last" for changed rows, "#first-last" where only the numbers changed, "reset".
class Announcements
{
public:
    explicit Announcements(const QAbstractItemModel &model)
    {
        const auto note = [this](const char *sign, int first, int last) {
            m_texts.append(QStringLiteral("%1%2-%3").arg(QLatin1String(sign)).arg(first).arg(last));
        };
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &m_context,
                         [=](const QModelIndex &, int first, int last) { note("+", first, last); });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &m_context,
                         [=](const QModelIndex &, int first, int last) { note("-", first, last); });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &m_context,
                         [=](const QModelIndex &from, const QModelIndex &to) {
                             note(to.column() == ContactModel::Number ? "#" : "~", from.row(),
                                  to.row());
                         });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &m_context,
                         [this] { m_texts.append(QStringLiteral("reset")); });
    }

    QString take()
    {
        QString all = m_texts.join(QLatin1Char(' '));
        m_texts.clear();
        return all;
    }

private:
    QObject m_context;
    QStringList m_texts;
};

} // namespace

class TestContactModel : public QObject
{
    Q_OBJECT

private slots:
    void emptyList();
    void columnsInOrder();
    void runningNumberRatherThanId();
    void rolesOfCells();
    void nothingOutsideTheTable();
    void announcesTheSmallestChange_data();
    void announcesTheSmallestChange();
    void hiddenFieldsAndUnchangedLists();
    void followsEveryKindOfChange();
    void announcementsOnRequest();
    void announcementsThatTheListDoesNotBearOut();
    void resetKeepsTheSetting();
    void positionOfNumber();
};

void TestContactModel::emptyList()
{
    const DeviceList list;
    const ContactModel model(list);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 11);
    QCOMPARE(model.supportedDropActions(), Qt::CopyAction | Qt::MoveAction);
}

void TestContactModel::columnsInOrder()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("ab")));
    const ContactModel model(list);
    QStringList texts;
    for (int column = 0; column < 9; ++column)
        texts.append(model.index(1, column).data().toString());
    const QStringList expected = {QStringLiteral("2"),
                                  QStringLiteral("b.mac"),
                                  QStringLiteral("b.product"),
                                  QStringLiteral("b.sip_server"),
                                  QStringLiteral("b.first_account"),
                                  QStringLiteral("b.sip_user_id"),
                                  QStringLiteral("b.city"),
                                  QStringLiteral("b.company"),
                                  QStringLiteral("b.department")};
    QCOMPARE(texts, expected);
    QVERIFY(!model.index(1, 9).data().isValid());
    QVERIFY(!model.index(1, 10).data().isValid());
}

void TestContactModel::runningNumberRatherThanId()
{
    DeviceList list;
    ContactInfo device = stampedDevice(QStringLiteral("a"));
    device.id = 77;
    list.append(device);
    const ContactModel model(list);
    const QVariant number = model.index(0, 0).data();
    QCOMPARE(number.userType(), static_cast<int>(QMetaType::Int));
    QCOMPARE(number.toInt(), 1);
}

void TestContactModel::rolesOfCells()
{
    DeviceList list;
    list.append(stampedDevice(QStringLiteral("a")));
    const ContactModel model(list);
    for (int column = 0; column < model.columnCount(); ++column) {
        const QModelIndex cell = model.index(0, column);
        QCOMPARE(cell.data(Qt::TextAlignmentRole).toInt(), 0x81);
        const bool pixmap = cell.data(Qt::DecorationRole).userType() == QMetaType::QPixmap;
        QCOMPARE(pixmap, column >= 9);
        QVERIFY(pixmap || !cell.data(Qt::DecorationRole).isValid());
        for (const int role : {int(Qt::EditRole), int(Qt::ToolTipRole), int(Qt::CheckStateRole),
                               int(Qt::BackgroundRole), int(Qt::UserRole)})
            QVERIFY2(!cell.data(role).isValid(), qPrintable(QString::number(role)));
        QVERIFY(!model.flags(cell).testFlag(Qt::ItemIsEditable));
    }
}

void TestContactModel::nothingOutsideTheTable()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("ab")));
    ContactModel model(list);
    QVERIFY(!model.data(QModelIndex(), Qt::DisplayRole).isValid());
    QVERIFY(!model.data(model.index(0, 11), Qt::TextAlignmentRole).isValid());
    QVERIFY(!model.data(model.index(2, 0), Qt::DisplayRole).isValid());
    QVERIFY(!model.data(model.index(-1, 0), Qt::DisplayRole).isValid());

    // An index that outlives its row is valid in itself.
    const QModelIndex stale = model.index(1, ContactModel::Mac);
    list.removeAt(1);
    model.refresh();
    QVERIFY(!model.data(stale, Qt::DisplayRole).isValid());
    QVERIFY(!model.data(stale, Qt::TextAlignmentRole).isValid());
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
    QCOMPARE(model.columnCount(model.index(0, 0)), 0);
}

void TestContactModel::announcesTheSmallestChange_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("announced");

    const auto row = [](const char *name, const char *before, const char *after,
                        const char *announced) {
        QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(after)
                            << QString::fromLatin1(announced);
    };
    row("nothing", "abcd", "abcd", "");
    row("first device", "", "a", "+0-0");
    row("append", "abc", "abcd", "+3-3");
    row("append several", "abc", "abcdef", "+3-5");
    row("insert in front", "abc", "xabc", "+0-0 #1-3");
    row("insert inside", "abc", "axybc", "+1-2 #3-4");
    row("remove first", "abcd", "bcd", "-0-0 #0-2");
    row("remove inside", "abcde", "abe", "-2-3 #2-2");
    row("remove last", "abcd", "abc", "-3-3");
    row("remove one of equals", "aaa", "aa", "-2-2");
    row("clear", "abcd", "", "-0-3");
    row("edit first", "abc", "xbc", "~0-0");
    row("edit inside", "abcde", "abxde", "~2-2");
    row("edit the only one", "a", "x", "~0-0");
    row("edit two apart", "abcdef", "axcdyf", "~1-4");
    row("all replaced", "abc", "xyz", "reset");
    row("mixture", "abcdef", "axf", "reset");
}

void TestContactModel::announcesTheSmallestChange()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, announced);

    DeviceList list;
    list.assign(stampedDevices(before));
    ContactModel model(list);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    Announcements announcements(model);
    list.assign(stampedDevices(after));
    QCOMPARE(shownStamps(model), before);
    model.refresh();
    QCOMPARE(announcements.take(), announced);
    QCOMPARE(shownStamps(model), after);
    model.refresh();
    QCOMPARE(announcements.take(), QString());
}

void TestContactModel::hiddenFieldsAndUnchangedLists()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("abc")));
    ContactModel model(list);
    Announcements announcements(model);

    // The device is the same under a new id, but a new password is an edit.
    ContactInfo device = stampedDevice(QStringLiteral("b"));
    device.id = 99;
    list.replaceAt(1, device);
    model.refresh();
    QCOMPARE(announcements.take(), QString());
    device.password = QStringLiteral("secret");
    list.replaceAt(1, device);
    model.refresh();
    QCOMPARE(announcements.take(), QStringLiteral("~1-1"));
    QCOMPARE(model.snapshot().at(1).info.password, QStringLiteral("secret"));
}

void TestContactModel::followsEveryKindOfChange()
{
    DeviceList list;
    ContactModel model(list);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QAbstractItemModelTester proxyTester(
        &proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);

    const auto check = [&](const QString &stamps) {
        model.refresh();
        QCOMPARE(shownStamps(proxy), stamps);
        for (int row = 0; row < stamps.size(); ++row)
            QCOMPARE(proxy.index(row, 0).data().toInt(), row + 1);
    };
    list.append(stampedDevice(QStringLiteral("a")));
    check(QStringLiteral("a"));
    list.append(stampedDevice(QStringLiteral("b")));
    list.append(stampedDevice(QStringLiteral("c")));
    check(QStringLiteral("abc"));
    list.replaceAt(1, stampedDevice(QStringLiteral("x")));
    check(QStringLiteral("axc"));
    list.removeAt(0);
    check(QStringLiteral("xc"));
    list.assign(stampedDevices(QStringLiteral("mnxco")));
    check(QStringLiteral("mnxco"));
    list.removeAt(4);
    list.append(stampedDevice(QStringLiteral("p")));
    list.removeAt(0);
    check(QStringLiteral("nxcp"));
    list.clear();
    check(QString());
    list.append(stampedDevice(QStringLiteral("z")));
    check(QStringLiteral("z"));
}

void TestContactModel::announcementsOnRequest()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("ab")));
    ContactModel model(list);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    Announcements announcements(model);

    list.append(stampedDevice(QStringLiteral("c")));
    list.append(stampedDevice(QStringLiteral("d")));
    QVERIFY(model.insertRows(2, 2));
    QVERIFY(announcements.take().startsWith(QStringLiteral("+2-3")));
    QCOMPARE(shownStamps(model), QStringLiteral("abcd"));

    list.removeAt(1);
    QVERIFY(model.removeRows(1, 1));
    QVERIFY(announcements.take().startsWith(QStringLiteral("-1-1")));
    QCOMPARE(shownStamps(model), QStringLiteral("acd"));
    QCOMPARE(model.index(2, 0).data().toInt(), 3);
}

void TestContactModel::announcementsThatTheListDoesNotBearOut()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("ab")));
    ContactModel model(list);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    QCOMPARE(proxy.rowCount(), 2);

    // Announced as asked, and yet nobody is left with rows that are not there.
    Announcements announcements(model);
    QVERIFY(model.insertRows(0, 3));
    QCOMPARE(announcements.take(), QStringLiteral("+0-2 reset"));
    QCOMPARE(shownStamps(proxy), QStringLiteral("ab"));
    QVERIFY(model.removeRows(0, 1));
    QCOMPARE(announcements.take(), QStringLiteral("-0-0 reset"));
    QCOMPARE(shownStamps(proxy), QStringLiteral("ab"));
}

void TestContactModel::resetKeepsTheSetting()
{
    DeviceList list;
    ContactModel model(list);
    Announcements announcements(model);
    QVERIFY(!model.displaySetting());
    list.append(stampedDevice(QStringLiteral("a")));
    model.resetModel(true);
    QVERIFY(model.displaySetting());
    QCOMPARE(announcements.take(), QStringLiteral("reset"));
    QCOMPARE(shownStamps(model), QStringLiteral("a"));
}

void TestContactModel::positionOfNumber()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("abc")));
    ContactModel model(list);
    QCOMPARE(model.positionOfNumber(1), 0);
    QCOMPARE(model.positionOfNumber(3), 2);
    for (const int number : {0, 4, -1, std::numeric_limits<int>::min()})
        QCOMPARE(model.positionOfNumber(number), -1);
}

QTEST_MAIN(TestContactModel)
#include "tst_contactmodel.moc"
