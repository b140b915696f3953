#pragma once

#include "loan/OpenHours.h"

namespace sysadmin::loan {

/// What happens to an item, as far as it is known.
struct Request {
    qint64 location = 0; ///< the desk, or where the item belongs
    qint64 patronGroup = 0;
    qint64 itemType = 0;
    QDateTime charged = {};
    QList<QDateTime> renewals = {};
    std::optional<QDateTime> recalled = {};
    std::optional<QDateTime> returned = {}; ///< none: it is still out
    bool hasHold = false;                   ///< somebody waits for it
    bool renewsAlways = false;              ///< renewed whenever it is due, as often as that is allowed
};

/// One date's part of a fine.
struct FineDay {
    QDate date;
    Amount amount = 0;
    Amount total = 0; ///< with all days before it
};

/// What comes of a renewal or a recall.
struct Event {
    enum class Kind { Renewal, Recall };
    Kind kind = Kind::Renewal;
    QDateTime at;
    bool isAllowed = false;
    QDateTime due; ///< from then on; invalid: none
};

struct Notice {
    enum class Kind { Warning, Courtesy, Overdue, OtherOverdue, Recall, OverdueRecall };
    Kind kind = Kind::Courtesy;
    QDateTime at;
};

/// A charge for a lost item.
struct LostCharge {
    enum class Kind { Replacement, Fee, MostFine };
    Kind kind = Kind::Replacement;
    Amount amount = 0;
    bool isRemoved = false; ///< by the return
};

/// A sentence of the explanation, and when what it tells happens.
struct Step {
    QDateTime at;
    QString text;
};

/// What becomes of a loan.
struct Answer {
    /// Why there is no loan, and what would have to be made; empty when there is one.
    QString problem = {};
    const Group* group = nullptr; ///< of the policy that was asked
    const Rule* rule = nullptr;
    QList<Step> steps = {};
    QDateTime firstDue = {}; ///< of the loan itself; invalid: none
    QDateTime due = {};      ///< after renewals and recall
    QList<Event> events = {};
    QList<Notice> notices = {}; ///< in the order of their moments
    QList<FineDay> fines = {};
    Amount fine = 0;
    bool reachesMost = false;           ///< the fine was cut at its maximum
    bool isFineRemoved = false;         ///< by the return of a lost item
    std::optional<QDateTime> lost = {}; ///< when it counts as lost
    QList<LostCharge> lostCharges = {};
    std::optional<QDateTime> suspendedUntil = {}; ///< the patron, by the demerits of this loan alone
    std::optional<QDateTime> onShelfUntil = {};   ///< after its return, for whoever waits for it
    /// Had the short loan been booked for this moment: when it could be fetched, and when it would be free
    /// again if nobody did.
    std::optional<std::pair<QDateTime, QDateTime>> booking = {};
    std::optional<QDateTime> nextBooking = {}; ///< when the next booking may begin at the earliest

    /// What a lost item costs, without the charges that its return removes.
    Amount LostCost() const;
};

/// Reckons a loan by the policy.
Answer Reckon(const Policy& policy, const Request& request);

/// A kind of notice as people call it.
QString NoticeText(Notice::Kind kind);
QString LostChargeText(LostCharge::Kind kind);

} // namespace sysadmin::loan
