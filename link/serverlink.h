// SPDX-License-Identifier: GPL-3.0-or-later
// The link between the windows and the server: GetData builds the read commands, HandleCallback
// routes each reply to the window its reference names.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

class usrSession;

// A window that receives replies: the part of the reference after its prefix (upper-cased) and
// the whole message.
class IDataReceiver
{
public:
    virtual ~IDataReceiver() = default;
    virtual void DataArrived(const QString &SubRef, const QString &Message) = 0;
};

// The command texts of the read catalogue, exactly as the server expects them.
namespace Commands {
QString deviceFieldList(const QStringList &addressBookNames);
// "" for an unknown key (and "LOCALEXT"): the caller still sends it.
QString readCommand(const QString &key, const QVariant &id, const QString &extsSort, const QString &abSort,
                    const QStringList &addressBookNames);
} // namespace Commands

class ServerLink : public QObject
{
    Q_OBJECT
public:
    explicit ServerLink(usrSession &session, QObject *parent = nullptr);

    // Builds the read command for key (and id) and sends it; always exactly one send.
    void GetData(const QString &Key, const QVariant &Id = {});
    // Routes one reply to the open window that asked. The choice dialog's answer to the device
    // window ("{Ref=AddCampaign}{Choice=...}") reaches that window as DataArrived("ADDCAMPAIGN", ...).
    void HandleCallback(const QString &Message);
    // Sends a write command as it stands.
    void SendCommand(const QString &command);

    // Windows register while open; a reply for a window that is not open is dropped.
    // prefix: "MAIN", "AB", "CAMPAIGN", "ROUTING", "EXTS", "SCRIPTS". receiver must be a QObject.
    void setReceiver(const QString &prefix, QObject *receiver);

    QString deviceSort() const { return m_deviceSort; }
    void setDeviceSort(const QString &field) { m_deviceSort = field; }
    QString addressBookSort() const { return m_addressBookSort; }
    void setAddressBookSort(const QString &field) { m_addressBookSort = field; }
    // The names in the main window's address-book list, in list order (for the device read).
    void setAddressBookNames(std::function<QStringList()> names) { m_addressBookNames = std::move(names); }

    usrSession &session() { return m_session; }

private:
    IDataReceiver *receiverFor(const QString &prefix) const;

    usrSession &m_session;
    QString m_deviceSort = QStringLiteral("Type");
    QString m_addressBookSort = QStringLiteral("Name");
    std::function<QStringList()> m_addressBookNames;
    QHash<QString, QPointer<QObject>> m_receivers;
};
