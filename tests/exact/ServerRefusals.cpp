#include "exact/ServerDriver.h"

// What the server must refuse.
namespace sysadmin::exact {

namespace status = wire::status;

void ServerDriver::Duplicates() {
    for (const Field& field : m_table.fields) {
        Values values = ValuesOf(3);
        if (field.unique == 0)
            continue;
        values[field.tag] = ValueOf(m_table, field, 1);
        ExpectStatus("a second record with the same " + field.tag, Put(true, values), field.unique);
        values[field.tag] = " " + values[field.tag].toUpper();
        if (field.max == 0 || values[field.tag].size() <= field.max)
            ExpectStatus("a second record with nearly the same " + field.tag, Put(true, values),
                         field.unique);
    }
}

/// Nothing of this is taken, in new records or in changed ones.
void ServerDriver::WrongValues(const QString& key) {
    for (const Field& field : m_table.fields) {
        QStringList wrong;
        const int limit = field.serverMax > 0 ? field.serverMax : field.max;
        if (field.kind == u"text" && limit > 0)
            wrong = {QString(limit + 1, 'x')};
        else if (field.kind == u"flag")
            wrong = {"X"};
        else if (field.kind == u"number")
            wrong = {"abc", QString::number(field.most + 1), QString::number(field.least - 1)};
        else if (field.kind == u"date" || field.kind == u"letter" ||
                 (field.kind == u"choice" && (!field.source.request.isEmpty() || !field.entries.isEmpty())))
            wrong = {"?", "987654"};
        if (field.required)
            wrong.append(QString());
        if (field.shown || field.kind == u"picked" || field.kind == u"other" || !field.loads.isEmpty())
            continue;
        for (const QString& value : wrong) {
            Values values = ValuesOf(3);
            if (!field.by.isEmpty()) // counts only while its flag is on
                for (const Field& flag : m_table.fields)
                    if (flag.control == field.by)
                        values[flag.tag] = "Y";
            values[field.tag] = value;
            const QString what = field.tag + "=" + value.left(12);
            if (!m_table.add.isEmpty() && !m_table.single)
                ExpectStatus("an add with " + what, Put(true, values), status::ColumnError);
            ExpectStatus("an update with " + what, Put(false, values, key), status::ColumnError);
        }
        static const QStringList blankable{"text", "date", "lines"};
        if (!field.required && (blankable.contains(field.kind) || !field.source.request.isEmpty())) {
            Values values = ValuesOf(1);
            values[field.tag].clear();
            ExpectStatus("an update without " + field.tag, Put(false, values, key), 0);
            ExpectStatus("an update back", Put(false, ValuesOf(1), key), 0);
        }
        if (field.kind == u"text" && limit > 0 && field.values.isEmpty()) {
            Values values = ValuesOf(1);
            values[field.tag] = QString(limit, 'y');
            ExpectStatus("an update with the longest " + field.tag, Put(false, values, key), 0);
            ExpectStatus("an update back", Put(false, ValuesOf(1), Key(values, key)), 0);
        }
        if (field.kind == u"number") {
            Values values = ValuesOf(1);
            for (const Field& flag : m_table.fields)
                if (flag.control == field.by)
                    values[flag.tag] = "Y";
            for (const int limitValue : {field.least, field.most}) {
                values[field.tag] = QString::number(limitValue);
                ExpectStatus("an update with " + field.tag + "=" + values[field.tag], Put(false, values, key),
                             0);
            }
            ExpectStatus("an update back", Put(false, ValuesOf(1), key), 0);
        }
    }
}

void ServerDriver::Refusals(const QString& key) {
    const Field* keyField = nullptr;
    for (const Field& field : m_table.fields)
        if (field.tag == m_table.record)
            keyField = &field;
    const QString id =
        keyField ? m_server->Value("SELECT id FROM " + m_table.stored + " WHERE code=?", {key}) : key;
    server::Database& database = m_server->GetDatabase();
    for (const Refusal& refusal : m_table.refusals) {
        QString former;
        QString user;
        if (refusal.table.isEmpty()) {
            database.Run("INSERT INTO usage (table_name, kind, record_id, used) VALUES (?, ?, ?, 1)",
                         {m_table.stored, refusal.kind, id.toLongLong()});
        } else {
            user = m_server->Value("SELECT MIN(id) FROM " + refusal.table);
            former = m_server->Value("SELECT " + refusal.column + " FROM " + refusal.table + " WHERE id=?",
                                     {user.toLongLong()});
            database.Run("UPDATE " + refusal.table + " SET " + refusal.column + "=? WHERE id=?",
                         {id.toLongLong(), user.toLongLong()});
        }
        ExpectStatus("a delete while used by " + (refusal.table.isEmpty() ? refusal.kind : refusal.table),
                     Send(m_table.remove, {{m_table.getKey, key}}), refusal.status);
        if (refusal.table.isEmpty())
            database.Run("DELETE FROM usage WHERE table_name=? AND record_id=?",
                         {m_table.stored, id.toLongLong()});
        else
            database.Run("UPDATE " + refusal.table + " SET " + refusal.column + "=? WHERE id=?",
                         {former.isEmpty() ? QVariant() : QVariant(former.toLongLong()), user.toLongLong()});
    }
}

} // namespace sysadmin::exact
