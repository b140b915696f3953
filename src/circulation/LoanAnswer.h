#pragma once

#include "loan/Loan.h"

namespace sysadmin {

/// Something that happens to a loan at a moment.
struct LoanMark {
    enum class Kind { Lent, Renewed, NotRenewed, Recalled, Due, Notice, Most, Lost, Back, FreeAgain };
    Kind kind = Kind::Lent;
    QDateTime at;
    QString text; ///< a few words
    bool operator==(const LoanMark&) const = default;
};

/// A time through which something goes on.
struct LoanSpan {
    enum class Kind { Lent, Overdue, Shelf, Suspended };
    Kind kind = Kind::Lent;
    QDateTime from;
    QDateTime to;
};

/// A part of the answer as a table.
struct LoanSection {
    QString title;
    QStringList headings; ///< none: the rows speak for themselves
    QList<QStringList> rows;
};

/// What became of a loan, ready to be shown: in words and on a line of time.
struct LoanAnswer {
    QString headline; ///< due date, or why there is none
    QList<LoanSection> sections;
    QList<LoanMark> marks; ///< in the order of their moments
    QList<LoanSpan> spans;
    QList<loan::FineDay> fines;
    loan::Amount mostFine = 0;
    QList<QDate> closedDays; ///< while it is out, as far as the spans go

    QString Html() const;
    QString PlainText() const;
};

/// Puts the answer into words.
LoanAnswer Describe(const loan::Policy& policy, const loan::Request& request, const loan::Answer& answer);
/// A mark or a span as the legend calls it.
QString LoanWord(LoanMark::Kind kind);
QString LoanWord(LoanSpan::Kind kind);
/// A moment as people read it.
QString ShownMoment(const QDateTime& at);

} // namespace sysadmin
