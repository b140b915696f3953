#pragma once

#include <QList>
#include <QString>

namespace sysadmin {

/// A phone number of an address.
struct clsPhone {
    /// What becomes of it when the address is saved, as it travels.
    enum class Action { New = 1, Changed = 2, Removed = 3 };

    QString sPhoneID;   ///< empty while the server does not know it
    QString sAddressID; ///< of the address it belongs to
    QString sType;      ///< id of its phone type
    QString sNumber;
    Action action = Action::Changed; ///< a phone that was loaded is kept as it stands here
};

/// The phone numbers of one address while it is edited, removed ones included until the address is saved.
class clsAddressInfo {
public:
    /// How many phones there are.
    int CountPhoneData() const { return int(m_phones.size()); }
    /// A phone by its index.
    const clsPhone& GetPhoneClass(int index) const { return m_phones.at(index); }
    /// Replaces the phone at the index, or adds it when there is none (-1); marks its action. Answers its
    /// index.
    int UpdataPhoneData(int index, const QString& type, const QString& number);
    /// Marks the phone removed. One that the server does not know is forgotten.
    void RemovePhoneData(int index);

    /// Adds a phone as the server has it.
    void Load(const clsPhone& phone) { m_phones.append(phone); }

private:
    QList<clsPhone> m_phones;
};

} // namespace sysadmin
