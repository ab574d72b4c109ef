#include "model/PhonesSeen.h"
#include "tests/Literal.h"
#include "tests/TestDevices.h"
#include "view/ContactModel.h"
#include "view/Pinyin.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>

namespace {

/// A model of the devices with these stamps, and what sorts and filters it.
struct Fixture
{
    explicit Fixture(const char *stamps)
    {
        list.assign(stampedDevices(stamps));
        model.refresh();
        proxy.setSourceModel(&model);
        const auto note = [this](const char *sign, int first, int last) {
            announcements.append("%1%2-%3"_s.arg(QLatin1String(sign)).arg(first).arg(last));
        };
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &proxy,
                         [=](const QModelIndex &, int first, int last) { note("+", first, last); });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &proxy,
                         [=](const QModelIndex &, int first, int last) { note("-", first, last); });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &proxy,
                         [=](const QModelIndex &from, const QModelIndex &to) {
                             note(to.column() == ContactModel::Number ? "#" : "~", from.row(),
                                  to.row());
                         });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &proxy,
                         [this] { announcements.append("reset"_s); });
    }

    /// Every announcement since the last call, in order, and then the stamps that are shown:
    /// "+first-last", "-first-last", "~first-last" for changed rows, "#first-last" where only the
    /// numbers changed, "reset".
    QString take()
    {
        QStringList all;
        all.swap(announcements);
        for (int row = 0; row < proxy.rowCount(); ++row) {
            const QString number = proxy.index(row, 0).data().toString();
            const QString mac = proxy.index(row, ContactModel::Mac).data().toString();
            all += number == QString::number(row + 1) ? mac.section(QLatin1Char('.'), 0, 0) : "?"_s;
        }
        return all.join(QLatin1Char(' '));
    }

    DeviceList list;
    ContactModel model{list};
    QSortFilterProxyModel proxy;
    QStringList announcements;
};

} // namespace

class TestContactModel : public QObject
{
    Q_OBJECT

private slots:
    void cells()
    {
        DeviceList list;
        list.assign(stampedDevices("a b"));
        ContactInfo second = list.snapshot().at(1).info;
        second.id = 77; // the table numbers the rows itself
        second.mac = "0200.A7a1.b2c3"_s;
        list.replaceAt(1, second);
        second.mac = "02:00:a7:A1:B2:C3"_s;
        list.append(second);
        ContactModel model(list);
        QStringList texts;
        for (int column = 0; column < model.columnCount(); ++column) {
            const QModelIndex cell = model.index(1, column);
            texts.append(cell.data().toString());
            QCOMPARE(cell.data(Qt::DecorationRole).userType() == QMetaType::QPixmap, column >= 9);
            QVERIFY(!cell.data(Qt::ToolTipRole).isValid());
            // The first has no address, and the third one's phone gets the settings of the second.
            for (const int row : {0, 2}) {
                const QModelIndex lost = model.index(row, column);
                QVERIFY(lost.data(ContactModel::NoPhoneRole).toBool());
                for (const int role : {Qt::ToolTipRole, Qt::AccessibleDescriptionRole})
                    QCOMPARE(lost.data(role).toString().isEmpty(), column != ContactModel::Mac);
            }
        }
        QCOMPARE(texts.join(QLatin1Char('|')),
                 "2|0200.A7a1.b2c3|b.product|b.sip_server|b.first_account|b.sip_user_id|b.city|"
                 "b.company|b.department||"_s);
        QCOMPARE(model.positionOfNumber(2), 1);
        // An index stays valid when its row is gone.
        const QModelIndex stale = model.index(2, ContactModel::Mac);
        list.removeAt(1);
        model.refresh();
        QVERIFY(!model.index(1, 0).data(ContactModel::NoPhoneRole).isValid());
        for (const QModelIndex &none : {QModelIndex(), model.index(0, 11), stale})
            QVERIFY(!model.data(none, Qt::DisplayRole).isValid());
    }

    void tellsWhoHasAsked()
    {
        DeviceList list;
        list.assign({stampedDevice("a"_s), deviceWithMac("02:00:A7:A1:B2:C3"_s)});
        PhonesSeen seen(list);
        const QSignalSpy counted(&seen, &PhonesSeen::counted);
        ContactModel model(list);
        model.setPhonesSeen(seen);
        const QModelIndex cell = model.index(1, ContactModel::City);
        QVERIFY(cell.data(Qt::ToolTipRole).toString().contains("has not asked"_s));
        QVERIFY(!model.index(0, ContactModel::City).data(Qt::ToolTipRole).isValid()); // no request
        RequestEnd request;
        request.mac = "0200a7ffffff"_s;
        seen.note(request); // from a phone that is not listed
        request = {RequestEnd::now(), {}, {}, "0200a7a1b2c3"_s, 2931, 0xc0a80a17};
        request.outcome = RequestOutcome::Sent;
        seen.note(request);
        for (const int role : {Qt::ToolTipRole, Qt::AccessibleDescriptionRole})
            QVERIFY(
                cell.data(role).toString().endsWith(" from 192.168.10.23: sent 2,931 bytes."_s));
        QTRY_COMPARE(counted.value(0).value(0).toInt(), 1);
    }

    void announcesTheSmallestChange()
    {
        const std::tuple<const char *, const char *, const char *> rows[] = {
            {"a b c d", "a b c d", ""},
            {"a b c", "a b c d e f", "+3-5 "},
            {"a b c", "x a b c", "+0-0 #1-3 "},
            {"a b c", "a x y b c", "+1-2 #3-4 "},
            {"a b c d", "b c d", "-0-0 #0-2 "},
            {"a a a", "a a", "-2-2 "},
            {"a b c d e f", "a x c d y f", "~1-4 "},
            {"a b c", "x y z", "reset "},
            {"a b c d e f", "a x f", "reset "}};
        for (const auto &[before, after, announced] : rows) {
            Fixture f(before);
            using Tester = QAbstractItemModelTester;
            const Tester tester(&f.model, Tester::FailureReportingMode::QtTest);
            const Tester proxyTester(&f.proxy, Tester::FailureReportingMode::QtTest);
            f.list.assign(stampedDevices(after));
            QCOMPARE(f.take(), QLatin1String(before));
            f.model.refresh();
            QCOMPARE(f.take(), QLatin1String(announced) + QLatin1String(after));
            f.model.refresh();
            QCOMPARE(f.take(), QLatin1String(after));
        }
    }

    void announcementsOnRequest()
    {
        Fixture f("a b");
        // The device is the same under a new id, but a new password is an edit.
        ContactInfo device = stampedDevice("b"_s);
        for (const QString &password : {device.password, "secret"_s}) {
            device.id = 99;
            device.password = password;
            f.list.replaceAt(1, device);
            f.model.refresh();
            QCOMPARE(f.take(), password == "secret"_s ? "~1-1 a b"_s : "a b"_s);
        }
        // The list still has the row: the model takes the announcement back.
        QVERIFY(f.model.removeRows(0, 1));
        QCOMPARE(f.take(), "-0-0 reset a b"_s);
    }

    void pinyin()
    {
        const std::tuple<QByteArray, QByteArray, QByteArray> rows[] = {
            {"张三 8001", "ZhangSan 8001", "ZS"},
            {"能髟網", "NenBiao", "NB"}, // with two readings each; with none
            {"Größe я 😀三", "Größe я 😀San", "GS"}};
        for (const auto &[text, syllables, initials] : rows) {
            QCOMPARE(pinyinOf(text), syllables);
            QCOMPARE(pinyinInitials(syllables), initials);
        }
    }
};

QTEST_MAIN(TestContactModel)
#include "tst_contactmodel.moc"
