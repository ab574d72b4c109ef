#include "app/InstanceNames.h"

namespace InstanceNames {

// A segment belongs to the user's session already.
QString segment(const QString &key)
{
    return key;
}

QString server(const QString &key)
{
    return key;
}

} // namespace InstanceNames
