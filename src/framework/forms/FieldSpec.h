#pragma once

#include "core/data/PickLists.h"
#include "framework/forms/GridRow.h"
#include "wire/Lengths.h"

namespace sysadmin {

using namespace wire::lengths;

/// Where the entries of a choice come from.
struct ChoiceSource {
    QString request{};      ///< list request that a screen sends when it opens; empty: none
    QString idTag = "ID";   ///< begins each entry of the reply
    QString textTag = "Nm"; ///< what the operator reads
    QString pickList{};     ///< shared pick-list that holds the entries, whoever changes it; empty: none
    QString none{};         ///< text of a first entry that stands for no value; empty: there is no such entry
    QString caption{};      ///< of a failure's report; empty: that of loading the screen's list
    /// What "Unable to load" names instead of a report; a reply that is not the last one is reported all the
    /// same where there is a caption for it. Empty: every failure is reported.
    QString unableToLoad{};
    bool operator==(const ChoiceSource&) const = default;
};

/// What is said once about a field of a form; the view, the list, the requests and the checks come from it.
struct FieldSpec {
    QString name{};        ///< the control's name ("txtCode")
    QString tag{};         ///< its tag in requests and replies; empty: not read or put by itself
    QString caption{};     ///< its label, or the check box's own text
    int maxLength = 0;     ///< characters, by the lengths of both ends where the server has one; 0: no limit
    bool required = false; ///< must not be blank
    bool displayOnly = false; ///< shown, never edited
    QString unit{};           ///< text behind the control ("%", "days")
    QString initial{};        ///< value in a new record, as it travels
    QString toolTip{};
    QString accessible{};  ///< what a screen reader says where there is no caption
    GridColumn column{};   ///< its column in the list, under its own tag; without a caption it has none
    QString changedTag{};  ///< tag under which an update says Y or N whether the field changed; empty: none
    QString enabledBy{};   ///< name of the flag without which it cannot be used; empty: none
    ChoiceSource source{}; ///< of a choice
    int least = 0;         ///< of a number
    int most = 0;          ///< of a number, or of an interval's; 0: as many as its usual width takes
    /// What a letter or a choice offers when nothing brings other entries, and the units of an interval: id
    /// what travels, text what the operator reads.
    QList<PickItem> options{};
    QString unitName{};       ///< control name of an interval's units
    bool letterFirst = false; ///< an interval travels with its unit's letter in front of the number
    QString format{};         ///< in which a date or a time travels, as Qt writes it; empty: the usual one
    QString suffix{};         ///< fixed text that travels behind a date
    QStringList words{};      ///< that may stand where a time would ("Closed")
};

} // namespace sysadmin
