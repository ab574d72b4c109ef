#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

/// One device: everything that its phone receives, keyed by the phone's MAC address.
///
/// A plain value. It keeps every text as entered and validates nothing: the dialogs and the import
/// do that.
struct ContactInfo
{
    /// Record number, the primary key of the stored row. Every save stores the device's running
    /// number, and records handed to the store and to the edit dialog hold it.
    qint32 id = 0;

    QString mac;
    QString product;
    QString sip_server;
    QString sip_user_id;
    QString first_account;
    QString ip;
    QString username;
    QString password;
    QString city;
    QString company;
    QString department;
    QString auth_id;
    QString proxy_server;
    QString speech_coding1;
    QString speech_coding2;
    QString dial_plan;
    QString language;
    QString random_port;
    QString keep_alive;
    QString subnet;
    QString gateway_ip;
    QString dns_server1;
    QString dns_server2;
    QString phonebook_path;
};

/// True when both records hold the same texts, whatever their ids.
bool hasSameTexts(const ContactInfo &left, const ContactInfo &right);
/// True when both records hold the same texts and the same id.
bool operator==(const ContactInfo &left, const ContactInfo &right);
inline bool operator!=(const ContactInfo &left, const ContactInfo &right)
{
    return !(left == right);
}

Q_DECLARE_TYPEINFO(ContactInfo, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(ContactInfo)
Q_DECLARE_METATYPE(ContactInfo *)

/// Registers "ContactInfo", "ContactInfo*" and "QList<ContactInfo>" with the meta-type system, so
/// that records can travel in queued signals. May be called any number of times, on any thread.
void registerContactTypes();
