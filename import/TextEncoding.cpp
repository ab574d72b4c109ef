#include "import/TextEncoding.h"

#include "import/ByteSearch.h"

#include <algorithm>

namespace {

constexpr QChar substitute(0x1a);
constexpr int utf16Mib = 1015;

/// Whether the text has characters by which a codec stands for unassigned bytes: private-use ones,
/// which some codecs have for every such byte or pair, or controls of the upper half. Only the
/// machine on which a text was written knows what its private-use characters show.
bool hasUnassigned(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        uint character = text.at(i).unicode();
        if (character < 0x80)
            continue;
        if (QChar::isHighSurrogate(character) && i + 1 < text.size() &&
            text.at(i + 1).isLowSurrogate()) {
            character = QChar::surrogateToUcs4(ushort(character), text.at(i + 1).unicode());
            ++i;
        }
        const QChar::Category category = QChar::category(character);
        if (category == QChar::Other_PrivateUse || category == QChar::Other_NotAssigned ||
            category == QChar::Other_Surrogate || character < 0xa0)
            return true;
    }
    return false;
}

} // namespace

void EncodingProbe::look(const QByteArray &block)
{
    if (m_place == Place::Start)
        lookForMark(block);
    if (m_kind == Kind::Utf16 || m_kind == Kind::NotText)
        return;
    lookForZeroBytes(block);
    if (m_kind != Kind::Utf8)
        return;
    static const QTextCodec *const codec = QTextCodec::codecForName("UTF-8");
    codec->toUnicode(block.constData(), block.size(), &m_utf8);
    if (m_utf8.invalidChars > 0)
        m_kind = m_isMarked ? Kind::DamagedUtf8 : Kind::Other;
}

EncodingProbe::Kind EncodingProbe::end() const
{
    // The remaining bytes start a character that never ends.
    if (m_kind == Kind::Utf8 && m_utf8.remainingChars > 0)
        return m_isMarked ? Kind::DamagedUtf8 : Kind::Other;
    return m_kind;
}

void EncodingProbe::lookForMark(const QByteArray &block)
{
    m_place = Place::FirstLine;
    m_isMarked = block.startsWith("\xef\xbb\xbf");
    if (block.startsWith("\xff\xfe") || block.startsWith("\xfe\xff"))
        m_kind = Kind::Utf16;
}

/// One zero byte inside a row does no harm. One in the title row shows that the file is no text, or
/// is UTF-16 without a byte-order mark; several in a row come from a block that was never written.
void EncodingProbe::lookForZeroBytes(const QByteArray &block)
{
    int zero = indexOfByte(block, '\0');
    if (m_place == Place::FirstLine) {
        const auto isLineEnd = [](char byte) { return byte == '\n' || byte == '\r'; };
        const auto end = std::find_if(block.begin(), block.end(), isLineEnd);
        if (zero >= 0 && zero < end - block.begin())
            m_kind = Kind::NotText;
        if (end != block.end())
            m_place = Place::LaterLine;
    }
    if (zero == 0 && m_endedInZero)
        m_kind = Kind::NotText;
    for (; zero >= 0 && m_kind != Kind::NotText; zero = indexOfByte(block, '\0', zero + 1)) {
        if (zero + 1 < block.size() && block.at(zero + 1) == '\0')
            m_kind = Kind::NotText;
    }
    m_endedInZero = block.endsWith('\0');
}

StrictDecoder::StrictDecoder(const QTextCodec &codec)
    : m_codec(codec)
{
}

/// Not every codec counts invalid bytes: those that Qt takes from ICU put U+FFFD or, for a single
/// byte, SUB in their place. A comparison with the text encoded again would prove nothing: several
/// codecs have two codes for some characters, and restore the bytes of private-use ones.
bool StrictDecoder::decode(const QByteArray &piece, QString &text)
{
    text = m_half + m_codec.toUnicode(piece.constData(), piece.size(), &m_state);
    m_half.clear();
    if (!text.isEmpty() && text.at(text.size() - 1).isHighSurrogate()) {
        m_half = text.right(1);
        text.chop(1);
    }
    return m_state.invalidChars == 0 && !text.contains(QChar::ReplacementCharacter) &&
           text.count(substitute) <= piece.count('\x1a') && !hasUnassigned(text);
}

/// A codec from ICU does not report a character that the end of the text cuts off; a line end
/// decoded after it shows the damage. The UTF-16 codecs are Qt's own and do report it. A line end
/// for them would need the byte order of the text.
bool StrictDecoder::end()
{
    if (!m_half.isEmpty() || m_state.remainingChars > 0)
        return false;
    if (m_codec.mibEnum() == utf16Mib)
        return true;
    const QChar lineEnd(QLatin1Char('\n'));
    QTextCodec::ConverterState encoder(QTextCodec::IgnoreHeader);
    QString text;
    return decode(m_codec.fromUnicode(&lineEnd, 1, &encoder), text) && text == lineEnd;
}
