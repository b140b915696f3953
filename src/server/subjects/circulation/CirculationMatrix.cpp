#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"
#include "server/subjects/circulation/CirculationPolicies.h"

// The loan rules of a circulation policy group: one entry for each pair of patron group and item type.

namespace sysadmin::server {

namespace {

constexpr qint16 InTransactions = 92;
const QString Matrix = "circulation_matrix";

bool IsLoanUnit(const QString& value) {
    return value.size() == 1 && QString("DHMIT").contains(value);
}

bool IsPeriod(const QString& value) {
    return IsAmount(value) && value.trimmed().toDouble() <= MostCount;
}

/// What an entry says, in the order in which requests carry it.
const QList<SubjectField>& MatrixRuleFields() {
    using Field = SubjectField;
    const auto unit = [](const QString& tag, const QString& column) {
        return Field::Text(tag, column, 1).Checked(IsLoanUnit).Default("D");
    };
    const auto shortUnit = [](const QString& tag, const QString& column) {
        return Field::Text(tag, column, 1).Checked(IsShortUnit).Default("D");
    };
    static const QList<Field> fields{
        Field::Flag("CR", "may_charge"),
        Field::Flag("Hl", "allows_holds"),
        Field::Flag("Rc", "allows_recalls"),
        Field::Flag("CSl", "allows_call_slips"),
        Field::Flag("UBREQ", "allows_universal_borrowing"),
        Field::Decimal("LP", "loan_period").Checked(IsPeriod).Default("0"),
        unit("LnI", "loan_unit"),
        Count("G", "grace_period"),
        Amount("FR", "fine_rate"),
        unit("FI", "fine_unit"),
        Amount("MF", "most_fine"),
        Count("MR", "most_renewals"),
        Count("RPr", "renewal_period"),
        unit("RI", "renewal_unit"),
        Field::Flag("RF", "renews_from_renewal_date"),
        Count("RRP", "recall_return_interval"),
        Count("MRL", "least_loan_when_recalled"),
        Count("RGP", "recall_grace_period"),
        Amount("RFR", "recall_fine_rate"),
        unit("RFI", "recall_fine_unit"),
        Amount("MRF", "most_recall_fine"),
        Field::Flag("MIBA", "limits_items"),
        Count("MIB", "most_items"),
        Field::Flag("BO", "allows_bookings_on_overdue"),
        Field::Flag("NO", "due_at_next_fixed_time"),
        Count("WP", "warning_period"),
        shortUnit("WI", "warning_unit"),
        Count("CI", "courtesy_interval"),
        Count("ML", "least_loan_for_courtesy"),
        Count("FO", "first_overdue_interval"),
        Count("LI", "lost_interval"),
        Count("OC", "overdue_count"),
        Count("ON", "overdue_interval"),
        Count("RNC", "recall_notice_count"),
        Count("RN", "recall_notice_interval"),
        Count("HS", "hold_shelf_life"),
        shortUnit("HSI", "hold_shelf_unit"),
    };
    return fields;
}

/// Whether the other units suit the one in which the entry counts its loans.
qint16 CheckUnits(const Row& entry, bool isShortLoan) {
    struct Allowed {
        QString loan;
        QString renewal;
        QString fine; ///< and recall fine; empty: any
    };
    static const QList<Allowed> table{
        {"D", "DH", "D"}, {"H", "HMT", "HM"}, {"M", "MT", "M"}, {"I", "D", ""}, {"T", "DT", "D"}};
    for (const Allowed& allowed : table) {
        if (entry["loan_unit"].toString() != allowed.loan)
            continue;
        const QString renewal = entry["renewal_unit"].toString();
        const bool endsWithTerm = renewal == u"T" && (allowed.loan == u"H" || allowed.loan == u"M");
        const auto suits = [&](const char* column) {
            return allowed.fine.isEmpty() || allowed.fine.contains(entry[column].toString());
        };
        const bool ok = allowed.renewal.contains(renewal) && !(endsWithTerm && isShortLoan) &&
                        suits("fine_unit") && suits("recall_fine_unit");
        return ok ? status::Ok : status::ColumnError;
    }
    return status::ColumnError;
}

/// The item types that a policy group lends as short loans.
QSet<qint64> ShortLoanTypes(Context& context, qint64 group) {
    QSet<qint64> types;
    const auto ids = context.database.FirstColumn(
        "SELECT item_type_id FROM circulation_item_settings WHERE group_id=? AND is_short_loan='Y'", {group});
    for (const QVariant& id : ids)
        types.insert(id.toLongLong());
    return types;
}

using Pair = QPair<qint64, qint64>; // patron group and item type

/// The entries that a group has.
QHash<Pair, qint64> EntriesOf(Context& context, qint64 group) {
    QHash<Pair, qint64> entries;
    context.database.Each(
        "SELECT patron_group_id, item_type_id, id FROM circulation_matrix WHERE group_id=?", {group},
        [&](const ResultRow& row) {
            entries.insert({row.value(0).toLongLong(), row.value(1).toLongLong()}, row.value(2).toLongLong());
        });
    return entries;
}

/// A request for several pairs or entries: which, and the fields that are for all of them.
struct Selection {
    struct Item {
        qint64 entry = 0;
        Pair pair;
    };
    QList<Item> items;
    wire::Fields fields;
};

/// Reads "MP" and "MII" with what begins each of them. None when one is not complete.
std::optional<Selection> ReadSelection(const wire::Fields& request, const QString& marker) {
    Selection selection;
    bool isWhole = true;
    int parts = 0;
    const auto number = [&](const QString& text) {
        bool isNumber = false;
        const qint64 value = text.toLongLong(&isNumber);
        isWhole = isWhole && isNumber;
        ++parts;
        return value;
    };
    for (const wire::Field& field : request) {
        if (field.tag == marker) {
            isWhole = isWhole && parts == 2 * selection.items.size();
            selection.items.append(Selection::Item());
            selection.items.last().entry = field.value.toLongLong();
        } else if (field.tag == u"MP" && !selection.items.isEmpty()) {
            selection.items.last().pair.first = number(field.value);
        } else if (field.tag == u"MII" && !selection.items.isEmpty()) {
            selection.items.last().pair.second = number(field.value);
        } else {
            selection.fields.append(field);
        }
    }
    isWhole = isWhole && !selection.items.isEmpty() && parts == 2 * selection.items.size();
    return isWhole ? std::optional(selection) : std::nullopt;
}

/// "AddMat" and, where existing entries are to be overwritten, "CopyMat": the same rule for all pairs.
Answer AddEntries(Context& context, const wire::Fields& request, bool overwrites) {
    const auto group = FindPolicyGroup(context, request);
    if (!group)
        return {status::NotFound};
    const auto selection = ReadSelection(request, "MS");
    Row rule;
    if (!selection || ReadFields(context, MatrixRuleFields(), selection->fields, true, rule))
        return {status::ColumnError};
    const QSet<qint64> shortLoans = ShortLoanTypes(context, group->id);
    const bool isShortLoan = shortLoans.contains(selection->items.first().pair.second);
    if (CheckUnits(rule, isShortLoan))
        return {status::ColumnError};
    QSet<Pair> seen;
    QHash<QString, bool> known; // whether a record is there and in the cluster
    const auto isThere = [&](const QString& table, qint64 id, const QString& among,
                             const QVariantList& values) {
        const QString name = table + QString::number(id);
        if (!known.contains(name))
            known[name] = KeyRecord(context, table, QString::number(id), among, values).has_value();
        return known[name];
    };
    const QHash<Pair, qint64> entries = EntriesOf(context, group->id);
    bool exist = false;
    for (const Selection::Item& item : selection->items) {
        if (!isThere("patron_groups", item.pair.first, "m.cluster_id=?", {group->cluster}) ||
            !isThere("item_types", item.pair.second, {}, {}))
            return {status::NotFound};
        if (seen.contains(item.pair) || shortLoans.contains(item.pair.second) != isShortLoan)
            return {status::ColumnError};
        seen.insert(item.pair);
        exist = exist || entries.contains(item.pair);
    }
    if (exist && !overwrites)
        return {status::MatrixEntriesExist};
    rule.insert("group_id", group->id);
    for (const Selection::Item& item : selection->items) {
        rule.insert("patron_group_id", item.pair.first);
        rule.insert("item_type_id", item.pair.second);
        if (const qint64 entry = entries.value(item.pair))
            context.records.Update(Matrix, entry, rule);
        else
            context.records.Insert(Matrix, rule);
    }
    return {};
}

/// "UpdMulMat": the chosen fields of several entries, all of them or none.
Answer UpdateEntries(Context& context, const wire::Fields& request) {
    const auto group = FindPolicyGroup(context, request);
    if (!group)
        return {status::NotFound};
    const auto selection = ReadSelection(request, "MI");
    Row changes;
    if (!selection || ReadFields(context, MatrixRuleFields(), selection->fields, false, changes))
        return {status::ColumnError};
    const QSet<qint64> shortLoans = ShortLoanTypes(context, group->id);
    // What is checked and what is changed, of all entries with one statement.
    QStringList columns{"id",           "patron_group_id", "item_type_id",    "loan_unit",
                        "renewal_unit", "fine_unit",       "recall_fine_unit"};
    for (auto change = changes.begin(); change != changes.end(); ++change)
        if (!columns.contains(change.key()))
            columns << change.key();
    QHash<qint64, Row> entries;
    context.database.Each("SELECT " + columns.join(", ") + " FROM circulation_matrix WHERE group_id=?",
                          {group->id}, [&](const ResultRow& row) {
                              Row& entry = entries[row.value(0).toLongLong()];
                              for (int i = 1; i < columns.size(); ++i)
                                  entry.insert(columns[i], row.value(i));
                          });
    for (const Selection::Item& item : selection->items) {
        const auto stored = entries.constFind(item.entry);
        if (stored == entries.constEnd() || (*stored)["patron_group_id"].toLongLong() != item.pair.first ||
            (*stored)["item_type_id"].toLongLong() != item.pair.second)
            return {status::NotFound};
        Row after = *stored;
        after.insert(changes);
        if (CheckUnits(after, shortLoans.contains(item.pair.second)))
            return {status::ColumnError};
    }
    for (const Selection::Item& item : selection->items)
        context.records.Update(Matrix, item.entry, changes, entries[item.entry]);
    return {};
}

/// "LstMatPatronItem": the entries of a group.
Answer ListEntries(Context& context, const wire::Fields& request) {
    const auto group = FindPolicyGroup(context, request);
    if (!group)
        return {status::NotFound};
    Answer answer;
    context.database.Each(
        "SELECT e.id, p.name, i.name, p.id, i.id FROM circulation_matrix e "
        "JOIN patron_groups p ON p.id=e.patron_group_id JOIN item_types i ON i.id=e.item_type_id "
        "WHERE e.group_id=? ORDER BY p.name, i.name, e.id",
        {group->id}, [&](const ResultRow& row) {
            static const QStringList tags{"MI", "MPN", "MIN", "MP", "MII"};
            for (qsizetype i = 0; i < tags.size(); ++i)
                Put(answer.fields, tags[i], row.Text(int(i)));
        });
    return answer;
}

/// "LstMatRule": the entries of a group with all that they say.
Answer ListRules(Context& context, const wire::Fields& request) {
    const auto group = FindPolicyGroup(context, request);
    if (!group)
        return {status::NotFound};
    QStringList tags{"MI", "MP", "MII"};
    QStringList columns{"id", "patron_group_id", "item_type_id"};
    for (const SubjectField& field : MatrixRuleFields()) {
        tags << field.tag;
        columns << field.column;
    }
    Answer answer;
    context.database.Each("SELECT " + columns.join(", ") +
                              " FROM circulation_matrix WHERE group_id=? ORDER BY patron_group_id, "
                              "item_type_id",
                          {group->id}, [&](const ResultRow& row) {
                              for (qsizetype i = 0; i < tags.size(); ++i)
                                  Put(answer.fields, tags[i], row.Text(int(i)));
                          });
    return answer;
}

/// "LstMatSettings": what entries may be made for.
Answer ListMatrixChoices(Context& context, const wire::Fields& request) {
    const auto group = FindPolicyGroup(context, request);
    if (!group)
        return {status::NotFound};
    Answer answer;
    context.database.Each("SELECT id, name FROM patron_groups WHERE cluster_id=? ORDER BY id",
                          {group->cluster}, [&](const ResultRow& row) {
                              Put(answer.fields, "P", row.value(0).toString());
                              Put(answer.fields, "N", row.value(1).toString());
                          });
    const QSet<qint64> shortLoans = ShortLoanTypes(context, group->id);
    context.database.Each("SELECT id, name FROM item_types ORDER BY id", {}, [&](const ResultRow& row) {
        Put(answer.fields, "II", row.value(0).toString());
        Put(answer.fields, "IN", row.value(1).toString());
        Put(answer.fields, "I5", shortLoans.contains(row.value(0).toLongLong()) ? "Y" : "N");
    });
    return answer;
}

/// An entry stays where it is, and its units suit each other.
qint16 CheckEntry(Context& context, const wire::Fields& request, const Row& before, Row& after) {
    if (!FindPolicyGroup(context, request))
        return status::NotFound;
    for (const char* column : {"group_id", "patron_group_id", "item_type_id"})
        if (before[column] != after[column])
            return status::NotFound;
    const QSet<qint64> shortLoans = ShortLoanTypes(context, after["group_id"].toLongLong());
    return CheckUnits(after, shortLoans.contains(after["item_type_id"].toLongLong()));
}

/// The entries whose units do not suit each other. Most have units that many others have too.
QList<qint64> EntriesOfWrongUnits(Database& database) {
    const QStringList units{"loan_unit", "renewal_unit", "fine_unit", "recall_fine_unit"};
    const QString of = "m." + units.join(", m.") + ", COALESCE(s.is_short_loan, 'N')";
    const QString from = " FROM circulation_matrix m LEFT JOIN circulation_item_settings s "
                         "ON s.group_id=m.group_id AND s.item_type_id=m.item_type_id";
    QStringList conditions;
    QVariantList values;
    database.Each("SELECT " + of + from + " GROUP BY " + of, {}, [&](const ResultRow& result) {
        Row row;
        for (qsizetype i = 0; i < units.size(); ++i)
            row.insert(units[i], result.value(int(i)));
        const QString isShortLoan = result.value(int(units.size())).toString();
        if (CheckUnits(row, isShortLoan == u"Y") == status::Ok)
            return;
        conditions << "(m." + units.join("=? AND m.") + "=? AND COALESCE(s.is_short_loan, 'N')=?)";
        for (const QString& unit : units)
            values << row[unit];
        values << isShortLoan;
    });
    QList<qint64> ids;
    if (!conditions.isEmpty())
        for (const QVariant& id :
             database.FirstColumn("SELECT m.id" + from + " WHERE " + conditions.join(" OR "), values))
            ids << id.toLongLong();
    return ids;
}

} // namespace

void RegisterCirculationMatrix(Registry& registry) {
    registry.AddSubject({
        .table = Matrix,
        .area = Area::Circulation,
        .requests = {.get = "GetMat", .update = "UpdMat", .remove = "DelMat"},
        .fields =
            QList<SubjectField>{
                SubjectField::Reference("ID", "group_id", "circulation_policy_groups", OnRemoval::RemoveToo)
                    .Required()
                    .WriteOnly(),
                SubjectField::Reference("MP", "patron_group_id", "patron_groups").Required().WriteOnly(),
                SubjectField::Reference("MII", "item_type_id", "item_types").Required().WriteOnly()} +
            MatrixRuleFields(),
        .key = "MI",
        .usages = {{"circulation transactions", InTransactions}},
        .within = ListFilter{"ID", "group_id"},
        .checkPut = CheckEntry,
    });
    registry.AddTable(
        {.name = Matrix,
         .uniqueSets = {{"group_id", "patron_group_id", "item_type_id"}},
         .storedRules = {{{"circulation_item_settings"},
                          EntriesOfWrongUnits,
                          "The units of the rule's periods and fines do not suit each other."},
                         FindsNone("SELECT m.id FROM circulation_matrix m "
                                   "JOIN circulation_policy_groups g ON g.id=m.group_id "
                                   "JOIN patron_groups p ON p.id=m.patron_group_id "
                                   "WHERE p.cluster_id<>g.cluster_id",
                                   "The patron group belongs to another cluster than the policy group.",
                                   {"circulation_policy_groups", "patron_groups"})}});
    registry.AddRead("LstMatPatronItem", Area::Circulation, ListEntries);
    registry.About("LstMatPatronItem", {Matrix}, {});
    registry.AddRead("LstMatRule", Area::Circulation, ListRules);
    registry.AddRead("LstMatSettings", Area::Circulation, ListMatrixChoices);
    registry.AddChange("AddMat", Area::Circulation, [](Context& context, const wire::Fields& request) {
        return AddEntries(context, request, false);
    });
    registry.AddChange("CopyMat", Area::Circulation, [](Context& context, const wire::Fields& request) {
        return AddEntries(context, request, wire::FirstValue(request, "OV") == u"Y");
    });
    registry.AddChange("UpdMulMat", Area::Circulation, UpdateEntries);
    registry.AboutSeveral("UpdMulMat", Matrix, "MI");
}

} // namespace sysadmin::server
