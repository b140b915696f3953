#include "server/Context.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/circulation/KeyedRows.h"
#include "server/subjects/circulation/OneEach.h"

// What patron groups may do at other libraries (universal borrowing). A group is eligible exactly while it
// has a policy.

namespace sysadmin::server {

namespace {

/// A limit: whether it applies, what it is, whether who reaches it may not borrow here either.
struct BorrowingLimit {
    QString role; ///< in the names of its columns
    QString applies;
    QString most;
    QString blocks;
    bool isMoney = false;
};

const QList<BorrowingLimit>& Limits() {
    static const QList<BorrowingLimit> limits{{"balance", "UBFEE", "UBMOBAL", "UBFLBK", true},
                                              {"items_borrowed", "UBMILMT", "UBILMT", "UBIBBK"},
                                              {"overdue_items", "UBMODL", "UBODL", "UBOIBK"},
                                              {"overdue_recalled_items", "UBMODRL", "UBODRL", "UBORIBK"},
                                              {"self_shelf_returns", "UBMSSL", "UBSSL", "UBSSBK"},
                                              {"claimed_returns", "UBMCRL", "UBCRL", "UBCLRBK"},
                                              {"lost_items", "UBMLL", "UBLL", "UBLIBK"},
                                              {"requests", "UBMR", "UBR", "UBRBK"},
                                              {"demerits", "UBMaxDemLmt", "UBDemLmt", "UBDMBK"}};
    return limits;
}

const OneEach& Policy() {
    static const OneEach policy = [] {
        OneEach made{.table = "ub_policies",
                     .owner = "patron_group_id",
                     .ownerTable = "patron_groups",
                     .keyTag = "UBPGID",
                     .fields = {},
                     .onRemoval = OnRemoval::Refuse};
        for (const BorrowingLimit& limit : Limits()) {
            const QString most = "most_" + limit.role;
            made.fields << SubjectField::Flag(limit.applies, limit.role + "_applies")
                        << (limit.isMoney ? Amount(limit.most, most)
                                          : SubjectField::Whole(limit.most, most, 0, MostCount))
                        << SubjectField::Flag(limit.blocks, limit.role + "_blocks_here");
        }
        return made;
    }();
    return policy;
}

void PutPolicy(Context& context, qint64 group, ReplyFields& reply) {
    Put(reply, "UBE", StoredFor(context, Policy(), group) ? "Y" : "N");
    PutOne(context, Policy(), group, reply);
}

Answer ReadPolicy(Context& context, const wire::Fields& request) {
    const auto group = OwnerIn(context, Policy(), request);
    if (!group)
        return {status::NotFound};
    Answer answer;
    PutPolicy(context, *group, answer.fields);
    return answer;
}

/// "LstUbPol": all patron groups, of a cluster if one is named, each with its policy.
Answer ListPolicies(Context& context, const wire::Fields& request) {
    const QString cluster = wire::FirstValue(request, "CID");
    bool isNumber = false;
    const qint64 id = cluster.toLongLong(&isNumber);
    if (!cluster.isEmpty() && !isNumber)
        return {status::ColumnError};
    Answer answer;
    QList<qint64> groups;
    QStringList codes;
    QStringList names;
    context.database.Each("SELECT id, code, name FROM patron_groups" +
                              QString(cluster.isEmpty() ? "" : " WHERE cluster_id=?") + " ORDER BY id",
                          cluster.isEmpty() ? QVariantList() : QVariantList{id}, [&](const ResultRow& row) {
                              groups << row.value(0).toLongLong();
                              codes << row.value(1).toString();
                              names << row.value(2).toString();
                          });
    for (qsizetype i = 0; i < groups.size(); ++i) {
        Put(answer.fields, "UBPGID", QString::number(groups[i]));
        Put(answer.fields, "Cd", codes[i]);
        Put(answer.fields, "Nm", names[i]);
        PutPolicy(context, groups[i], answer.fields);
    }
    return answer;
}

/// A policy that says that its group is not eligible would be none, and a limit that applies is known.
qint16 Check(const wire::Fields& request, const Row& row) {
    if (wire::FirstValue(request, "UBE") == u"N")
        return status::ColumnError;
    for (const BorrowingLimit& limit : Limits())
        if (row[limit.role + "_applies"].toString() == u"Y" && row["most_" + limit.role].toString().isEmpty())
            return status::ColumnError;
    return status::Ok;
}

Answer StorePolicy(Context& context, const wire::Fields& request, bool adding) {
    const auto group = OwnerIn(context, Policy(), request);
    if (!group)
        return {status::NotFound};
    if (StoredFor(context, Policy(), *group).has_value() == adding)
        return {adding ? status::DuplicateRecord : status::NotFound};
    Row row;
    if (const qint16 refused = ReadOne(context, Policy(), *group, request, row))
        return {refused};
    if (const qint16 refused = Check(request, row))
        return {refused};
    StoreOne(context, Policy(), *group, row);
    return {};
}

Answer RemovePolicy(Context& context, const wire::Fields& request) {
    const auto group = OwnerIn(context, Policy(), request);
    const auto stored = group ? StoredFor(context, Policy(), *group) : std::nullopt;
    if (!stored)
        return {status::NotFound};
    context.records.Remove(Policy().table, *stored);
    return {};
}

} // namespace

void RegisterUbPolicies(Registry& registry) {
    const QString table = Policy().table;
    registry.AddTable(Policy().StoredAs());
    registry.AddRead("GetUbPol", Area::Circulation, ReadPolicy);
    registry.AddRead("LstUbPol", Area::Circulation, ListPolicies);
    registry.AddChange("AddUbPol", Area::Circulation, [](Context& context, const wire::Fields& request) {
        return StorePolicy(context, request, true);
    });
    registry.AddChange("UpdUbPol", Area::Circulation, [](Context& context, const wire::Fields& request) {
        return StorePolicy(context, request, false);
    });
    registry.AddChange("DelUbPol", Area::Circulation, RemovePolicy);
    registry.About("LstUbPol", {table});
    registry.About("AddUbPol", {table});
    for (const char* request : {"GetUbPol", "UpdUbPol", "DelUbPol"})
        registry.About(request, {table}, {"UBPGID"}, Policy().owner);
}

} // namespace sysadmin::server
