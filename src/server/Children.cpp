#include "server/Children.h"

#include "server/Library.h"
#include "server/SubjectRequests.h"
#include "server/store/Database.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

QString MarkerOf(const Children& children) {
    return children.marker.isEmpty() ? children.fields.first().tag : children.marker;
}

/// A row as a request carries it.
struct SentRow {
    wire::Fields fields;
    int parent = 0; ///< how many rows of the kind above came before it
    QString State(const Children& children) const { return wire::FirstValue(fields, children.state); }
};

QList<SentRow> ReadRows(const wire::Fields& request, const Children& children, const QString& parentMarker) {
    QStringList tags{children.idTag, children.state, children.ownerTag};
    for (const SubjectField& field : children.fields)
        tags << field.tag;
    const QString marker = MarkerOf(children);
    QList<SentRow> rows;
    int parents = 0;
    for (const wire::Field& field : request) {
        if (field.tag == parentMarker)
            ++parents;
        if (field.tag == marker)
            rows.append({.fields = {}, .parent = parents});
        if (!rows.isEmpty() && rows.last().parent == parents &&
            (field.tag == marker || tags.contains(field.tag)))
            rows.last().fields.append(field);
    }
    return rows;
}

QVariantList Present(Context& context, const Children& children, qint64 owner) {
    return context.database.FirstColumn(
        "SELECT id FROM " + children.table + " WHERE " + children.owner + "=? ORDER BY id", {owner});
}

/// Makes these the rows of the record.
void Replace(Context& context, const Children& children, qint64 owner, QList<Row> wanted) {
    QList<qint64> spare;
    for (const QVariant& id : Present(context, children, owner)) {
        const Row row = *context.records.Find(children.table, id.toLongLong());
        const auto same = std::find_if(wanted.begin(), wanted.end(), [&](const Row& other) {
            return std::all_of(
                children.fields.begin(), children.fields.end(),
                [&](const SubjectField& field) { return other[field.column] == row[field.column]; });
        });
        if (children.ordered || same == wanted.end())
            spare.append(id.toLongLong());
        else
            wanted.erase(same);
    }
    const Table& table = *context.library.GetRegistry().GetTables().constFind(children.table);
    for (Row& row : wanted) {
        // What the row held for another kind of record goes.
        for (const Column& column : table.columns)
            if (!row.contains(column.name))
                row.insert(column.name, column.name == children.owner ? QVariant(owner) : QVariant());
        if (spare.isEmpty())
            context.records.Insert(children.table, row);
        else
            context.records.Update(children.table, spare.takeFirst(), row);
    }
    for (const qint64 id : spare)
        context.records.Remove(children.table, id);
}

qint16 ApplyWhole(Context& context, const Children& children, qint64 owner, const QList<SentRow>& sent) {
    QList<Row> wanted;
    for (const SentRow& one : sent) {
        const QString state = one.State(children);
        if (!children.state.isEmpty() && state != rowstate::Added && state != rowstate::Changed &&
            state != rowstate::Removed)
            return status::ColumnError;
        Row row;
        if (state == rowstate::Removed)
            continue;
        if (const qint16 refused = ReadFields(context, children.fields, one.fields, true, row))
            return refused;
        wanted << row;
    }
    if ((children.check && !children.check(wanted)) || (children.most > 0 && wanted.size() > children.most))
        return status::ColumnError;
    Replace(context, children, owner, wanted);
    return status::Ok;
}

/// Carries out what a row's state says. Puts the row's id into `id`; 0 when it is removed.
qint16 ApplyOne(Context& context, const Children& children, qint64 owner, const SentRow& sent, qint64* id) {
    const QString state = sent.State(children);
    Row row;
    *id = 0;
    if (state == rowstate::Added) {
        if (const qint16 refused = ReadFields(context, children.fields, sent.fields, true, row))
            return refused;
        if (children.most > 0 &&
            context.records.Count(children.table, children.owner, owner) >= children.most)
            return status::ColumnError;
        row.insert(children.owner, owner);
        *id = context.records.Insert(children.table, row);
        return status::Ok;
    }
    if (state != rowstate::Changed && state != rowstate::Removed && state != rowstate::Unchanged)
        return status::ColumnError;
    bool isNumber = false;
    const qint64 there = wire::FirstValue(sent.fields, children.idTag).toLongLong(&isNumber);
    const auto before = isNumber ? context.records.Find(children.table, there) : std::nullopt;
    if (!before || before->value(children.owner).toLongLong() != owner)
        return status::NotFound;
    if (state == rowstate::Removed) {
        context.records.Remove(children.table, there);
        return status::Ok;
    }
    *id = there;
    if (state == rowstate::Unchanged)
        return status::Ok;
    row = *before;
    if (const qint16 refused = ReadFields(context, children.fields, sent.fields, false, row))
        return refused;
    context.records.Update(children.table, there, row);
    return status::Ok;
}

/// Stores the rows of rows: each belongs to the row that it names, else to the one that it follows.
qint16 ApplyNested(Context& context, const Children& nested, const QList<qint64>& owners,
                   const QList<SentRow>& sent) {
    QMap<qint64, QList<SentRow>> rowsOf;
    for (const qint64 owner : owners)
        if (owner != 0)
            rowsOf.insert(owner, {});
    for (const SentRow& row : sent) {
        const QString named = wire::FirstValue(row.fields, nested.ownerTag);
        const qint64 followed = row.parent > 0 ? owners[row.parent - 1] : 0;
        if (followed == 0 && row.parent > 0)
            continue; // it goes with the row that it follows
        const qint64 owner = named.isEmpty() ? followed : named.toLongLong();
        if (!rowsOf.contains(owner))
            return status::ColumnError;
        rowsOf[owner] << row;
    }
    for (auto rows = rowsOf.begin(); rows != rowsOf.end(); ++rows)
        if (const qint16 refused = ApplyWhole(context, nested, rows.key(), *rows))
            return refused;
    return status::Ok;
}

} // namespace

QList<Table> Children::StoredAs(const QString& ownerTable) const {
    Table own{.name = table,
              .columns = {{.name = owner,
                           .type = ColumnType::Reference,
                           .target = ownerTable,
                           .onRemoval = OnRemoval::RemoveToo}},
              .owner = owner};
    PartsRule rule{.column = where.column, .value = where.value, .most = most, .check = check};
    for (const SubjectField& field : fields) {
        own.columns << field.StoredAs();
        if (where.column.isEmpty())
            continue;
        rule.cells.insert(field.column, field.Rule());
        own.columns.last().rule = {};
    }
    if (check || most > 0 || !where.column.isEmpty())
        own.parts << rule;
    QList<Table> tables{own};
    for (const Children& nested : children)
        tables += nested.StoredAs(table);
    return tables;
}

void PutChildren(Context& context, const Children& children, qint64 owner, ReplyFields& reply) {
    QHash<QString, QString> columns{{children.idTag, "c.id"}, {children.ownerTag, "c." + children.owner}};
    QStringList tags = children.replyOrder;
    const bool isGiven = !tags.isEmpty();
    if (!isGiven && !children.idTag.isEmpty())
        tags << children.idTag;
    for (const SubjectField& field : children.fields) {
        columns.insert(field.tag, "c." + field.column);
        if (!isGiven && field.inGet)
            tags << field.tag;
    }
    if (tags.isEmpty()) // the subject sends them itself
        return;
    QStringList selected;
    for (const QString& tag : tags)
        selected << columns[tag];
    const QList<wire::EncodedTag> encoded(tags.begin(), tags.end());
    const auto put = [&](const ResultRow& row) {
        for (qsizetype i = 0; i < encoded.size(); ++i)
            reply.Put(encoded[i], row.Utf8(int(i)));
    };
    const QString select = "SELECT " + selected.join(", ") + " FROM " + children.table + " c WHERE c.";
    context.database.Each(select + children.owner + "=? ORDER BY c.id", {owner}, put);
    for (const Children& nested : children.children)
        for (const QVariant& id : Present(context, children, owner))
            PutChildren(context, nested, id.toLongLong(), reply);
}

qint16 ApplyChildren(Context& context, const QList<Children>& all, const Row& record, qint64 owner,
                     const wire::Fields& request) {
    for (const Children& children : all) {
        if (!children.where.Holds(record)) {
            const bool isOthers = std::any_of(all.begin(), all.end(), [&](const Children& other) {
                return other.table == children.table && other.where.Holds(record);
            });
            if (!isOthers)
                context.records.RemoveWhere(children.table, children.owner, owner);
            continue;
        }
        const QList<SentRow> sent = ReadRows(request, children, {});
        if (!children.byState) {
            if (const qint16 refused = ApplyWhole(context, children, owner, sent))
                return refused;
            continue;
        }
        QList<qint64> ids;
        for (const SentRow& row : sent) {
            qint64 id = 0;
            if (const qint16 refused = ApplyOne(context, children, owner, row, &id))
                return refused;
            ids << id;
        }
        for (const Children& nested : children.children)
            if (const qint16 refused =
                    ApplyNested(context, nested, ids, ReadRows(request, nested, MarkerOf(children))))
                return refused;
    }
    return status::Ok;
}

} // namespace sysadmin::server
