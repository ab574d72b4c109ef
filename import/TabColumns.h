#pragma once

#include <QByteArray>

/// Replaces the tabs between the columns of a text by commas, and quotes the fields that have a
/// comma in them. Only changes a text whose first line has more tabs than commas.
class TabColumns
{
public:
    /// Converts the lines that this piece completes; the rest is held back.
    QByteArray inCommas(const QByteArray &piece);
    /// Converts what was held back. To be called at the end of the text.
    QByteArray rest();

private:
    enum class Columns { Unknown, Tabs, Commas };

    QByteArray line(const QByteArray &bytes);

    Columns m_columns = Columns::Unknown;
    QByteArray m_openLine;
};
