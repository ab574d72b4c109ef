#include "import/TextConversion.h"

namespace {

constexpr qint64 pieceSize = 32768;
constexpr int utf8Mib = 106;

const QTextCodec *codecNamed(const QString &name)
{
    return name.isEmpty() ? nullptr : QTextCodec::codecForName(name.toUtf8());
}

/// UTF-8 gets no mark, UTF-16 needs one.
QTextCodec::ConversionFlags flagsFor(const QTextCodec *codec)
{
    return codec && codec->mibEnum() == utf8Mib ? QTextCodec::IgnoreHeader
                                                : QTextCodec::DefaultConversion;
}

} // namespace

TextConversion::TextConversion(const QString &from, const QString &fromEncoding, const QString &to,
                               const QString &toEncoding)
    : m_from(from)
    , m_to(to)
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
    if (!m_from.isOpen() && !m_from.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return failed(ImportFault::Unreadable);
    if (!m_to.isOpen() && !m_to.create())
        return failed(ImportFault::NoWorkFiles);

    const QByteArray piece = m_from.read(pieceSize);
    if (m_from.error() != QFile::NoError)
        return failed(ImportFault::Unreadable);
    if (piece.isEmpty()) {
        if (!m_decoder->end())
            return failed(ImportFault::OtherEncoding);
        m_from.close();
        m_to.close();
        return m_state = State::Done;
    }
    QString text;
    if (!m_decoder->decode(piece, text))
        return failed(ImportFault::OtherEncoding);
    if (!m_to.writeWhole(m_toCodec->fromUnicode(text.constData(), text.size(), &m_encoder)))
        return failed(ImportFault::NoWorkFiles);
    return m_state;
}

TextConversion::State TextConversion::failed(ImportFault fault)
{
    m_fault = fault;
    return m_state = State::Failed;
}
