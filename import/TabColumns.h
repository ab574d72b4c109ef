#pragma once

#include <QByteArray>

/// Puts commas between the columns of a text that has tabs there, and quotes around the fields that
/// have a comma in them. A text whose first line has more commas than tabs stays as it is.
class TabColumns
{
public:
    /// The whole lines of the text so far; the rest is held back.
    QByteArray inCommas(const QByteArray &piece);
    /// What was held back, at the end of the text.
    QByteArray rest();

private:
    enum class Columns { Unknown, Tabs, Commas };

    QByteArray line(const QByteArray &bytes);

    Columns m_columns = Columns::Unknown;
    QByteArray m_openLine;
};
