#pragma once

#include "app/PathPage.h"

/// Asks for the folder to export to.
class ExportPage : public PathPage
{
    Q_OBJECT

public:
    explicit ExportPage(QWidget *parent);

    /// Where the user begins to look for a folder: at the one in the path, else at their documents.
    QString startFolder() const;
};
