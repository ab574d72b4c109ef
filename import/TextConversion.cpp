#include "import/TextConversion.h"

namespace {

constexpr qint64 pieceSize = 32768;
constexpr int utf8Mib = 106;

const QTextCodec *codecNamed(const QString &name)
{
    return name.isEmpty() ? nullptr : QTextCodec::codecForName(name.toUtf8());
}

/// UTF-8 gets no byte-order mark, UTF-16 needs one.
QTextCodec::ConversionFlags flagsFor(const QTextCodec *codec)
{
    return codec && codec->mibEnum() == utf8Mib ? QTextCodec::IgnoreHeader
                                                : QTextCodec::DefaultConversion;
}

} // namespace

TextConversion::TextConversion(const QString &from, const QString &fromEncoding, const QString &to,
                               const QString &toEncoding)
    : m_files(from, to, pieceSize)
    , m_toCodec(codecNamed(toEncoding))
    , m_encoder(flagsFor(m_toCodec))
{
    if (const QTextCodec *const codec = codecNamed(fromEncoding))
        m_decoder = std::make_unique<StrictDecoder>(*codec);
}

TextConversion::State TextConversion::readOn()
{
    if (m_state != State::Converting)
        return m_state;
    if (!m_decoder || !m_toCodec)
        return failed(ImportFault::OtherEncoding);
    QByteArray piece;
    const ImportFault unread = m_files.read(piece);
    if (unread != ImportFault::None)
        return failed(unread);
    if (piece.isEmpty()) {
        if (!m_decoder->end())
            return failed(ImportFault::OtherEncoding);
        m_files.close();
        return m_state = State::Done;
    }
    QString text;
    if (!m_decoder->decode(piece, text))
        return failed(ImportFault::OtherEncoding);
    const ImportFault unwritten =
        m_files.write(m_toCodec->fromUnicode(text.constData(), text.size(), &m_encoder));
    return unwritten == ImportFault::None ? m_state : failed(unwritten);
}

TextConversion::State TextConversion::failed(ImportFault fault)
{
    m_files.close();
    m_fault = fault;
    return m_state = State::Failed;
}
