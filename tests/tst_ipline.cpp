#include "dialogs/AddressSegment.h"
#include "dialogs/IpLine.h"
#include "dialogs/IpPart.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <functional>

Q_DECLARE_METATYPE(IpLine::Form)

namespace {

/// What an entry looks like, in one text: the segments with their separator and, in the one that
/// has the focus, "|" for the cursor or "[...]" for the selection.
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
        const QString &piece = pieces.at(i);
        const int anchor = piece.indexOf(QLatin1Char('['));
        const int end = piece.indexOf(QLatin1Char(']'));
        if (anchor >= 0 || piece.contains(QLatin1Char('|')))
            line.focusPart(i);
        if (anchor >= 0)
            line.parts().at(i)->setSelection(anchor, end - anchor - 1);
        else if (piece.contains(QLatin1Char('|')))
            line.parts().at(i)->setCursorPosition(piece.indexOf(QLatin1Char('|')));
    }
}

/// Types into whatever has the focus, as a person does. "<" and ">" are the arrow keys, "{" is
/// Backspace, "}" is Delete, and "#" pastes.
void type(const QString &keys)
{
    const QHash<QChar, int> special = {{QLatin1Char('<'), Qt::Key_Left},
                                       {QLatin1Char('>'), Qt::Key_Right},
                                       {QLatin1Char('{'), Qt::Key_Backspace},
                                       {QLatin1Char('}'), Qt::Key_Delete}};
    for (const QChar key : keys) {
        QWidget *focused = QApplication::focusWidget();
        if (special.contains(key))
            QTest::keyClick(focused, Qt::Key(special.value(key)));
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
    void cleanup() { delete m_window; }

    void rules_data();
    void rules();
    void wholeAddresses_data();
    void wholeAddresses();
    void keys_data();
    void keys();
    void otherWaysIn_data();
    void otherWaysIn();
    void refusals();
    void clickedSegment();
    void reportsKeys();
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

void TestIpLine::rules_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("after");
    // "+" the next one, selected; ">" the next one's start; "<" the end of the one before, "2"
    // behind its second character; "!" refused.
    QTest::addColumn<QString>("move");
    const auto row = [](int kind, const char *before, const char *input, const char *after,
                        const char *move = "") {
        QTest::addRow("%d: %s and %s", kind, before, input)
            << kind << QString::fromUtf8(before) << QString::fromUtf8(input)
            << QString::fromUtf8(after) << QString::fromUtf8(move);
    };
    using namespace AddressSegment;
    row(MacByte, "|", "a", "A|F");
    row(MacByte, "|FF", "a", "A|F");
    row(MacByte, "A|F", "b", "AB|", ">");
    row(MacByte, "AB|", "c", "AB|", "!");
    row(MacByte, "[AB]", "c", "C|F");
    row(MacByte, "[A]B", "c", "C|B");
    row(MacByte, "A[B]", "c", "AC|", ">");
    row(MacByte, "|AB", "g", "|AB", "!");
    row(MacByte, "AB|", ":", "AB|");
    row(MacByte, "AB|", "-", "AB|");
    row(MacByte, "A|F", ".", "A|F", ">");
    row(MacByte, "AB|", "{", "A|F");
    row(MacByte, "A|B", "{", "|FB");
    row(MacByte, "A|B", "}", "A|F");
    row(MacByte, "[AB]", "}", "|");
    row(MacByte, "|", "{", "|", "2");
    row(MacByte, "|AB", "<", "|AB", "<");
    row(MacByte, "A|B", ">", "A|B");
    row(Octet, "[20]", "2", "2|");
    row(Octet, "2|", "6", "26|", "+");
    row(Octet, "2|", "5", "25|");
    row(Octet, "25|", "5", "255|", "+");
    row(Octet, "25|", "6", "25|", "!");
    row(Octet, "255|", "0", "255|", "!");
    row(Octet, "0|", "7", "7|");
    row(Octet, "|", "+", "|", "!");
    row(Octet, "20|", ".", "20|", "+");
    row(Octet, "20|", ",", "20|", "+");
    row(Octet, "20|", "\u3002", "20|", "+");
    row(Octet, "[20]", ".", "[20]");
    row(Octet, "|", ".", "|");
    // Deleting is no typing: whatever remains, the user is not moved on.
    row(Octet, "|192", "}", "|92");
    row(Octet, "1|05", "{", "|5");
    row(Octet, "|10", "{", "|10");
    row(Octet, "10|", ">", "10|", ">");
    row(FourCharacters, "abc|", "d", "abcd|", "+");
}

void TestIpLine::rules()
{
    QFETCH(int, kind);
    QFETCH(QString, before);
    QFETCH(QString, input);
    QFETCH(QString, after);
    QFETCH(QString, move);
    using namespace AddressSegment;

    State state;
    state.selectionStart = before.indexOf(QLatin1Char('['));
    state.cursor = before.indexOf(QLatin1Char('|'));
    if (state.selectionStart >= 0) {
        state.selectionLength = before.indexOf(QLatin1Char(']')) - state.selectionStart - 1;
        state.cursor = state.selectionStart + state.selectionLength;
    }
    state.text = before;
    for (const char marker : {'|', '[', ']'})
        state.text.remove(QLatin1Char(marker));
    const int action = QStringLiteral("{}<>").indexOf(input) + 1;
    const Result result = apply(kind, state, {Input::Action(action), input.at(0)});

    QString shown = result.text;
    shown.insert(std::max(result.cursor, 0), QLatin1Char('|'));
    QCOMPARE(result.cursor < 0 ? before : shown, after);
    const QMap<Move, QString> moves = {{Move::NextSelected, QStringLiteral("+")},
                                       {Move::NextStart, QStringLiteral(">")},
                                       {Move::PreviousEnd, QStringLiteral("<")},
                                       {Move::PreviousRest, QStringLiteral("2")}};
    QCOMPARE(result.refusal == Refusal::None ? moves.value(result.move) : QStringLiteral("!"),
             move);
}

void TestIpLine::wholeAddresses_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("pieces");
    using namespace AddressSegment;
    const char *const mac = "02 00 A7 A1 B2 C3";
    for (const char *const written :
         {"02:00:a7:a1:b2:c3", "02-00-A7-A1-B2-C3", "0200a7a1b2c3", "0200.a7a1.b2c3",
          " 02 00 A7 A1 B2 C3\n", "02:00:A7-A1:B2:C3"})
        QTest::newRow(written) << int(MacByte) << mac;
    for (const char *const written :
         {"2:0:a7:a1:b2:c3", "02:00:A7:A1:B2", "02:00:A7:A1:B2:C3:D4", "0200A7A1B2CG", ""})
        QTest::newRow(written) << int(MacByte) << "";
    for (const char *const written :
         {"192.168.1.10", "192.168.001.10", " 192. 168 .1.10 ", "192 168 1 10", "192.168.1.10/24",
          "\uff11\uff19\uff12\u3002168\uff0e1.10"})
        QTest::newRow(written) << int(Octet) << "192 168 1 10";
    for (const char *const written : {"192.168.1.256", "192.168.1", "192.168.1.1.1", "a.b.c.d"})
        QTest::newRow(written) << int(Octet) << "";
}

void TestIpLine::wholeAddresses()
{
    QFETCH(int, kind);
    QFETCH(QString, pieces);
    const QString written = QString::fromUtf8(QTest::currentDataTag());
    QCOMPARE(AddressSegment::piecesOfAddress(kind, written).join(QLatin1Char(' ')), pieces);
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
    row("mac over a mac from the cursor", "|FF:EE:DD:CC:BB:AA", "0200a7a1b2c3", full);
    row("mac with colons", "|:::::", "02:00:a7:a1:b2:c3", full);
    row("mac with dashes", "[FF]:EE:DD:CC:BB:AA", "02-00-A7-A1-B2-C3", full);
    row("clear and type", "02:[AB]:A7:::", "}1d", "02:1D:|A7:::");
    row("back over emptied segments", "02:00:A7:::|", "{{{", "02:00:A7|:::");

    row("ip with dots", "|...", "10.0.0.1", "10.0.0.1|");
    row("ip dots after full octets", "|...", "192.168.100.20", "192.168.100.20|");
    row("left and right", "10.20.|30.40", "<>>>", "10.20.30|.40");
    row("left in the first", "|10.20.30.40", "<", "|10.20.30.40");
    row("right in the last", "10.20.30.40|", ">", "10.20.30.40|");
    row("backspace in an empty one", "10.200.|.40", "{", "10.20|0..40");
    row("backspace in the empty first", "|.20.30.40", "{", "|.20.30.40");
    row("dot in the last", "10.20.30.40|", ".", "10.20.30.40|");

    row("paste a mac", "[11]:22:33:44:55:66", "#", full, "0200a7a1b2c3");
    row("paste half a mac", "11:[22]:33:44:55:66", "#", "11:02:00:A7:|55:66", "0200A7");
    row("paste no mac", "11:[22]:33:44:55:66", "#", "11:[22]:33:44:55:66", "beef cake");
    row("paste an ip", "1.2.|.", "#", "192.168.1.20|", "192.168.001.20");
    row("paste the end of an ip", "1.2.|.", "#", "1.2.3.4|", "3.4");
    row("paste no ip", "1.2.|.4", "#", "1.2.|.4", "192.168.1.256");
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

using Enter = std::function<void(QWidget &, const QString &)>;
Q_DECLARE_METATYPE(Enter)

void TestIpLine::otherWaysIn_data()
{
    QTest::addColumn<Enter>("enter");
    QTest::newRow("input method") << Enter([](QWidget &widget, const QString &text) {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(&widget, &event);
    });
    QTest::newRow("drop") << Enter([](QWidget &widget, const QString &text) {
        QMimeData data;
        data.setText(text);
        QDragEnterEvent over(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &over);
        QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    });
    QTest::newRow("context menu") << Enter([](QWidget &widget, const QString &text) {
        QApplication::clipboard()->setText(text);
        QMetaObject::invokeMethod(&widget, "paste");
    });
}

void TestIpLine::otherWaysIn()
{
    QFETCH(Enter, enter);
    IpLine *mac = show(IpLine::Form::Mac);
    mac->setText(QStringLiteral("02:00:A7:::"));
    enter(*mac->parts().at(3), QStringLiteral("a1\uff22"));
    QCOMPARE(appearance(*mac, QLatin1Char(':')), QStringLiteral("02:00:A7:A1:B|F:"));
    enter(*mac->parts().at(2), QStringLiteral("0200.a711.2233"));
    QCOMPARE(mac->value(), QStringLiteral("02:00:A7:11:22:33"));
    IpLine *ip = show(IpLine::Form::Ip);
    ip->setText(QString());
    enter(*ip->parts().at(0), QStringLiteral("10\u3002"));
    QCOMPARE(appearance(*ip, QLatin1Char('.')), QStringLiteral("10.|.."));
}

void TestIpLine::refusals()
{
    IpLine *line = show(IpLine::Form::Ip);
    line->setText(QStringLiteral("1.2.3.25"));
    const QSignalSpy refused(line, &IpLine::refused);
    line->focusPart(3);
    type(QStringLiteral(">.6x"));
    QCOMPARE(refused.size(), 2);
    QVERIFY(refused.at(0).at(0).toString().contains(QStringLiteral("255")));
    QCOMPARE(refused.at(1).at(0).toString(),
             QStringLiteral("An IP address has the digits 0 to 9."));
    QCOMPARE(line->value(), QStringLiteral("1.2.3.25"));
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
    IpPart *part = show(IpLine::Form::Mac)->parts().first();
    part->setFocus();
    const QSignalSpy spy(part, &IpPart::sendMsg);
    type(QStringLiteral("a"));
    QCOMPARE(spy.first().at(0).toString(), QStringLiteral("a"));
    // A mnemonic is not typing.
    QTest::keyClick(part, Qt::Key_B, Qt::AltModifier);
    QCOMPARE(part->text(), QStringLiteral("AF"));
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
    QTest::addColumn<QString>("note");
    const auto row = [](const char *name, IpLine::Form form, const char *given, const char *text,
                        const char *note = "") {
        QTest::newRow(name) << form << QString::fromLatin1(given) << QString::fromLatin1(text)
                            << QString::fromLatin1(note);
    };
    const char *const half = "Incomplete address";
    using Form = IpLine::Form;
    row("mac prefix", Form::Mac, "02:00:A7:::", "02:00:A7:::");
    row("mac missing pieces", Form::Mac, "02:00", "02:00::::");
    row("mac of single digits", Form::Mac, "2:0:A7:A1:B2:C3", "2:0:A7:A1:B2:C3");
    row("mac without colons", Form::Mac, "0200a7a1b2c3", "02:00:A7:A1:B2:C3");
    row("mac too long", Form::Mac, "02:00:A7:A1:B2:C3:D4", "02:00:A7:A1:B2:C3",
        "Stored: 02:00:A7:A1:B2:C3:D4");
    row("no mac", Form::Mac, "<b>phone</b>", "", "Stored: <b>phone</b>");
    row("ip missing pieces", Form::Ip, "192.168", "192.168..", half);
    row("mac with dots", Form::Mac, "0200.a7a1.b2c3", "02:00:A7:A1:B2:C3");
    row("ip out of range", Form::Ip, "10.0.0.256", "10.0.0.256");
    row("ip empty", Form::Ip, "", "");
    row("ip all zero", Form::Ip, "0.0.0.0", "0.0.0.0");
    row("ip with leading zeros", Form::Ip, "010.001.0.07", "010.001.0.07");
    row("host name", Form::Ip, "host.example.com", "", "Stored: host.example.com");
}

void TestIpLine::textAndValue()
{
    QFETCH(IpLine::Form, form);
    QFETCH(QString, given);
    QFETCH(QString, text);
    QFETCH(QString, note);

    IpLine *line = show(form);
    line->parts().first()->clearFocus();
    line->setText(given);
    QCOMPARE(line->text(), text);
    QCOMPARE(line->value(), given);
    const auto *label = line->findChild<QWidget *>(QStringLiteral("noteLabel"));
    QCOMPARE(label->isVisible(), !note.isEmpty());
    QCOMPARE(line->accessibleDescription(), note);
    QVERIFY(label->toolTip().contains(note.toHtmlEscaped()));

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
    QVERIFY(!line->findChild<QWidget *>(QStringLiteral("noteLabel"))->isVisible());
    QCOMPARE(line->value(), QStringLiteral("1..."));
    // Half an address is told of once the user has left it.
    QVERIFY(line->accessibleDescription().isEmpty());
    line->parts().at(0)->clearFocus();
    QCOMPARE(line->accessibleDescription(), QStringLiteral("Incomplete address"));
    line->parts().at(0)->setFocus();
    // Back to how it looked: the user has emptied the entry.
    type(QStringLiteral("{"));
    QCOMPARE(line->value(), QString());

    IpLine *mac = show(IpLine::Form::Mac);
    setAppearance(*mac, QStringLiteral("0200A7A1B2C3"), QLatin1Char(':'));
    mac->parts().at(5)->setFocus();
    type(QStringLiteral(">4"));
    QCOMPARE(mac->value(), QStringLiteral("02:00:A7:A1:B2:C4"));
}

QTEST_MAIN(TestIpLine)
#include "tst_ipline.moc"
