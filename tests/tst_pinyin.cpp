#include "view/Pinyin.h"
#include "view/PinyinTable.h"

#include <QHash>
#include <QTextCodec>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

constexpr int appendedPairs = 4;

/// The 6,763 characters of GB 2312: the rows B0 to F7, the last of the first level cut short.
QString gb2312Characters()
{
    QByteArray codes;
    for (int row = 0xb0; row <= 0xf7; ++row) {
        for (int cell = 0xa1; cell <= 0xfe; ++cell) {
            if (row != 0xd7 || cell <= 0xf9)
                codes.append(static_cast<char>(row)).append(static_cast<char>(cell));
        }
    }
    return QTextCodec::codecForName("GB18030")->toUnicode(codes);
}

} // namespace

class TestPinyin : public QObject
{
    Q_OBJECT

private slots:
    void tableIsComplete();
    void converts_data();
    void converts();
};

void TestPinyin::tableIsComplete()
{
    const auto *const end = std::prev(pinyinTable.end());
    QCOMPARE(QByteArray(end->syllable), QByteArray("end"));
    QCOMPARE(QByteArray(end->characters), QByteArray("end"));
    QVERIFY(std::is_sorted(pinyinTable.begin(), std::prev(end, appendedPairs),
                           [](const PinyinPair &left, const PinyinPair &right) {
                               return qstrcmp(left.syllable, right.syllable) < 0;
                           }));

    QHash<QString, int> found;
    for (const auto *pair = pinyinTable.begin(); pair != end; ++pair) {
        static const QRegularExpression form(
            QStringLiteral("^[A-Z][a-z]* (\\\\u[1-9a-f][0-9a-f]{3})+$"));
        const QString line =
            QLatin1String(pair->syllable) + QLatin1Char(' ') + QLatin1String(pair->characters);
        QVERIFY2(form.match(line).hasMatch(), qPrintable(line));
        const QStringList codes =
            QString::fromLatin1(pair->characters).mid(2).split(QLatin1String("\\u"));
        for (const QString &code : codes)
            ++found[QChar(code.toUShort(nullptr, 16))];
    }
    const QString listedTwice = QStringLiteral("能枘髟");
    const QString characters = gb2312Characters();
    QCOMPARE(characters.size(), 6763);
    for (const QChar character : characters)
        QCOMPARE(found.take(character), listedTwice.contains(character) ? 2 : 1);
    QVERIFY(found.isEmpty());
}

void TestPinyin::converts_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("pinyin");
    QTest::addColumn<QByteArray>("initials");

    const auto add = [](const char *name, const QByteArray &text, const QByteArray &pinyin,
                        const QByteArray &initials) {
        QTest::newRow(name) << text << pinyin << initials;
    };
    add("nothing", "", QByteArray(), QByteArray());
    add("a name and a number", "张三 8001", "ZhangSan 8001", "ZS");
    add("the first row of several", "能髟", "NenBiao", "NB");
    add("the umlaut", "吕律略虐女", "LvLvLueNueNv", "LLLNN");
    add("not in the table", "網张한カ", "Zhang", "Z");
    add("one and two bytes", "Größe я 三", "Größe я San", "GS");
    add("four bytes", "😀张𠮷", "😀Zhang𠮷", "Z");
    // Half a pair, as a careless program writes it.
    add("a surrogate in three bytes", "\xed\xa0\xbd张", "Zhang", "Z");
    // Shorter codes have no leading zeros, so the escape of one may stand in another's.
    add("a short code", "\xe0\xa5\x8a", "Ba", "B");
    add("only what is not known", "한", QByteArray(""), QByteArray());
    add("long", QByteArray("张").repeated(500), QByteArray("Zhang").repeated(500),
        QByteArray(500, 'Z'));
}

void TestPinyin::converts()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, pinyin);
    QFETCH(QByteArray, initials);
    const QByteArray result = pinyinOf(text);
    QCOMPARE(result, pinyin);
    QCOMPARE(result.isNull(), pinyin.isNull());
    QCOMPARE(pinyinInitials(result), initials);
    QCOMPARE(pinyinInitials(result).isNull(), initials.isNull());
}

QTEST_APPLESS_MAIN(TestPinyin)
#include "tst_pinyin.moc"
