#include "model/PhonesSeen.h"
#include "tests/TestDevices.h"
#include "view/ContactModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>

#include <limits>

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
    void cells();
    void tellsWhoHasAsked();
    void nothingOutsideTheTable();
    void announcesTheSmallestChange_data();
    void announcesTheSmallestChange();
    void hiddenFieldsAndUnchangedLists();
    void announcementsOnRequest();
    void positionOfNumber();
};

void TestContactModel::cells()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("ab")));
    ContactInfo second = list.snapshot().at(1).info;
    second.id = 77; // the table numbers the rows itself
    second.mac = QStringLiteral("0200.A7a1.b2c3");
    list.replaceAt(1, second);
    const ContactModel model(list);
    QCOMPARE(model.columnCount(), 11);
    QStringList texts;
    for (int column = 0; column < 11; ++column) {
        const QModelIndex cell = model.index(1, column);
        texts.append(cell.data().toString());
        QCOMPARE(cell.data(Qt::TextAlignmentRole).toInt(), 0x81);
        QCOMPARE(cell.data(Qt::DecorationRole).userType() == QMetaType::QPixmap, column >= 9);
        for (const int role : {Qt::EditRole, Qt::ToolTipRole, Qt::CheckStateRole, Qt::UserRole})
            QVERIFY2(!cell.data(role).isValid(), qPrintable(QString::number(role)));
        // No phone can ask for the other one.
        const QModelIndex lost = model.index(0, column);
        QVERIFY(lost.data(ContactModel::NoMacRole).toBool());
        for (const int role : {Qt::ToolTipRole, Qt::AccessibleDescriptionRole})
            QCOMPARE(lost.data(role).toString().isEmpty(), column != ContactModel::Mac);
        QVERIFY(!model.flags(cell).testFlag(Qt::ItemIsEditable));
    }
    QCOMPARE(texts.join(QLatin1Char('|')),
             QStringLiteral(
                 "2|0200.A7a1.b2c3|b.product|b.sip_server|b.first_account|b.sip_user_id|b.city|"
                 "b.company|b.department||"));
    QCOMPARE(model.index(1, 0).data().userType(), static_cast<int>(QMetaType::Int));
}

void TestContactModel::tellsWhoHasAsked()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("ab")));
    ContactInfo second = list.snapshot().at(1).info;
    second.mac = QStringLiteral("02:00:A7:A1:B2:C3");
    list.replaceAt(1, second);
    PhonesSeen seen(list);
    QSignalSpy counted(&seen, &PhonesSeen::counted);
    ContactModel model(list);
    model.setPhonesSeen(seen);
    const QModelIndex cell = model.index(1, ContactModel::City);
    QVERIFY(cell.data(Qt::ToolTipRole).toString().contains(QStringLiteral("has not asked")));
    QVERIFY(!model.index(0, ContactModel::City).data(Qt::ToolTipRole).isValid()); // it cannot ask
    RequestEnd request;
    request.mac = QStringLiteral("0200a7ffffff");
    seen.note(request); // a stranger's
    request = {RequestEnd::now(), {}, {}, QStringLiteral("0200a7a1b2c3"), 2931, 0xc0a80a17};
    request.outcome = RequestOutcome::Sent;
    seen.note(request);
    for (const int role : {Qt::ToolTipRole, Qt::AccessibleDescriptionRole})
        QVERIFY(cell.data(role).toString().endsWith(
            QStringLiteral(" from 192.168.10.23: sent 2,931 bytes.")));
    QTRY_COMPARE(counted.value(0).value(0).toInt(), 1);
}

void TestContactModel::nothingOutsideTheTable()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("ab")));
    ContactModel model(list);
    QVERIFY(!model.data(QModelIndex(), Qt::DisplayRole).isValid());
    QVERIFY(!model.data(model.index(0, 11), Qt::TextAlignmentRole).isValid());

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
    row("append several", "abc", "abcdef", "+3-5");
    row("insert in front", "abc", "xabc", "+0-0 #1-3");
    row("insert inside", "abc", "axybc", "+1-2 #3-4");
    row("remove first", "abcd", "bcd", "-0-0 #0-2");
    row("remove inside", "abcde", "abe", "-2-3 #2-2");
    row("remove one of equals", "aaa", "aa", "-2-2");
    row("clear", "abcd", "", "-0-3");
    row("edit first", "abc", "xbc", "~0-0");
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
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    using Tester = QAbstractItemModelTester;
    const Tester tester(&model, Tester::FailureReportingMode::QtTest);
    const Tester proxyTester(&proxy, Tester::FailureReportingMode::QtTest);
    Announcements announcements(model);
    list.assign(stampedDevices(after));
    QCOMPARE(shownStamps(model), before);
    model.refresh();
    QCOMPARE(announcements.take(), announced);
    QCOMPARE(shownStamps(proxy), after);
    for (int row = 0; row < after.size(); ++row)
        QCOMPARE(proxy.index(row, 0).data().toInt(), row + 1);
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

void TestContactModel::announcementsOnRequest()
{
    DeviceList list;
    list.assign(stampedDevices(QStringLiteral("ab")));
    ContactModel model(list);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    Announcements announcements(model);

    list.append(stampedDevice(QStringLiteral("c")));
    list.append(stampedDevice(QStringLiteral("d")));
    QVERIFY(model.insertRows(2, 2));
    QVERIFY(announcements.take().startsWith(QStringLiteral("+2-3")));
    QCOMPARE(shownStamps(proxy), QStringLiteral("abcd"));
    list.removeAt(1);
    QVERIFY(model.removeRows(1, 1));
    QVERIFY(announcements.take().startsWith(QStringLiteral("-1-1")));
    QCOMPARE(shownStamps(proxy), QStringLiteral("acd"));
    QCOMPARE(proxy.index(2, 0).data().toInt(), 3);

    // The list bears none of it out: nobody is left with rows that are not there.
    QVERIFY(model.insertRows(0, 3));
    QCOMPARE(announcements.take(), QStringLiteral("+0-2 reset"));
    QVERIFY(model.removeRows(0, 1));
    QCOMPARE(announcements.take(), QStringLiteral("-0-0 reset"));
    QCOMPARE(shownStamps(proxy), QStringLiteral("acd"));

    list.append(stampedDevice(QStringLiteral("e")));
    model.resetModel(true);
    QVERIFY(model.displaySetting());
    QCOMPARE(announcements.take(), QStringLiteral("reset"));
    QCOMPARE(shownStamps(proxy), QStringLiteral("acde"));
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
