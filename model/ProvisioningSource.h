#pragma once

#include <QString>

struct RequestEnd;

/// What a connection thread may ask of the data manager. The calls may be made on any thread
/// and never wait for the user or for another connection.
class ProvisioningSource
{
public:
    ProvisioningSource() = default;
    virtual ~ProvisioningSource() = default;
    ProvisioningSource(const ProvisioningSource &) = delete;
    ProvisioningSource &operator=(const ProvisioningSource &) = delete;

    /// Makes sure that the store holds the current list. Off the owner's thread it writes nothing:
    /// a list that is not stored yet is saved later on the owner's thread.
    virtual void saveList() = 0;

    /// Writes the export of this type (see ExportType) of the current list to folder + "/" +
    /// fileName. False when there is nothing to write or the file cannot be written.
    virtual bool exportDevices(int type, const QString &codecName, const QString &fileName,
                               const QString &folder) = 0;

    /// How many devices the current list has.
    virtual int deviceCount() const = 0;

    /// Grows with every change of the list. An export need not be made again under the same
    /// version. 0 promises nothing.
    virtual quint64 listVersion() const = 0;

    /// Whether the current list has a device with this MAC, given as the phone wrote it.
    virtual bool hasDevice(const QString &mac) const = 0;

    /// Reports a request that has ended.
    virtual void requestEnded(const RequestEnd &request) = 0;
};
