#include "dialogs/IpLine.h"
#include "dialogs/IpPart.h"
#include "model/DebugLog.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>

Q_DECLARE_METATYPE(IpLine::Form)

namespace {

/// What an entry looks like, in one text: the segments with their separator and, in the one that
/// has the focus, "|" for the cursor or "[...]" for the selection ("]...[" when the cursor is at
/// its left end).
QString appearance(const IpLine &line, QChar separator)
{
    QStringList pieces;
    for (const IpPart *part : line.parts()) {
        QString piece = part->text();
        if (part->hasFocus() && part->hasSelectedText()) {
            piece.insert(part->selectionEnd(), QLatin1Char(']'));
            piece.insert(part->selectionStart(), QLatin1Char('['));
        } else if (part->hasFocus()) {
            piece.insert(part->cursorPosition(), QLatin1Char('|'));
        }
        pieces.append(piece);
    }
    return pieces.join(separator);
}

void setAppearance(IpLine &line, const QString &wanted, QChar separator)
{
    QString plain = wanted;
    for (const char marker : {'|', '[', ']'})
        plain.remove(QLatin1Char(marker));
    line.setText(plain);
    const QStringList pieces = wanted.split(separator);
    for (int i = 0; i < pieces.size(); ++i) {
        QString piece = pieces.at(i);
        const int anchor = piece.indexOf(QLatin1Char('['));
        const int end = piece.indexOf(QLatin1Char(']'));
        const int length = piece.remove(QLatin1Char('[')).remove(QLatin1Char(']')).size();
        if (anchor >= 0 || piece.contains(QLatin1Char('|')))
            line.focusPart(i);
        if (anchor >= 0)
            line.parts().at(i)->setSelection(end == 0 ? length : anchor,
                                             end == 0 ? -length : end - anchor - 1);
        else if (piece.contains(QLatin1Char('|')))
            line.parts().at(i)->setCursorPosition(piece.indexOf(QLatin1Char('|')));
    }
}

/// Types into whatever has the focus, as a person does. "<" and ">" are the arrow keys, "{" is
/// Backspace, "}" is Delete, and "#" pastes.
void type(const QString &keys)
{
    for (const QChar key : keys) {
        QWidget *focused = QApplication::focusWidget();
        if (key == QLatin1Char('<'))
            QTest::keyClick(focused, Qt::Key_Left);
        else if (key == QLatin1Char('>'))
            QTest::keyClick(focused, Qt::Key_Right);
        else if (key == QLatin1Char('{'))
            QTest::keyClick(focused, Qt::Key_Backspace);
        else if (key == QLatin1Char('}'))
            QTest::keyClick(focused, Qt::Key_Delete);
        else if (key == QLatin1Char('#'))
            QTest::keySequence(focused, QKeySequence::Paste);
        else
            QTest::keyClick(focused, key.toLatin1());
    }
}

} // namespace

class TestIpLine : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyAndZero();
    void keys_data();
    void keys();
    void clickedSegment();
    void reportsKeys();
    void pasteByMenu();
    void programText();
    void textAndValue_data();
    void textAndValue();
    void valueAfterEdit();

private:
    IpLine *show(IpLine::Form form);

    QWidget *m_window = nullptr;
};

void TestIpLine::init()
{
    m_window = new QWidget;
    new QVBoxLayout(m_window);
}

void TestIpLine::cleanup()
{
    delete m_window;
    debugLog().setEnabled(QtDebugMsg, false);
}

IpLine *TestIpLine::show(IpLine::Form form)
{
    auto *line = new IpLine(form);
    m_window->layout()->addWidget(line);
    [this] {
        m_window->show();
        QApplication::setActiveWindow(m_window);
        QVERIFY(QTest::qWaitForWindowActive(m_window));
    }();
    return line;
}

void TestIpLine::emptyAndZero()
{
    debugLog().setEnabled(QtDebugMsg, true);
    IpLine ip(IpLine::Form::Ip);
    QTest::ignoreMessage(QtDebugMsg, " the first part of the ipaddressn can not be 0");
    QCOMPARE(ip.text(), QStringLiteral("0.0.0.0"));
    ip.setText(QString());
    QTest::ignoreMessage(QtDebugMsg, "ip is empty");
    QCOMPARE(ip.text(), QString());
    IpLine mac(IpLine::Form::Mac);
    QCOMPARE(mac.value(), QStringLiteral("FF:FF:FF:FF:FF:FF"));
    mac.setText(QString());
    QTest::ignoreMessage(QtDebugMsg, "mac is empty.");
    QCOMPARE(mac.text(), QString());
}

void TestIpLine::keys_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("clipboard");
    const auto row = [](const char *name, const char *before, const char *typed, const char *after,
                        const char *clipboard = "") {
        QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(typed)
                            << QString::fromLatin1(after) << QString::fromLatin1(clipboard);
    };

    const char *full = "02:00:A7:A1:B2:C3|";
    row("mac into nothing", "|:::::", "0200a7a1b2c3", full);
    row("mac after the prefix", "02:00:A7:|::", "a1b2c3", full);
    row("mac over the prefix", "[02]:00:A7:::", "0200a7a1b2c3", full);
    row("mac over a mac from the cursor", "|FF:EE:DD:CC:BB:AA", "0200a7a1b2c3", full);
    row("mac with colons", "|:::::", "02:00:a7:a1:b2:c3", full);
    row("mac with dashes", "[FF]:EE:DD:CC:BB:AA", "02-00-A7-A1-B2-C3", full);
    row("mac no digits", "02:|00:A7:A1:B2:C3", "xyz :", "02:|00:A7:A1:B2:C3");
    row("one digit is filled up", "02:00:|:::", "a", "02:00:A|F:::");
    row("after one digit", "02:00:|:::", "a.", "02:00:AF:|::");

    row("backspace at the end", "02:AB|:A7:::", "{", "02:A|F:A7:::");
    row("backspace inside", "02:A|B:A7:::", "{", "02:|FB:A7:::");
    row("delete inside", "02:A|B:A7:::", "}", "02:A|F:A7:::");
    row("delete all", "02:[AB]:A7:::", "}", "02:|:A7:::");
    row("clear and type", "02:[AB]:A7:::", "}1d", "02:1D:|A7:::");
    row("type over all, selected backwards", "02:]AB[:A7:::", "c", "02:C|F:A7:::");
    row("type over the first", "02:[A]B:A7:::", "cd", "02:CD:|A7:::");
    row("type over the second", "02:A[B]:A7:::", "c", "02:AC:|A7:::");
    row("at the end of a full one", "02:AB|:A7:::", "c", "02:AB|:A7:::");
    row("back over emptied segments", "02:00:A7:::|", "{{{", "02:00:A7|:::");

    row("ip with dots", "|...", "10.0.0.1", "10.0.0.1|");
    row("ip dots after full octets", "|...", "192.168.100.20", "192.168.100.20|");
    row("26 moves on", "1.[2].3.4", "26", "1.26.[3].4");
    row("25 stays", "1.[2].3.4", "25", "1.25|.3.4");
    row("256 is refused", "1.[2].3.4", "256", "1.25|.3.4");
    row("07 is 7", "1.[2].3.4", "07", "1.7|.3.4");
    row("no sign, no letter", "1.[2].3.4", "+-a, 5", "1.5|.3.4");
    // Deleting is no typing: whatever remains, the user is not moved on.
    row("delete the first of three", "1.|192.3.4", "}", "1.|92.3.4");
    row("delete down to a zero in front", "1.1|05.3.4", "{", "1.|5.3.4");

    row("left at the start", "10.20.|30.40", "<", "10.20|.30.40");
    row("left in the first", "|10.20.30.40", "<", "|10.20.30.40");
    row("right at the end", "10.20.30|.40", ">", "10.20.30.|40");
    row("right in the last", "10.20.30.40|", ">", "10.20.30.40|");
    row("backspace in an empty one", "10.200.|.40", "{", "10.20|0..40");
    row("backspace in the empty first", "|.20.30.40", "{", "|.20.30.40");
    row("backspace at the start", "10.20.|30.40", "{", "10.20.|30.40");
    row("dot", "10.20|.30.40", ".", "10.20.[30].40");
    row("dot with a selection", "10.[20].30.40", ".", "10.[20].30.40");
    row("dot in an empty one", "10.|.30.40", ".", "10.|.30.40");
    row("dot in the last", "10.20.30.40|", ".", "10.20.30.40|");

    row("paste a mac", "[11]:22:33:44:55:66", "#", full, "0200a7a1b2c3");
    row("paste a mac with dashes", "11:22:33:::|", "#", full, " 02-00-A7-A1-B2-C3\n");
    row("paste a byte", "11:[22]:33:44:55:66", "#", "11:AB|:33:44:55:66", "ab");
    row("paste half a mac", "11:[22]:33:44:55:66", "#", "11:02|:33:44:55:66", "0200A7");
    row("paste mixed", "11:[22]:33:44:55:66", "#", "11:02|:33:44:55:66", "02:00-A7:A1:B2:C3");
    row("paste no mac", "11:[22]:33:44:55:66", "#", "11:[22]:33:44:55:66", "xy");
    row("paste an ip", "1.2.|.", "#", "192.168.1.20|", "192.168.001.20");
    row("paste no ip", "1.2.|.4", "#", "1.2.192.[4]", "192.168.1.256");
}

void TestIpLine::keys()
{
    QFETCH(QString, before);
    QFETCH(QString, typed);
    QFETCH(QString, after);
    QFETCH(QString, clipboard);

    const bool isMac = before.contains(QLatin1Char(':'));
    const QChar separator = QLatin1Char(isMac ? ':' : '.');
    IpLine *line = show(isMac ? IpLine::Form::Mac : IpLine::Form::Ip);
    setAppearance(*line, before, separator);
    QApplication::clipboard()->setText(clipboard);
    type(typed);
    QCOMPARE(appearance(*line, separator), after);
    QCOMPARE(line->value(), line->text());
}

void TestIpLine::clickedSegment()
{
    IpLine *line = show(IpLine::Form::Mac);
    line->setText(QStringLiteral("02:00:A7:A1:B2:C3"));
    IpPart *part = line->parts().at(3);
    QTest::mouseClick(part, Qt::LeftButton, {}, QPoint(part->width() - 3, part->height() / 2));
    type(QStringLiteral("de"));
    QCOMPARE(appearance(*line, QLatin1Char(':')), QStringLiteral("02:00:A7:DE:|B2:C3"));
}

void TestIpLine::reportsKeys()
{
    IpLine *line = show(IpLine::Form::Mac);
    IpPart *part = line->parts().first();
    part->setFocus();
    QSignalSpy spy(part, SIGNAL(sendMsg(QString)));
    type(QStringLiteral("a"));
    QCOMPARE(spy.first().at(0).toString(), QStringLiteral("a"));
    // A mnemonic is not typing.
    QTest::keyClick(part, Qt::Key_B, Qt::AltModifier);
    QCOMPARE(part->text(), QStringLiteral("AF"));
    QVERIFY(QMetaObject::invokeMethod(part, "macModify", Q_ARG(QString, QStringLiteral("c"))));
    QCOMPARE(part->text(), QStringLiteral("AC"));
}

void TestIpLine::pasteByMenu()
{
    IpLine *line = show(IpLine::Form::Mac);
    QApplication::clipboard()->setText(QStringLiteral("0200a7a1b2c3"));
    const QScopedPointer<QMenu> menu(line->parts().at(2)->createStandardContextMenu());
    const QList<QAction *> actions = menu->actions();
    const auto paste = std::find_if(actions.begin(), actions.end(), [](const QAction *action) {
        return action->text().startsWith(QLatin1String("&Paste"));
    });
    QVERIFY(paste != actions.end());
    (*paste)->trigger();
    QCOMPARE(line->text(), QStringLiteral("02:00:A7:A1:B2:C3"));
}

void TestIpLine::programText()
{
    for (const auto form : {IpLine::Form::Mac, IpLine::Form::Ip}) {
        IpLine *line = show(form);
        line->focusPart(0);
        line->parts().at(1)->setText(QStringLiteral("A"));
        line->parts().at(0)->setText(QStringLiteral("30"));
        line->parts().at(2)->setText(QStringLiteral("07"));
        const QString now = appearance(*line, QLatin1Char('/'));
        QVERIFY2(now.startsWith(QLatin1String("30|/A/07/")), qPrintable(now));
        // What the user does next is taken for the user's again.
        line->focusPart(0);
        type(QStringLiteral("99"));
        QVERIFY(line->parts().at(1)->hasFocus());
        delete line;
    }
}

void TestIpLine::textAndValue_data()
{
    QTest::addColumn<IpLine::Form>("form");
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("storedShown");
    const auto row = [](const char *name, IpLine::Form form, const char *given, const char *text,
                        bool storedShown = false) {
        QTest::newRow(name) << form << QString::fromLatin1(given) << QString::fromLatin1(text)
                            << storedShown;
    };
    using Form = IpLine::Form;
    row("mac prefix", Form::Mac, "02:00:A7:::", "02:00:A7:::");
    row("mac missing pieces", Form::Mac, "02:00", "02:00::::");
    row("mac of single digits", Form::Mac, "2:0:A7:A1:B2:C3", "2:0:A7:A1:B2:C3");
    row("mac without colons", Form::Mac, "0200a7a1b2c3", "02:00:a7:a1:b2:c3");
    row("mac too long", Form::Mac, "02:00:A7:A1:B2:C3:D4", "02:00:A7:A1:B2:C3", true);
    row("no mac", Form::Mac, "<b>phone</b>", "", true);
    row("ip missing pieces", Form::Ip, "192.168", "192.168..");
    row("ip out of range", Form::Ip, "10.0.0.256", "10.0.0.256");
    row("ip all zero", Form::Ip, "0.0.0.0", "0.0.0.0");
    row("ip with leading zeros", Form::Ip, "010.001.0.07", "010.001.0.07");
    row("host name", Form::Ip, "host.example.com", "", true);
}

void TestIpLine::textAndValue()
{
    QFETCH(IpLine::Form, form);
    QFETCH(QString, given);
    QFETCH(QString, text);
    QFETCH(bool, storedShown);

    IpLine *line = show(form);
    line->setText(given);
    QCOMPARE(line->text(), text);
    QCOMPARE(line->value(), given);
    const auto *stored = line->findChild<QWidget *>(QStringLiteral("storedLabel"));
    QCOMPARE(stored->isVisible(), storedShown);
    QVERIFY(!storedShown || stored->toolTip().contains(given.toHtmlEscaped()));

    // Walking through the segments is no edit.
    line->focusPart(0);
    type(QStringLiteral(">>>>>>>>>>"));
    QCOMPARE(line->value(), given);
}

void TestIpLine::valueAfterEdit()
{
    IpLine *line = show(IpLine::Form::Ip);
    line->setText(QStringLiteral("host.example.com"));
    line->focusPart(0);
    type(QStringLiteral("1"));
    QVERIFY(!line->findChild<QWidget *>(QStringLiteral("storedLabel"))->isVisible());
    QCOMPARE(line->value(), QStringLiteral("1..."));
    // Back to how it looked: the user has emptied the entry.
    type(QStringLiteral("{"));
    QCOMPARE(line->value(), QString());

    line->setText(QStringLiteral("192.168"));
    line->parts().at(2)->setText(QStringLiteral("1"));
    QCOMPARE(line->value(), QStringLiteral("192.168.1."));

    IpLine *mac = show(IpLine::Form::Mac);
    setAppearance(*mac, QStringLiteral("0200A7A1B2C3"), QLatin1Char(':'));
    mac->parts().at(5)->setFocus();
    type(QStringLiteral(">4"));
    QCOMPARE(mac->value(), QStringLiteral("02:00:A7:A1:B2:C4"));
}

QTEST_MAIN(TestIpLine)
#include "tst_ipline.moc"
