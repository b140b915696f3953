#pragma once

#include "core/data/SecurityProfile.h"
#include "framework/forms/Layout.h"
#include "framework/forms/PutList.h"

#include <QHash>

class QJsonObject;

namespace sysadmin {

class RowsField;

/// A message that a screen has of its own for a status.
struct OwnWords {
    QString text;
    QString title;
};

/// A further request of a save, sent under the record's key once the record itself is stored.
struct SaveStep {
    QString request;
    QString caption;        ///< of a failure's report
    QString keyTag;         ///< under which the record's key is put first; empty: `puts` say it
    QList<Field*> fields{}; ///< what it stores: it is sent when one of them changed
    QList<PutStep> puts{};  ///< empty: the fields
};

/// Several selected records edited at once, in a form of their own: a box in front of each field says whether
/// it is written.
struct SeveralSpec {
    Form* form = nullptr; ///< null: the table does not offer it
    Layout layout = Below({});
    QString frame{};  ///< name of the edit area; empty: it has none of its own
    QString button{}; ///< name and caption of the button on the list side
    QString buttonCaption{};
    QString caption{}; ///< of the frame
    QString request{};
    QString saveCaption{};
    QString keyTag = "ID";    ///< put once per selected record
    QString failedTag = "Nm"; ///< begins the record of each one in the reply that failed
    QString problemTag = "Err";
    /// A field of the form that lists the records, those to be changed with Y in the first column; then no
    /// box stands in front of the fields, and `puts` are put. Null: the records selected in the list.
    RowsField* records = nullptr;
    QList<PutStep> puts{};
};

/// The order that the operator gives the records of a table: a button opens `frmSortOrder` over the list and
/// sends the whole order in one request.
struct OrderSpec {
    QString request{};         ///< empty: the records have no such order
    QString rankTag{};         ///< of a record's new place, from 1
    QString previousRankTag{}; ///< of its place before; empty: not sent
    QString idTag{};           ///< of its key; empty: not sent
    int helpContext = 0;       ///< of the dialog's topic
    QString caption{};         ///< what is sorted, in the dialog's title
    /// Columns of the list that follow from the order: the dialog does not show them, and the list is asked
    /// for again when there is another one.
    QStringList derivedTags{};
    QString button = "cmdSetRules";
    QString buttonCaption{}; ///< empty: "Set &Rules"
};

/// What is said once about a table that a maintenance screen maintains; the screen's behaviour comes from it.
/// What is left out follows from `word`, `plural` and the form's fields (see `Complete`).
struct TableSpec {
    QString subject{};   ///< noun of the questions and reports ("Vendor Type")
    QString frameNoun{}; ///< noun of the edit frame's caption; empty: the subject
    QString frameIdle{}; ///< the edit frame's caption while nothing is edited; empty: as in an edit
    QString word{};      ///< subject word: "VenTp" makes "LstVenTp", "AddVenTp" and so on
    QString plural{};    ///< "Acquisitions Vendor Types" makes the captions "Load ...", "Save ..." and so on
    QString notice{};    ///< subject word announced to other screens; empty: `word`
    QString gridName = "vsf";
    /// Under which list, get and save requests carry the current cluster, a save as its first field unless
    /// `putOrder` gives it another place; empty: records are of no cluster.
    QString clusterTag{};
    bool clusterOnDelete = false; ///< delete requests carry it, too
    bool listAfterChange = false; ///< the list is asked for again after every change
    QString tabCaption{};         ///< only where a screen has several tables

    QList<GridColumn> columns{};   ///< empty: those of the fields, in their order
    QString recordTag = "ID";      ///< begins a record of the list reply and holds its key
    bool continuing = false;       ///< status 55 is success and its records are read
    bool sorted = true;            ///< until the operator chooses otherwise; else as the server sends
    int sortColumn = 0;            ///< the column of that order
    bool boxOnLoadFailure = false; ///< "Unable to load ..." instead of a report
    bool wholeRows = false;        ///< the row holds the whole record: no get request
    bool asksAvailable = false;    ///< "Avl..." is asked before a new record is entered
    bool copies = false;           ///< a button starts a new record as a copy of the selected one

    QString listRequest{};
    QString getRequest{}; ///< empty: the row holds the whole record
    QString addRequest{};
    QString updateRequest{};
    QString deleteRequest{}; ///< empty: records cannot be deleted
    QString getKeyTag{};     ///< tag of the key in get and delete requests; empty: the record tag
    QString originalTag{};   ///< tag of the key in update requests; empty: the record tag
    /// Deletes all selected records; the reply names those that it could not (tags of `several`). Empty: one
    /// record at a time.
    QString deleteSeveralRequest{};
    QString availableRequest{}; ///< asked before a new record is entered; empty: none

    QString loadCaption{};
    QString editCaption{};
    QString saveCaption{};
    QString deleteCaption{};
    QString addedTag{}; ///< of a new record's key in the reply to its add request; empty: the record tag
    /// The tag by which the record just added is found in the reply; empty: the reply's first.
    QString matchTag{};
    QHash<qint16, OwnWords> deleteWords{};
    QHash<qint16, OwnWords> saveWords{};
    QStringList pickLists{}; ///< shared pick-lists that hold the records
    QString pickTag{};       ///< the tag whose field is a pick-list entry's text

    /// The flag that one record has, always: its box is locked where it is marked, saving it takes the mark
    /// from the others, and the first record has it. Null: there is none.
    FlagField* defaultFlag = nullptr;

    bool namesRecord = false; ///< the edit frame's caption is "Edit " and the record's name, not the noun
    QString nameTag = "Nm";   ///< of that name
    QList<SaveStep> steps{};  ///< further requests of a save, in order
    SeveralSpec several{};
    OrderSpec order{};
    QList<PutStep> morePuts{}; ///< steps besides those of the fields
    QStringList putOrder{};    ///< tags of the steps in order; what is not named comes behind

    /// Whether selected records can be changed together and records be imported from a file: where a save is
    /// the ordinary one.
    bool takesMany = true;

    /// Whether the cluster has a place of its own among the fields of a save.
    bool PlacesCluster() const { return !clusterTag.isEmpty() && putOrder.contains(clusterTag); }
};

/// What is said once about a screen that keeps one record.
struct RecordSpec {
    QString subject{};   ///< screen name in reports
    QString word{};      ///< subject word: "Msc" makes "GetMsc", "UpdMsc" and, if it may be missing, "AddMsc"
    QString plural{};    ///< makes the captions "Load ..." and "Save ..."
    QString notice{};    ///< subject word announced to other screens; empty: `word`
    QString frameNoun{}; ///< of the frame's caption ("System Miscellaneous"); empty: the frame has none
    QString frameEnd = ":"; ///< what follows the noun
    QString getRequest{};
    QString addRequest{}; ///< sent instead of the update while no record exists; empty: one always does
    QString updateRequest{};
    QString existsTag{}; ///< filled in the reply when a record exists; empty: one always does
    QString loadCaption{};
    QString saveCaption{};
    QString loadFailure{};  ///< own message for a failed load, shown instead of a report
    QString saveFailure{};  ///< own message for a failed save, shown instead of a report
    QStringList putOrder{}; ///< tags of the fields in the order of a save; what is not named comes behind
};

/// A table with the form in which its records are edited.
struct TableDeclaration {
    TableSpec spec;
    Form* form = nullptr;
    Layout layout = Below({}); ///< without children: the fields below each other
    QList<PutStep> puts{};     ///< empty: they follow from the fields
};

/// A single record with the form in which it is edited.
struct RecordDeclaration {
    RecordSpec spec;
    Form* form = nullptr;
    Layout layout = Below({});
    QList<PutStep> puts{};
};

/// Everything that a screen declares: what tests read and compare with what the system demands, and what they
/// alter to see whether anybody notices.
struct ScreenDeclaration {
    QString name;    ///< "frmAcquisitions_VendorTypes"
    QString caption; ///< of the window
    Area area = Area::System;
    QList<TableDeclaration> tables{};   ///< of a maintenance screen
    QList<RecordDeclaration> records{}; ///< of a screen that keeps one record
};

/// Fills in what a declaration leaves out: requests, captions, columns, put steps, layout.
void Complete(TableDeclaration& table);
void Complete(RecordDeclaration& record);
/// Puts the form's fields into a layout that has none, and finds those that it knows by name.
void Resolve(Layout& layout, Form& form);

/// The whole declaration, for the describe output.
QJsonObject ToJson(const ScreenDeclaration& screen);
/// A field's part of it.
QJsonObject ToJson(const Field& field);

} // namespace sysadmin
