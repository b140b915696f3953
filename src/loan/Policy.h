#pragma once

#include "loan/Amount.h"

#include <QDate>
#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>

#include <array>
#include <optional>

// What a library has laid down about loans, as plain values: what the policy groups, the matrix and the
// calendars hold. `ReadPolicy.h` fills it from the fields of requests.

namespace sysadmin::loan {

/// The unit of a period.
enum class Unit { Minute, Hour, Day, Term, Indefinite };

/// The hours of a day. A time earlier than the open time is on the next day, and so is a close time that is
/// the same: such a day is open around the clock. Times that there are not are invalid.
struct DayHours {
    bool isOpen = false;
    QTime opens = {};
    QTime closes = {};
    QTime due = {};      ///< overnight loans are due
    QTime inEffect = {}; ///< from here on loans are overnight loans
};

struct Calendar {
    qint64 id = 0;
    QString name = {};
    QDate begin = {};
    QDate end = {}; ///< the last day; invalid: none
    QDate fixedDue = {};
    std::array<DayHours, 7> week = {}; ///< Sunday first
    QMap<QDate, DayHours> exceptions = {};
    QMap<QDate, int> terms = {}; ///< end of a term and its lead days

    bool Covers(QDate date) const { return begin <= date && (!end.isValid() || date <= end); }
};

/// An entry of the matrix. Periods without a unit of their own are days.
struct Rule {
    qint64 id = 0;
    qint64 patronGroup = 0;
    qint64 itemType = 0;
    bool mayCharge = false;
    bool allowsHolds = false;
    bool allowsRecalls = false;
    bool allowsCallSlips = false;
    double period = 0;
    Unit unit = Unit::Day;
    int grace = 0; ///< in the loan's unit
    Amount fineRate = 0;
    Unit fineUnit = Unit::Day;
    std::optional<Amount> mostFine = {}; ///< none: no maximum
    int mostRenewals = 0;
    int renewalPeriod = 0;
    Unit renewalUnit = Unit::Day;
    bool renewsFromRenewal = false; ///< else from the date on which it was due
    int recallReturn = 0;
    int leastLoanWhenRecalled = 0; ///< in the loan's unit
    int recallGrace = 0;           ///< in the loan's unit
    Amount recallFineRate = 0;
    Unit recallFineUnit = Unit::Day;
    std::optional<Amount> mostRecallFine = {};
    bool dueAtNextFixedTime = false; ///< short loans only
    bool booksOverdue = false;       ///< the same: an overdue item can be booked
    int warning = 0;                 ///< before a short loan is due
    Unit warningUnit = Unit::Day;
    int courtesy = 0;
    int leastLoanForCourtesy = 0;
    int firstOverdue = 0;
    int lost = 0;
    int overdueCount = 0;
    int overdueInterval = 0;
    int recallNoticeCount = 0;
    int recallNoticeInterval = 0;
    int holdShelf = 0; ///< how long it waits for whoever wanted it
    Unit holdShelfUnit = Unit::Day;
};

/// What a policy group lays down for a patron group.
struct PatronRule {
    bool finesApply = false;
    bool overdueNoticesApply = false;
    bool courtesyNoticesApply = false;
};

/// What becomes of a patron group's demerits, in whatever policy group.
struct DemeritRule {
    bool isKnown = true; ///< else nobody may tell this operator
    bool apply = true;
    int most = 0; ///< so many suspend the patron; 0: they never do
    int suspensionDays = 0;
};

/// What a policy group lays down for an item type.
struct ItemSettings {
    Amount replacementCost = 0;
    bool isShortLoan = false;
};

struct Location {
    qint64 id = 0;
    QString name = {};
    bool isDesk = false;
    bool isPickup = false;
};

struct Group {
    qint64 id = 0;
    QString name = {};
    bool countsClosedForLoan = false;
    bool fixedTimeForOvernight = false;
    bool countsClosedForFine = false;
    bool includesLostFee = false;
    Amount lostFee = 0;
    bool includesMostFineForLost = false;
    bool extendsRecallDue = false;
    bool renewsIfRecalled = false;
    bool renewsIfHeld = false;
    bool renewsIfOverdue = false;
    bool returnRemovesFines = false;
    bool returnRemovesReplacement = false;
    bool returnRemovesFee = false;
    int earlyPickup = 0; ///< minutes before a booked short loan begins
    int unclaimed = 0;   ///< minutes after which a booking that nobody claims ends
    QList<Location> locations = {};
    QList<Calendar> calendars = {};
    QHash<qint64, PatronRule> patrons = {};
    QHash<qint64, ItemSettings> items = {};
    QList<Rule> rules = {};

    bool IsShortLoan(qint64 itemType) const { return items.value(itemType).isShortLoan; }
};

/// All that a loan depends on.
struct Policy {
    QList<Group> groups = {};
    QHash<qint64, QString> patronGroups = {}; ///< names
    QHash<qint64, QString> itemTypes = {};
    QHash<qint64, DemeritRule> demerits = {}; ///< by patron group
    int bookingBuffer = 0;                    ///< minutes between two bookings of a short loan
    bool usesDemerits = false;                ///< what is called a fine here counts demerits
    int decimals = 2;                         ///< of amounts of money
};

} // namespace sysadmin::loan
