#pragma once

#include "app/PathPage.h"

/// Asks for the folder to export to.
class ExportPage : public PathPage
{
    Q_OBJECT

public:
    explicit ExportPage(QWidget *parent);

    /// The folder where the selection starts: the one in the path, else the user's documents.
    QString startFolder() const;
};
