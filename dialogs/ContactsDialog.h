#pragma once

#include "dialogs/FormDialog.h"
#include "model/ContactInfo.h"

#include <QList>
#include <QTimer>

#include <functional>

class BatchPreview;
class IpLine;
class QLineEdit;
struct BatchTexts;
struct DeviceBatch;

/// Creates many devices in one step: from a count, a first address and user ID with their steps,
/// and the texts that all devices share. Created once and reused: call reset() before each showing.
/// The dialog stores nothing itself; a signal hands over the new devices.
class ContactsDialog : public FormDialog
{
    Q_OBJECT

public:
    explicit ContactsDialog(QWidget *parent = nullptr);

    /// Sets every input to its default.
    void reset();
    /// Sets the function that tells whether a device of the list has this MAC.
    void setLookup(std::function<bool(const QString &mac)> isListed);

signals:
    /// The new devices in the order of the batch; empty unless the count is a positive number.
    void addSaveSucceed(const QList<ContactInfo> &devices);

public slots:
    /// Hands the devices over and closes. If the first MAC address is incomplete or there are more
    /// than maxBatchDevices devices, says so and stays.
    void doSaveAction() override;
    /// Copies `text` into the first account and the first authentication ID.
    void slotUserIdChanged(const QString &text);
    /// Updates the preview of what "Save" would create, once the pending events are handled.
    void lookAhead();

private:
    void createRows();
    void createPreview();
    void updatePreview();
    BatchTexts texts() const;
    bool checkCount(const DeviceBatch &batch);
    DeviceBatch batch() const;

    QLineEdit *m_countEdit = nullptr;
    IpLine *m_macLine = nullptr;
    BatchPreview *m_preview = nullptr;
    QTimer m_previewTimer; ///< one update for an address, which changes six inputs
    std::function<bool(const QString &mac)> m_isListed;
};
