#pragma once

#include <QString>

/// One page of the user guide. `picture` is the path of its screenshot, empty if it has none.
struct GuidePage
{
    QString title;
    QString text;
    QString picture;
};
