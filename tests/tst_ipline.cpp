#include "Literal.h"
#include "dialogs/AddressSegment.h"
#include "dialogs/IpLine.h"
#include "dialogs/IpPart.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <functional>
#include <memory>
#include <tuple>
#include <vector>

namespace {

using namespace AddressSegment;

const QString specialKeys = "{}<>"_s; // in the order of Input::Action
const QChar cursorMark = QLatin1Char('|');
const QChar selectionMark = QLatin1Char('[');
const QChar selectionEnd = QLatin1Char(']');

/// A segment in one text: "|" is the cursor, "[...]" the selection.
QString shown(State state)
{
    if (state.selectionLength == 0)
        return state.text.insert(state.cursor, cursorMark);
    state.text.insert(state.selectionStart + state.selectionLength, selectionEnd);
    return state.text.insert(state.selectionStart, selectionMark);
}

State stateOf(QString text)
{
    const int start = text.indexOf(selectionMark);
    if (start < 0)
        return {QString(text).remove(cursorMark), text.indexOf(cursorMark)};
    const int end = text.remove(selectionMark).indexOf(selectionEnd);
    return {text.remove(selectionEnd), end, start, end - start};
}

/// What an entry looks like: its segments with their separator, the one that has the focus with its
/// marks.
QString appearance(const IpLine &line)
{
    QStringList pieces;
    for (const IpPart *part : line.parts()) {
        const State state{part->text(), part->cursorPosition(), part->selectionStart(),
                          part->selectionLength()};
        pieces.append(part->hasFocus() ? shown(state) : state.text);
    }
    return pieces.join(QLatin1Char(pieces.size() == 4 ? '.' : ':'));
}

/// Types into whatever has the focus, as a person does. "{" is Backspace, "}" is Delete, "<" and
/// ">" are the arrow keys, and "#" pastes.
void type(const QString &keys)
{
    const Qt::Key special[] = {Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_Left, Qt::Key_Right};
    for (const QChar key : keys) {
        const int at = specialKeys.indexOf(key);
        if (at >= 0)
            QTest::keyClick(QApplication::focusWidget(), special[at]);
        else if (key == QLatin1Char('#'))
            QTest::keySequence(QApplication::focusWidget(), QKeySequence::Paste);
        else
            QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
    }
}

} // namespace

class TestIpLine : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        new QVBoxLayout(m_window.get());
    }

    /// What a key does to a segment, without any widget: "before key after", and where the focus
    /// moves or why the key is refused. The special keys are those of type().
    void keys()
    {
        const std::pair<Kind, std::vector<const char *>> kinds[] = {
            {MacByte,
             {"| a A|F", "|FF a A|F", "A|F b AB| next", "AB| c AB| full", "[AB] c C|F",
              "A[B] c AC| next", "|AB g |AB no-digit", "AB| : AB|", "A|F . A|F next", "A|B { |FB",
              "A|B } A|F", "[AB] } |", "| { | previous's-rest"}},
            {Octet,
             {"|20 < |20 previous's-end", "2|0 < 2|0", "20| > 20| next", "2|0 > 2|0", "[20] 2 2|",
              "2| 6 26| next-selected", "2| 5 25|", "25| 5 255| next-selected",
              "25| 6 25| too-large", "1|25 3 1|25 full", "0| 7 7|", "| + | no-digit",
              "20| . 20| next-selected", "20| , 20| next-selected", "[20] . [20]", "| . |",
              // Deleting is no typing: whatever remains, the user is not moved on.
              "|192 } |92", "|10 { |10"}},
            {FourCharacters, {"abc| d abcd| next-selected"}},
        };
        const char *const moves[] = {"", " next-selected", " next", " previous's-end",
                                     " previous's-rest"};
        const char *const refusals[] = {"", " no-digit", " too-large", " full"};
        for (const auto &[kind, rows] : kinds) {
            for (const char *const text : rows) {
                const QString row = QLatin1String(text);
                const State before = stateOf(row.section(u' ', 0, 0));
                const QChar key = row.section(u' ', 1, 1).at(0);
                const auto action = Input::Action(specialKeys.indexOf(key) + 1);
                const Result result = apply(kind, before, {action, key});
                State after = before;
                after.text = result.text;
                if (result.cursor >= 0)
                    after = {result.text, result.cursor};
                QCOMPARE("%1 %2 %3"_s.arg(shown(before), key, shown(after)) +
                             QLatin1String(moves[int(result.move)]) +
                             QLatin1String(refusals[int(result.refusal)]),
                         row);
            }
        }
    }

    /// The segments of a text that is pasted, and "!" if it cannot be typed either.
    void wholeAddresses()
    {
        const std::tuple<Kind, const char *, const char *> rows[] = {
            {MacByte, " 02 00-A7 A1:B2 C3\n", "02 00 A7 A1 B2 C3"},
            {MacByte, "02:00:A7:A1:B2:C3:D4", "!"},
            {MacByte, "beef cake", "!"},
            {MacByte, "0200A7", ""},
            {Octet, "192.168.001.20", "192 168 1 20"},
            {Octet, "\uff11\uff19\uff12\u3002168\uff0e1.10/24", "192 168 1 10!"},
            {Octet, "192.168.1.256", "!"},
        };
        for (const auto &[kind, text, pieces] : rows) {
            const QString all = QString::fromUtf8(text);
            const bool isTyped = canBeTyped(kind, all, kind == Octet ? 4 : 6);
            QCOMPARE(piecesOfAddress(kind, all).join(u' ') + (isTyped ? ""_s : "!"_s),
                     QLatin1String(pieces));
        }
    }

    /// The same in the widget, from a segment on that is selected. "#" pastes.
    void wholeEntry()
    {
        struct Row
        {
            const char *given;
            int part;
            const char *typed, *after; ///< ends in "!" when something is refused
            const char *clipboard = "";
        };
        const char *const full = "02:00:A7:A1:B2:C3|";
        const char *const other = "11:22:33:44:55:66";
        const Row rows[] = {
            {":::::", 0, "0200a7a1b2c3", full},
            {":::::", 0, "02:00:a7:a1:b2:c3", full},
            {"02:00:A7:::", 5, "{{{", "02:00:A7|:::"},
            {"...", 0, "192.168.100.20", "192.168.100.20|"},
            {"10.20.30.40", 2, "<<<>>>>", "10.20.30.|40"},
            {other, 1, "#", full, "0200a7a1b2c3"},
            {other, 1, "#", "11:02:00:A7:|55:66", "0200A7"},
            {other, 1, "#", "11:[22]:33:44:55:66!", "beef cake"},
        };
        for (const Row &row : rows) {
            const bool isMac = QLatin1String(row.given).contains(QLatin1Char(':'));
            IpLine *line = show(isMac ? IpLine::Form::Mac : IpLine::Form::Ip);
            line->setText(QLatin1String(row.given));
            line->focusPart(row.part);
            QApplication::clipboard()->setText(QString::fromUtf8(row.clipboard));
            const QSignalSpy refused(line, &IpLine::refused);
            type(QLatin1String(row.typed));
            QCOMPARE(appearance(*line) + (refused.isEmpty() ? ""_s : "!"_s),
                     QLatin1String(row.after));
            QCOMPARE(line->value(), line->text());
            delete line;
        }
    }

    void otherWaysIn()
    {
        using Enter = std::function<void(QWidget &, const QString &)>;
        const Enter inputMethod = [](QWidget &widget, const QString &text) {
            QInputMethodEvent event;
            event.setCommitString(text);
            QCoreApplication::sendEvent(&widget, &event);
        };
        const Enter contextMenu = [](QWidget &widget, const QString &text) {
            QApplication::clipboard()->setText(text);
            QMetaObject::invokeMethod(&widget, "paste");
        };
        IpLine *mac = show(IpLine::Form::Mac);
        IpLine *ip = show(IpLine::Form::Ip);
        for (const Enter &enter : {inputMethod, contextMenu}) {
            mac->setText("02:00:A7:::"_s);
            enter(*mac->parts().at(3), "a1\uff22"_s);
            QCOMPARE(appearance(*mac), "02:00:A7:A1:B|F:"_s);
            enter(*mac->parts().at(2), "0200.a711.2233"_s);
            QCOMPARE(mac->value(), "02:00:A7:11:22:33"_s);
            ip->setText(QString());
            enter(*ip->parts().at(0), "10\u3002"_s);
            QCOMPARE(appearance(*ip), "10.|.."_s);
        }
    }

    void editsRefusalsAndClicks()
    {
        IpLine *line = show(IpLine::Form::Ip);
        line->setText("host.example.com"_s);
        line->focusPart(0);
        type("1"_s);
        QVERIFY(!line->findChild<QWidget *>("noteLabel"_s)->isVisible());
        QCOMPARE(line->value(), "1..."_s);
        // The entry marks an incomplete address once the focus has left it.
        QVERIFY(line->accessibleDescription().isEmpty());
        line->parts().at(0)->clearFocus();
        QCOMPARE(line->accessibleDescription(), "Incomplete address"_s);
        // The first Return marks it as well, and saves nothing yet.
        line->setText("host.example.com"_s);
        line->focusPart(0);
        type("1"_s);
        const QSignalSpy returns(line->parts().at(0), &QLineEdit::returnPressed);
        for (const int passed : {0, 1}) {
            QTest::keyClick(line->parts().at(0), Qt::Key_Return);
            QCOMPARE(returns.size(), passed);
            QCOMPARE(line->accessibleDescription(), "Incomplete address"_s);
        }
        // Back to how it looked: the user has emptied the entry.
        type("{"_s);
        QCOMPARE(line->value(), QString());

        line->setText("1.2.3.25"_s);
        const QSignalSpy refused(line, &IpLine::refused);
        line->focusPart(3);
        type(">.6x"_s);
        QCOMPARE(refused.size(), 2);
        QVERIFY(refused.at(0).at(0).toString().contains("255"_s));
        QCOMPARE(refused.at(1).at(0).toString(), "An IP address has the digits 0 to 9."_s);
        QCOMPARE(line->value(), "1.2.3.25"_s);
        // What is typed into a segment that was clicked, whatever it holds.
        IpPart *part = line->parts().at(1);
        QTest::mouseClick(part, Qt::LeftButton, {}, QPoint(part->width() - 3, part->height() / 2));
        type("78."_s);
        QCOMPARE(appearance(*line), "1.78.[3].25"_s);
    }

    void textAndValue()
    {
        using Form = IpLine::Form;
        struct Row
        {
            Form form;
            const char *given, *text, *note = "";
        };
        const Row rows[] = {
            {Form::Mac, "02:00:A7:::", "02:00:A7:::"},
            {Form::Mac, "0200a7a1b2c3", "02:00:A7:A1:B2:C3"},
            {Form::Mac, "02:00:A7:A1:B2:C3:D4", "02:00:A7:A1:B2:C3",
             "Stored: 02:00:A7:A1:B2:C3:D4"},
            {Form::Mac, "<b>phone</b>", "", "Stored: <b>phone</b>"},
            {Form::Ip, "192.168", "192.168..", "Incomplete address"},
            {Form::Ip, "10.0.0.256", "10.0.0.256"},
            {Form::Ip, "010.001.0.07", "010.001.0.07"},
        };
        for (const Row &row : rows) {
            const QString given = QLatin1String(row.given);
            const QString note = QLatin1String(row.note);
            IpLine *line = show(row.form);
            line->parts().first()->clearFocus();
            line->setText(given);
            QCOMPARE(line->text(), QLatin1String(row.text));
            QCOMPARE(line->value(), given);
            const auto *label = line->findChild<QWidget *>("noteLabel"_s);
            QCOMPARE(label->isVisible(), !note.isEmpty());
            QCOMPARE(line->accessibleDescription(), note);
            QVERIFY(label->toolTip().contains(note.toHtmlEscaped()));
            // Walking through the segments is no edit.
            line->focusPart(0);
            type(">>>>>>>>>>"_s);
            QCOMPARE(line->value(), given);
            delete line;
        }
    }

private:
    IpLine *show(IpLine::Form form)
    {
        auto *line = new IpLine(form);
        m_window->layout()->addWidget(line);
        m_window->show();
        line->show();
        QApplication::setActiveWindow(m_window.get());
        [this] { QVERIFY(QTest::qWaitForWindowActive(m_window.get())); }();
        return line;
    }

    std::unique_ptr<QWidget> m_window;
};

QTEST_MAIN(TestIpLine)
#include "tst_ipline.moc"
