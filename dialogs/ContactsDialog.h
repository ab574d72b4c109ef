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

/// Creates many devices in one step: a count, a first address and user ID with their steps, and
/// what all of them share. Made once and reused: reset() before each showing. The dialog stores
/// nothing itself; the new devices are handed over by signal.
class ContactsDialog : public FormDialog
{
    Q_OBJECT

public:
    explicit ContactsDialog(QWidget *parent = nullptr);

    /// Sets every input to its default.
    void reset();
    /// Sets who knows whether a device of the list has this MAC.
    void setLookup(std::function<bool(const QString &mac)> isListed);

signals:
    /// The new devices, in rising order; empty when the count is no positive number.
    void addSaveSucceed(const QList<ContactInfo> &devices);

public slots:
    /// Hands the devices over and closes, unless the first MAC address is incomplete or the
    /// devices are more than maxBatchDevices; then says so and stays.
    void doSaveAction() override;
    /// Shows `text` as first account and authentication ID.
    void slotUserIdChanged(const QString &text);
    /// Says what "Save" would make now, once the events that wait have been handled.
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
    QTimer m_previewTimer; ///< one address that is set changes six inputs
    std::function<bool(const QString &mac)> m_isListed;
};
