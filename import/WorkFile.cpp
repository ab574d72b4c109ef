#include "import/WorkFile.h"

bool WorkFile::create()
{
    remove();
    // Without a buffer, so that each write reports whether there was room for it.
    return open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}
