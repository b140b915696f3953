#pragma once

#include <QList>
#include <QString>

namespace sysadmin {

class RequestChannel;

/// A sort option that the server offers for the fields of a MARC record.
struct OrderingRule {
    int id = 0;
    QString name{};
    bool repeatable = false; ///< may be chosen more than once in a group
    bool takesParameter = false;
    QString parameterLabel{};
    QString parameterType{}; ///< a length and "C": a text of at most so many characters

    bool IsSpecificField() const;
    bool IsIndicator1() const;
    bool IsIndicator2() const;
};

/// The catalogue of sort options, read once after sign-on, and the ids of what the server has not numbered
/// yet.
class OrderingRules {
public:
    /// Reads the catalogue. Nothing is told of a failure: the catalogue is empty then.
    void Load(RequestChannel& channel);
    const QList<OrderingRule>& All() const { return m_rules; }
    /// The option of an id, or null.
    const OrderingRule* Find(int id) const;
    /// A number that no other thing has in this run: -2, -3 and so on.
    int NextTemporaryId() { return --m_temporaryId; }

private:
    QList<OrderingRule> m_rules;
    int m_temporaryId = -1;
};

} // namespace sysadmin
