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

    /// Whether a device of the list has this MAC. Letter case makes no difference, nor how the list
    /// parts the digits.
    virtual bool macExists(const QString &mac) const = 0;

    /// A SUBSCRIBE has been answered, or not.
    virtual void subscribeEnded(const RequestEnd &request) = 0;
};
