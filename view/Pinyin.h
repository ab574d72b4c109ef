#pragma once

#include <QByteArray>

/// `text`, in UTF-8, with each Chinese character replaced by its syllable, such as "Zhang"; a null
/// array for an empty text. Drops any other three-byte character and one that is cut off at the
/// end; keeps shorter and longer characters.
/// Part of the interface; nothing here calls it.
QByteArray pinyinOf(const QByteArray &text);

/// The capital letters of `pinyin`, one initial for each character; a null array for an empty text.
/// Part of the interface; nothing here calls it.
QByteArray pinyinInitials(const QByteArray &pinyin);
