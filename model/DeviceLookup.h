#pragma once

#include <QString>

struct RequestEnd;

/// What the plug-and-play responder may ask of the data manager. GUI thread.
class DeviceLookup
{
public:
    DeviceLookup() = default;
    virtual ~DeviceLookup() = default;
    DeviceLookup(const DeviceLookup &) = delete;
    DeviceLookup &operator=(const DeviceLookup &) = delete;

    /// Whether a device in the list has this MAC, given without separators. Letter case and the
    /// list's separators make no difference.
    virtual bool macExists(const QString &mac) const = 0;

    /// Reports the end of a SUBSCRIBE, answered or not.
    virtual void subscribeEnded(const RequestEnd &request) = 0;
};
