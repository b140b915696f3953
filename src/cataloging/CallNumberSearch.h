#pragma once

#include "marc/Record.h"

#include <QList>
#include <QStringList>

namespace sysadmin {

class RequestChannel;

/// The shared pick-list of the hierarchies.
inline const QString HierarchyList = "CallNumberHierarchies";

/// A place in a bibliographic record that may hold a call number. Of the indicators "_" is a blank and "*"
/// any.
struct CallNumberPlace {
    QString field = {};
    QString indicator1 = "*";
    QString indicator2 = "*";
    QString subfields = {}; ///< in the order in which they make the call number; empty for a control field
    QString type = {};      ///< of the call number: the first indicator of the holdings field 852

    /// "050 _4 $a $b".
    QString Name() const;
};

/// The places in which one looks for a call number, the best one first.
struct CallNumberHierarchy {
    QString id = {};
    QString name = {};
    bool isDefault = false;
    QList<CallNumberPlace> places = {};
};

/// What became of one place.
struct LookedPlace {
    enum class Outcome { Taken, Behind, Lacking };

    Outcome outcome = Outcome::Lacking;
    QString why = {};       ///< a sentence
    QString classPart = {}; ///< what it would give, if anything
    QString itemPart = {};

    QString CallNumber() const { return itemPart.isEmpty() ? classPart : classPart + ' ' + itemPart; }
};

/// What a hierarchy comes to in a record.
struct CallNumberSearch {
    QList<LookedPlace> places = {}; ///< as those of the hierarchy
    int taken = -1;                 ///< the place that wins; -1: none
    QString doubt = {}; ///< a sentence where what was found does not look like a call number of its type

    QString CallNumber() const { return taken < 0 ? QString() : places[taken].CallNumber(); }
};

/// Looks in all places of the hierarchy.
CallNumberSearch SearchCallNumber(const marc::Record& record, const CallNumberHierarchy& hierarchy);
/// The field with which a new holdings record begins: "852 0_ $h QL696 $i .M37"; empty when none was found.
QString HoldingsField(const CallNumberSearch& search, const CallNumberHierarchy& hierarchy);
/// What the type of a call number is called; the code itself where there is no such type.
QString CallNumberTypeName(const QString& code);

/// All hierarchies with their places, for whoever edits none of them. Nothing, and the status that was not 0,
/// when a request failed.
QList<CallNumberHierarchy> ReadHierarchies(RequestChannel& channel, qint16& status);

} // namespace sysadmin
