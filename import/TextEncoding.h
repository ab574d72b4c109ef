#pragma once

#include <QByteArray>
#include <QString>
#include <QTextCodec>

/// Finds out, block by block, what kind of text a file holds.
class EncodingProbe
{
public:
    enum class Kind {
        Utf8,
        DamagedUtf8, ///< marked as UTF-8, but some bytes are not
        Utf16,       ///< marked as UTF-16
        Other,       ///< an encoding that the bytes do not show
        NotText,     ///< a zero byte in the first line, or two in a row
    };

    /// Takes the next block; the first one has to hold the whole byte-order mark.
    void look(const QByteArray &block);
    /// The kind that the blocks so far show. NotText is final.
    Kind kind() const { return m_kind; }
    /// The kind of the whole file. To be called at its end.
    Kind end() const;

private:
    void lookForMark(const QByteArray &block);
    void lookForZeroBytes(const QByteArray &block);

    enum class Place { Start, FirstLine, LaterLine };

    Kind m_kind = Kind::Utf8;
    Place m_place = Place::Start; ///< where the next block begins
    QTextCodec::ConverterState m_utf8;
    bool m_isMarked = false;
    bool m_endedInZero = false;
};

/// Decodes a text piece by piece and refuses bytes that are not in its encoding. A piece may end
/// within a character.
class StrictDecoder
{
public:
    explicit StrictDecoder(const QTextCodec &codec);

    /// Puts the text of the next piece in `text`. False when the bytes are not in the encoding.
    bool decode(const QByteArray &piece, QString &text);
    /// False when the text ends within a character.
    bool end();

private:
    const QTextCodec &m_codec;
    QTextCodec::ConverterState m_state;
    QString m_half; ///< the high surrogate of a character that the next piece completes
};
