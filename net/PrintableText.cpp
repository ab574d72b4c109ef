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
    if (text.size() <= longest)
        return printableText(text);
    const bool halves = text.at(longest - 1).isHighSurrogate();
    return printableText(text.left(halves ? longest - 1 : longest)) + QChar(0x2026);
}
