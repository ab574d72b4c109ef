#pragma once

#include <QString>

/// The folder that holds the program's executable, ending in "/". Needs the application object.
QString programFolder();
