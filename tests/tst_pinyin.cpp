#include "tests/Literal.h"
#include "view/Pinyin.h"
#include "view/PinyinTable.h"

#include <QHash>
#include <QTextCodec>
#include <QtTest>

#include <algorithm>
#include <iterator>

class TestPinyin : public QObject
{
    Q_OBJECT

private slots:
    void tableIsComplete()
    {
        constexpr int appendedPairs = 4;
        const auto *const end = std::prev(pinyinTable.end());
        QCOMPARE(QByteArray(end->syllable) + end->characters, QByteArray("endend"));
        QVERIFY(std::is_sorted(pinyinTable.begin(), std::prev(end, appendedPairs),
                               [](const PinyinPair &left, const PinyinPair &right) {
                                   return qstrcmp(left.syllable, right.syllable) < 0;
                               }));
        QHash<QString, int> found;
        for (const auto *pair = pinyinTable.begin(); pair != end; ++pair) {
            static const QRegularExpression form("^[A-Z][a-z]* (\\\\u[1-9a-f][0-9a-f]{3})+$"_s);
            const QString line =
                QLatin1String(pair->syllable) + " "_s + QLatin1String(pair->characters);
            QVERIFY2(form.match(line).hasMatch(), qPrintable(line));
            const QStringList codes = QString::fromLatin1(pair->characters).mid(2).split("\\u"_s);
            for (const QString &code : codes)
                ++found[QChar(code.toUShort(nullptr, 16))];
        }
        // The 6,763 characters of GB 2312: the rows B0 to F7, the last of the first level cut
        // short.
        QByteArray codes;
        for (int row = 0xb0; row <= 0xf7; ++row) {
            for (int cell = 0xa1; cell <= (row == 0xd7 ? 0xf9 : 0xfe); ++cell)
                codes.append(static_cast<char>(row)).append(static_cast<char>(cell));
        }
        const QString characters = QTextCodec::codecForName("GB18030")->toUnicode(codes);
        for (const QChar character : characters)
            QCOMPARE(found.take(character), "能枘髟"_s.contains(character) ? 2 : 1);
        QVERIFY(found.isEmpty());
    }

    void converts()
    {
        struct Row
        {
            QByteArray text, pinyin, initials;
        };
        const Row rows[] = {
            {"", {}, {}},
            {"张三 8001", "ZhangSan 8001", "ZS"},
            {"能髟", "NenBiao", "NB"}, // the first row of several
            {"吕律略虐女", "LvLvLueNueNv", "LLLNN"},
            {"網张한カ", "Zhang", "Z"}, // not in the table
            {"Größe я 三", "Größe я San", "GS"},
            {"😀张𠮷", "😀Zhang𠮷", "Z"},
            // Half a pair, as a careless program writes it.
            {"\xed\xa0\xbd张", "Zhang", "Z"},
            // Shorter codes have no leading zeros, so the escape of one may stand in another's.
            {"\xe0\xa5\x8a", "Ba", "B"},
            {"한", "", {}}, // empty, and not null
            {QByteArray("张").repeated(500), QByteArray("Zhang").repeated(500),
             QByteArray(500, 'Z')}};
        for (const Row &row : rows) {
            const QByteArray result = pinyinOf(row.text);
            QCOMPARE(result, row.pinyin);
            QCOMPARE(result.isNull(), row.pinyin.isNull());
            QCOMPARE(pinyinInitials(result), row.initials);
            QCOMPARE(pinyinInitials(result).isNull(), row.initials.isNull());
        }
    }
};

QTEST_APPLESS_MAIN(TestPinyin)
#include "tst_pinyin.moc"
