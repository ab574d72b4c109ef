#include "dialogs/AddressSegment.h"
#include "dialogs/IpLine.h"
#include "dialogs/IpPart.h"
#include "tests/Literal.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <functional>
#include <memory>

namespace {

const QChar cursorMark = QLatin1Char('|');
const QChar selectionMark = QLatin1Char('[');
const QChar selectionEnd = QLatin1Char(']');

QString withoutMarks(QString text)
{
    return text.remove(cursorMark).remove(selectionMark).remove(selectionEnd);
}

/// What an entry looks like, in one text: the segments with their separator and, in the one that
/// has the focus, "|" for the cursor or "[...]" for the selection.
QString appearance(const IpLine &line, QChar separator)
{
    QStringList pieces;
    for (const IpPart *part : line.parts()) {
        QString piece = part->text();
        if (part->hasFocus() && part->hasSelectedText()) {
            piece.insert(part->selectionEnd(), selectionEnd);
            piece.insert(part->selectionStart(), selectionMark);
        } else if (part->hasFocus()) {
            piece.insert(part->cursorPosition(), cursorMark);
        }
        pieces.append(piece);
    }
    return pieces.join(separator);
}

/// Puts the cursor or the selection where it is marked.
void setAppearance(IpLine &line, const QString &wanted, QChar separator)
{
    line.setText(withoutMarks(wanted));
    const QStringList pieces = wanted.split(separator);
    for (int i = 0; i < pieces.size(); ++i) {
        if (withoutMarks(pieces.at(i)) != pieces.at(i))
            line.focusPart(i);
        if (pieces.at(i).contains(cursorMark))
            line.parts().at(i)->setCursorPosition(pieces.at(i).indexOf(cursorMark));
        const int start = pieces.at(i).indexOf(selectionMark);
        if (start >= 0)
            line.parts().at(i)->setSelection(start, pieces.at(i).indexOf(selectionEnd) - start - 1);
    }
}

/// Types into whatever has the focus, as a person does. "<" and ">" are the arrow keys, "{" is
/// Backspace, "}" is Delete, and "#" pastes.
void type(const QString &keys)
{
    const Qt::Key special[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Backspace, Qt::Key_Delete};
    for (const QChar key : keys) {
        const int at = "<>{}"_s.indexOf(key);
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

    void keys()
    {
        struct Row
        {
            const char *before, *typed, *after; ///< ends in "!" when something is refused
            const char *clipboard = "";
        };
        const char *const full = "02:00:A7:A1:B2:C3|";
        const Row rows[] = {
            {"|:::::", "0200a7a1b2c3", full},
            {"|:::::", "02:00:a7:a1:b2:c3", full},
            {"|FF:::::", "a", "A|F:::::"},
            {"A|F:22::::", "b", "AB:|22::::"},
            {"AB|:22::::", "c", "AB|:22::::!"},
            {"[AB]:::::", "c", "C|F:::::"},
            {"A[B]:22::::", "c", "AC:|22::::"},
            {"|AB:::::", "g", "|AB:::::!"},
            {"AB|:::::", ":", "AB|:::::"},
            {"A|F:22::::", ".", "AF:|22::::"},
            {"A|B:::::", "{", "|FB:::::"},
            {"A|B:::::", "}", "A|F:::::"},
            {"02:[AB]:A7:::", "}1d", "02:1D:|A7:::"},
            {"02:00:A7:::|", "{{{", "02:00:A7|:::"},

            {"|...", "192.168.100.20", "192.168.100.20|"},
            {"10.20.|30.40", "<>>>", "10.20.30|.40"},
            {"[20].30..", "2", "2|.30.."},
            {"2|.30..", "6", "26.[30].."},
            {"25|.30..", "5", "255.[30].."},
            {"25|.30..", "6", "25|.30..!"},
            {"0|.30..", "7", "7|.30.."},
            {"|.30..", "+", "|.30..!"},
            {"20|.30..", ".", "20.[30].."},
            {"20|.30..", ",", "20.[30].."},
            {"[20].30..", ".", "[20].30.."},
            {"|.30..", ".", "|.30.."},
            // Deleting is no typing: whatever remains, the user is not moved on.
            {"|192.30..", "}", "|92.30.."},
            {"|10.30..", "{", "|10.30.."},

            {"[11]:22:33:44:55:66", "#", full, "0200a7a1b2c3"},
            {"11:[22]:33:44:55:66", "#", "11:02:00:A7:|55:66", "0200A7"},
            {"11:[22]:33:44:55:66", "#", "11:[22]:33:44:55:66!", "beef cake"},
            {"11:|::::", "#", full, " 02 00-A7 A1:B2 C3\n"},
            {"11:|::::", "#", "11:|::::!", "02:00:A7:A1:B2:C3:D4"},
            {"1.2.|.", "#", "192.168.1.20|", "192.168.001.20"},
            {"1.2.|.", "#", "192.168.1.10|", "\uff11\uff19\uff12\u3002168\uff0e1.10/24"},
            {"1.2.|.", "#", "1.2.3.4|", "3.4"},
            {"1.2.|.4", "#", "1.2.|.4!", "192.168.1.256"},
        };
        for (const Row &row : rows) {
            const QString before = QLatin1String(row.before);
            const bool isMac = before.contains(QLatin1Char(':'));
            const QChar separator = QLatin1Char(isMac ? ':' : '.');
            IpLine *line = show(isMac ? IpLine::Form::Mac : IpLine::Form::Ip);
            setAppearance(*line, before, separator);
            QApplication::clipboard()->setText(QString::fromUtf8(row.clipboard));
            const QSignalSpy refused(line, &IpLine::refused);
            type(QLatin1String(row.typed));
            QCOMPARE(appearance(*line, separator) + (refused.isEmpty() ? ""_s : "!"_s),
                     QLatin1String(row.after));
            QCOMPARE(line->value(), line->text());
            delete line;
        }
    }

    void fourCharactersMoveOn()
    {
        using namespace AddressSegment;
        const Result result = apply(FourCharacters, {"abc"_s, 3, 0, 0}, {Input::Type, u'd'});
        QVERIFY(result.text == "abcd"_s && result.move == Move::NextSelected);
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
            QCOMPARE(appearance(*mac, QLatin1Char(':')), "02:00:A7:A1:B|F:"_s);
            enter(*mac->parts().at(2), "0200.a711.2233"_s);
            QCOMPARE(mac->value(), "02:00:A7:11:22:33"_s);
            ip->setText(QString());
            enter(*ip->parts().at(0), "10\u3002"_s);
            QCOMPARE(appearance(*ip, QLatin1Char('.')), "10.|.."_s);
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
        // Half an address is told of once the user has left it.
        QVERIFY(line->accessibleDescription().isEmpty());
        line->parts().at(0)->clearFocus();
        QCOMPARE(line->accessibleDescription(), "Incomplete address"_s);
        // Or before Return saves it.
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
        QCOMPARE(appearance(*line, QLatin1Char('.')), "1.78.[3].25"_s);
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
