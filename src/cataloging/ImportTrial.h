#pragma once

#include "cataloging/CallNumberSearch.h"
#include "wire/BulkImport.h"

#include <QHash>

#include <functional>

namespace sysadmin {

/// A place in a record as a rule says it. A blank indicator is empty or "_".
struct TriedPlace {
    QString field = {};
    QString subfield = {}; ///< empty: the first one
    QString indicator1 = {};
    QString indicator2 = {};

    bool IsSet() const { return !field.isEmpty(); }
};

/// Which item type and location codes in records stand for, by their names.
struct TriedMapping {
    QString marcItem;
    QString itemType;
    QString marcLocation;
    QString location;
    QString hierarchy;         ///< that gives the call number; empty: there is none
    QString hierarchyWhy = {}; ///< where the mapping itself names none: why it is this one
};

/// What a rule says, with the names of what it chose.
struct ImportTrialRule {
    int mode = 0;
    QString bibHandling = {}; ///< empty: there is no profile
    QString authorityHandling = {};
    bool discardsBibs = false; ///< that the library has not
    bool discardsAuthorities = false;
    bool usesExistingBibs = false;
    bool copies852 = false;
    bool copies856 = false;
    bool onePoPerBib = false;
    bool approves = false;
    bool suppresses = false;
    bool keepsSuppression = false;
    QString owningLibrary = {};
    QStringList statuses = {}; ///< that new items get
    TriedPlace magneticMedia = {};
    QString magneticValue = {};
    TriedPlace sensitize = {};
    QString sensitizeValue = {};
    QList<TriedPlace> itemTypes = {};
    QList<TriedPlace> barcodes = {};
    QList<TriedMapping> mappings = {};
    QHash<QString, QString> location = {}; ///< settings by name
    QHash<QString, QString> multiple = {};
    QHash<QString, QString> copyNumbers = {};
    QHash<QString, QString> orders = {};
    /// What the choices of the order settings are called, by the names of the settings.
    QHash<QString, QString> chosen = {};

    const wire::bulkimport::LoadMode& Mode() const { return wire::bulkimport::LoadModes()[mode]; }
};

/// A record of the library's that one of the file repeats, by what it is called; one of the two at the most.
struct TriedMatch {
    QString same = {};
    QString possible = {}; ///< near enough for a warning only
};

/// What the library has, as far as an import asks.
struct TriedLibrary {
    std::function<TriedMatch(const marc::Record&)> findSame{};
    QStringList funds = {};
    QStringList lineItemTypes = {};
    QStringList ledgers = {};
    QStringList fiscalPeriods = {};
    QList<CallNumberHierarchy> hierarchies = {};
    /// Why fund, ledger and fiscal period (names, may be empty) do not go together; empty: they do.
    std::function<QString(const QString& fund, const QString& ledger, const QString& period)> checkFund{};
};

/// What an item would be.
struct TriedItem {
    QString itemType = {};
    QString barcode = {};
    QString copyNumber = {};
    QStringList details = {}; ///< enumeration, notes and the like
    QStringList statuses = {};
    bool isMagnetic = false;
    bool isSensitized = true;
};

/// What a holdings record would be.
struct TriedHoldings {
    QString location = {};
    QString callNumber = {};     ///< empty: none
    QString callNumberFrom = {}; ///< the place in the record, and the hierarchy that names it
    QStringList copied = {};     ///< tags of fields that it gets from the record
    QStringList details = {};    ///< subfields of its location field
    QList<TriedItem> items = {};
};

/// What a line of a purchase order would be.
struct TriedLine {
    QString location = {};
    QString itemType = {}; ///< of the line
    QString fund = {};
    QString ledger = {};
    QString period = {};
    QString price = {};
    QString copies = {};
    QString poNumber = {};
    QStringList details = {};
};

/// What would become of a record.
struct TriedRecord {
    enum class Outcome {
        Added,
        Replaced,
        Merged,
        MergedBothWays,
        Left, ///< the library's record stays as it is
        NotLoaded
    };

    int number = 0;
    QString title = {};
    bool isAuthority = false;
    Outcome outcome = Outcome::Added;
    QString same = {};    ///< the library's record that it repeats
    bool updates = false; ///< holdings and items are changed, not made
    QList<TriedHoldings> holdings = {};
    QList<TriedLine> lines = {};
    QStringList defaults = {}; ///< sentences: what stands in for values that the record lacks
    QStringList problems = {}; ///< sentences: what is wrong

    qsizetype ItemCount() const;
};

/// What a list calls a record: its title without the marks at its end.
QString TrialTitle(const marc::Record& record);
/// What an import of the records by the rule would come to; nothing is written. Records that repeat earlier
/// ones of the file, and barcodes that come twice, are found as well.
QList<TriedRecord> TryImport(const QList<marc::Record>& records, const ImportTrialRule& rule,
                             const TriedLibrary& library);

/// What would become of a record, a line each, in the words of the operator: the kind and the text.
QList<std::pair<QString, QString>> TrialInWords(const TriedRecord& record, const ImportTrialRule& rule);
/// The outcome alone, as a list shows it.
QString OutcomeInWords(const TriedRecord& record);

} // namespace sysadmin
