#pragma once

#include "wire/Lengths.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What both ends know of bulk import rules: the load modes, and the named settings of which a rule has a
/// hundred.
namespace sysadmin::wire::bulkimport {

inline constexpr int CodeLength = 20;
inline constexpr int NameLength = lengths::NameLength;
inline constexpr int ValueLength = 40; ///< of texts that are looked for in a record or stand for it
inline constexpr int MostFields = 50;  ///< rows of a list of fields
inline constexpr int MostMappings = 2000;
inline constexpr int MostCopies = 999;
inline constexpr int MostCopyNumber = 99999;

/// Stands for any MARC item or location code in a mapping.
inline const QString AnyCode = "*";
/// How a blank indicator is kept in the settings of copy numbers.
inline const QString BlankIndicator = "_";
inline const QString UsualCurrency = "USD";

/// How items get their copy numbers where the record says none. Empty: they get none.
namespace copynumbers {
inline const QString Same = "S";        ///< the start number, each of them
inline const QString PerRecord = "B";   ///< counted up within the bibliographic record
inline const QString PerHoldings = "H"; ///< counted up within the holdings record
} // namespace copynumbers

/// A way of loading; its place in `LoadModes` is its number.
struct LoadMode {
    enum class Kind { BibsOnly, Single, Multiple };

    Kind kind;
    QStringList flags; ///< the tags that are Y
    bool createsItems = false;
    bool createsOrders = false;
    bool updates = false; ///< holdings and items that were loaded before

    bool CreatesHoldings() const { return kind != Kind::BibsOnly && !updates; }
};

/// All ways of loading. Those that create items but no orders set the flag of items alone, without that of
/// holdings: the loader knows them by it.
const QList<LoadMode>& LoadModes();
/// The tags of the flags that tell the loader the mode.
const QStringList& LoadFlags();
/// The number of the mode that sets exactly these flags; -1: none does.
int ModeOf(const QStringList& flags);

/// The answers to whether fund, ledger and fiscal period go together.
namespace fundcheck {
inline const QString Fine = "ok";
inline const QString FundNotInPeriod = "fund-period";
inline const QString FundNotInLedger = "fund-ledger";
inline const QString LedgerNotInPeriod = "ledger-period";
inline const QString SeveralLedgers = "several-ledgers";
} // namespace fundcheck

/// A setting of a rule: a name and a value.
struct Setting {
    /// The parts of a rule whose settings are edited, and named, together.
    enum class Part { Location, Multiple, CopyNumbers, Orders };
    enum class Kind {
        Field,     ///< of a MARC record: three digits
        Subfield,  ///< a digit or letter
        Indicator, ///< a digit, a letter, "_" or nothing
        Text,
        Flag,
        Count,
        Amount,
        CopyMethod, ///< one of `copynumbers`
        Kept,       ///< a number of the loader's own, which nobody edits
        Currency,
        FundCode,
        VendorCode,
        // The ids of records.
        Vendor,
        VendorAccount,
        Location,
        OrderType,
        LineItemType,
        Ledger,
        FiscalPeriod
    };

    Part part = Part::Location;
    QString name;
    QString tag;
    Kind kind = Kind::Text;
    QString initial{}; ///< in a new rule

    bool operator==(const Setting&) const = default;
};

/// A place in a record: the names of the settings that say where it is.
struct Place {
    QString field;
    QString subfield; ///< empty: a whole field is meant
    QString indicator1;
    QString indicator2;
};

/// A part of an order line: where the record has it, and the setting that stands for it where it does not.
struct OrderElement {
    enum class Kind {
        PieceIdentifier,
        LineItemType,
        Fund,
        Price,
        Copies,
        Notes,
        Instruction,
        TitleNumber,
        PoNumber,
        VendorReference,
        Requester,
        LedgerName,
        FiscalPeriodName
    };

    Kind kind;
    Place place;
    QString fallback{}; ///< name; empty: there is none
};

/// All settings in the order in which they travel.
const QList<Setting>& Settings();
QList<Setting> SettingsOf(Setting::Part part);
const QList<OrderElement>& OrderElements();
/// The parts in the order in which they travel, by the names under which they are stored.
QString PartName(Setting::Part part);

/// The place of the location in a record that has one holdings record.
Place LocationPlace();
/// The field that is repeated for each holdings record or item.
Place MainPlace();
Place CopyNumberPlace();

/// Whether a value suits the setting, as far as it can be told without knowing the library's records. An
/// empty one always does.
bool IsValue(Setting::Kind kind, const QString& value);
bool IsField(const QString& value);
bool IsSubfield(const QString& value);
bool IsIndicator(const QString& value);

} // namespace sysadmin::wire::bulkimport
