#include "server/Membership.h"

#include "server/Context.h"
#include "server/store/Database.h"

namespace sysadmin::server {

namespace {

QString Attached(const Membership& membership) {
    if (membership.table.isEmpty())
        return "m." + membership.ownerColumn + "=?";
    return "EXISTS (SELECT 1 FROM " + membership.table + " t WHERE t." + membership.memberColumn +
           "=m.id AND t." + membership.ownerColumn + "=?)";
}

void PutMembers(Context& context, const Membership& membership, const QString& condition,
                const QVariantList& values, const QString& idTag, const QString& nameTag,
                ReplyFields& reply) {
    QStringList conditions;
    if (!membership.condition.isEmpty())
        conditions << membership.condition;
    if (!condition.isEmpty())
        conditions << condition;
    QString sql =
        "SELECT m." + membership.key + ", " + membership.name + " FROM " + membership.memberTable + " m";
    if (!conditions.isEmpty())
        sql += " WHERE (" + conditions.join(") AND (") + ')';
    sql += " ORDER BY m.id";
    const wire::EncodedTag id(idTag);
    const wire::EncodedTag name(nameTag);
    context.database.Each(sql, values, [&](const ResultRow& row) {
        reply.Put(id, row.Utf8(0));
        reply.Put(name, row.Utf8(1));
    });
}

std::optional<qint64> MemberRow(Context& context, const Membership& membership, const QString& key) {
    if (membership.key != "id")
        return context.records.IdWhere(membership.memberTable, membership.key, key);
    bool valid = false;
    const qint64 id = key.toLongLong(&valid);
    return valid ? context.records.IdWhere(membership.memberTable, "id", id) : std::nullopt;
}

/// Whether another owner has the member, which may have one only.
bool IsElsewhere(Context& context, const Membership& membership, qint64 owner, qint64 member) {
    return membership.elsewhere != 0 &&
           context.database
               .FirstRow("SELECT 1 FROM " + membership.table + " WHERE " + membership.memberColumn +
                             "=? AND " + membership.ownerColumn + "<>?",
                         {member, owner})
               .has_value();
}

qint16 Attach(Context& context, const Membership& membership, qint64 owner, qint64 member) {
    if (membership.table.isEmpty()) {
        context.records.Update(membership.memberTable, member, {{membership.ownerColumn, owner}});
        return status::Ok;
    }
    if (IsElsewhere(context, membership, owner, member))
        return membership.elsewhere;
    const bool there = context.database
                           .FirstRow("SELECT 1 FROM " + membership.table + " WHERE " +
                                         membership.ownerColumn + "=? AND " + membership.memberColumn + "=?",
                                     {owner, member})
                           .has_value();
    if (!there)
        context.records.Insert(membership.table,
                               {{membership.ownerColumn, owner}, {membership.memberColumn, member}});
    return status::Ok;
}

void Detach(Context& context, const Membership& membership, qint64 owner, qint64 member) {
    if (membership.table.isEmpty()) {
        const auto row = context.records.Find(membership.memberTable, member);
        if (row && row->value(membership.ownerColumn).toLongLong() == owner)
            context.records.Update(membership.memberTable, member, {{membership.ownerColumn, QVariant()}});
        return;
    }
    const QVariant id =
        context.database.FirstValue("SELECT id FROM " + membership.table + " WHERE " +
                                        membership.ownerColumn + "=? AND " + membership.memberColumn + "=?",
                                    {owner, member});
    if (id.isValid())
        context.records.Remove(membership.table, id.toLongLong());
}

qint16 ReplaceMembers(Context& context, const Membership& membership, qint64 owner, const QStringList& keys) {
    QList<qint64> wanted; // in the order of the request
    for (const QString& key : keys) {
        const auto member = MemberRow(context, membership, key);
        if (!member)
            return status::NotFound;
        wanted << *member;
    }
    const QString present = membership.table.isEmpty()
                                ? "SELECT id FROM " + membership.memberTable + " WHERE " +
                                      membership.ownerColumn + "=? ORDER BY id"
                                : "SELECT " + membership.memberColumn + " FROM " + membership.table +
                                      " WHERE " + membership.ownerColumn + "=? ORDER BY id";
    const QSet<qint64> kept(wanted.begin(), wanted.end());
    for (const QVariant& member : context.database.FirstColumn(present, {owner}))
        if (!kept.contains(member.toLongLong()))
            Detach(context, membership, owner, member.toLongLong());
    for (const qint64 member : wanted)
        if (const qint16 refused = Attach(context, membership, owner, member))
            return refused;
    return status::Ok;
}

} // namespace

std::optional<Table> Membership::StoredAs(const QString& ownerTable) const {
    if (table.isEmpty())
        return std::nullopt;
    return Table{
        .name = table,
        .columns = {{.name = ownerColumn,
                     .type = ColumnType::Reference,
                     .target = ownerTable,
                     .onRemoval = OnRemoval::RemoveToo},
                    {.name = memberColumn,
                     .type = ColumnType::Reference,
                     .target = memberTable,
                     .onRemoval = OnRemoval::RemoveToo}},
        .uniqueSets = {elsewhere != 0 ? QStringList{memberColumn} : QStringList{ownerColumn, memberColumn}},
        .owner = ownerColumn};
}

void PutAvailable(Context& context, const Membership& membership, std::optional<qint64> owner,
                  ReplyFields& reply) {
    if (!membership.availableMarker.isEmpty())
        Put(reply, membership.availableMarker, "");
    QString condition;
    QVariantList values;
    if (membership.elsewhere != 0) {
        condition = "NOT EXISTS (SELECT 1 FROM " + membership.table + " t WHERE t." +
                    membership.memberColumn + "=m.id)";
    } else if (owner) {
        condition = membership.table.isEmpty()
                        ? Attached(membership).prepend("NOT COALESCE(").append(", FALSE)")
                        : Attached(membership).prepend("NOT ");
        values << *owner;
    }
    PutMembers(context, membership, condition, values, membership.availableId, membership.availableName,
               reply);
}

void PutSelected(Context& context, const Membership& membership, qint64 owner, ReplyFields& reply) {
    if (!membership.selectedMarker.isEmpty())
        Put(reply, membership.selectedMarker, "");
    PutMembers(context, membership, Attached(membership), {owner}, membership.selectedId,
               membership.selectedName, reply);
}

qint16 ApplyMembers(Context& context, const Membership& membership, qint64 owner,
                    const wire::Fields& request) {
    QStringList keys;
    QStringList states;
    for (const wire::Field& field : request) {
        if (field.tag == membership.selectedId)
            keys << field.value;
        else if (field.tag == membership.state)
            states << field.value;
    }
    if (membership.whole)
        return ReplaceMembers(context, membership, owner, keys);
    // Some requests put the state in front of the id and some after it: the order of each is what counts.
    if (keys.size() != states.size())
        return status::ColumnError;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        if (states[i] == "4")
            continue;
        if (states[i] != "1" && states[i] != "3")
            return status::ColumnError;
        const auto member = MemberRow(context, membership, keys[i]);
        if (!member)
            return status::NotFound;
        if (states[i] == "3")
            Detach(context, membership, owner, *member);
        else if (const qint16 refused = Attach(context, membership, owner, *member))
            return refused;
    }
    return status::Ok;
}

} // namespace sysadmin::server
