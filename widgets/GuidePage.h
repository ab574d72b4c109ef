#pragma once

#include <QString>

/// One page of the user guide. `picture` is the path of its screenshot; empty for a page without.
struct GuidePage
{
    QString title;
    QString text;
    QString picture;
};
