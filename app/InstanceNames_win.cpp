#include "app/InstanceNames.h"

namespace InstanceNames {

// A segment already belongs to the user's session.
QString segment(const QString &key)
{
    return key;
}

QString server(const QString &key)
{
    return key;
}

} // namespace InstanceNames
