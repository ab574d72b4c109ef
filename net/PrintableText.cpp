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
