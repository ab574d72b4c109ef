#include "net/PrintableText.h"

QString printableText(QString text)
{
    for (QChar &c : text) {
        switch (c.category()) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            c = QChar(QChar::ReplacementCharacter);
            break;
        default:
            break;
        }
    }
    return text;
}

QString shortPrintableText(const QString &text)
{
    constexpr int longest = 100;
    constexpr int longestInLine = 20;
    constexpr QChar lineMayEnd(0x200B);
    QString shown = printableText(text.left(longest));
    if (!shown.isEmpty() && shown.at(shown.size() - 1).isHighSurrogate())
        shown.chop(1);
    for (int i = longestInLine; i < shown.size(); i += longestInLine + 1) {
        if (shown.at(i).isLowSurrogate())
            ++i;
        shown.insert(i, lineMayEnd);
    }
    return text.size() > longest ? shown + QChar(0x2026) : shown;
}
