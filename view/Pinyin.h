#pragma once

#include <QByteArray>

/// The UTF-8 text with each Chinese character replaced by its syllable, as in "Zhang"; a null array
/// for an empty text. Any other character of three bytes, or one that the end cuts off, disappears;
/// what is shorter or longer stays.
/// Part of the interface; nothing here calls it.
QByteArray pinyinOf(const QByteArray &text);

/// The capital letters of a pinyin text: an initial a character. A null array for an empty text.
/// Part of the interface; nothing here calls it.
QByteArray pinyinInitials(const QByteArray &pinyin);
