#pragma once

#include "cataloging/ImportTrial.h"
#include "core/data/Tr.h"

#include <optional>

namespace sysadmin::importtrial {

// What the files of the trial share.

/// Whether the field stands in the place: tag and indicators.
bool FitsPlace(const marc::Field& field, const TriedPlace& place);
/// The value of the subfield; of a control field its own, without a subfield the first one.
QString ValueIn(const marc::Field& field, const QString& subfield);
/// "949 $t", with indicators "949 1_ $t".
QString NameOf(const TriedPlace& place);
/// The place that these settings say.
TriedPlace PlaceOf(const QHash<QString, QString>& settings, const wire::bulkimport::Place& names);
/// Whether two codes are the same, letter case apart.
bool IsSame(const QString& one, const QString& other);
/// An amount in a text such as "$12.50", "12,50 EUR" or "1,234.00", with a decimal point and two digits
/// behind it; none when there is none.
std::optional<QString> AmountIn(const QString& text);

/// Works through one record after the other, and keeps in mind what came before.
class Trial {
public:
    Trial(const ImportTrialRule& rule, const TriedLibrary& library)
        : m_rule(rule)
        , m_library(library) {}

    TriedRecord Try(const marc::Record& record);

private:
    bool Match(const marc::Record& record);
    void MakeSingle(const marc::Record& record);
    void MakeMultiple(const marc::Record& record);
    TriedItem ItemOf(const marc::Record& record, const marc::Field* field, const QString& itemType,
                     int inRecord, int inHoldings);
    QString CopyNumber(const marc::Record& record, const marc::Field* field, int inRecord, int inHoldings);
    const TriedMapping* MappingOf(const QString& item, const QString& location);
    TriedHoldings* HoldingsAt(const TriedMapping& mapping, const marc::Record& record, bool collapse);
    void TakeCallNumber(const TriedMapping& mapping, const marc::Record& record, TriedHoldings& holdings);
    void AddLine(const marc::Record& record, const marc::Field* field, const QString& location);
    QString Found(const marc::Record& record, const TriedPlace& place,
                  const marc::Field* field = nullptr) const;
    QString FirstOf(const marc::Record& record, const QList<TriedPlace>& places) const;
    QString Near(const marc::Record& record, const TriedPlace& place) const;
    void Default(const QString& what, const QString& value, const QString& why) {
        m_tried.defaults.append(Tr("%1: %2 (%3)").arg(what, value, why));
    }
    void Problem(const QString& text) {
        if (!m_tried.problems.contains(text))
            m_tried.problems.append(text);
    }

    const ImportTrialRule& m_rule;
    const TriedLibrary& m_library;
    TriedRecord m_tried;
    QHash<QString, int> m_barcodes; ///< with the numbers of the records
    QHash<QString, QString> m_checkedFunds;
};

} // namespace sysadmin::importtrial
