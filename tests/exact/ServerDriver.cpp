#include "exact/ServerDriver.h"

namespace sysadmin::exact {

namespace status = wire::status;
using testing::TestServer;

ServerDriver::ServerDriver(const Screen& screen, const exact::Table& table,
                           std::shared_ptr<const server::Registry> registry, const QString& folder,
                           bool stopAtFirst)
    : m_screen(screen)
    , m_table(table)
    , m_stopAtFirst(stopAtFirst) {
    TestServer::Options options;
    options.address = server::StoreAddress::InDirectory(folder);
    options.registry = std::move(registry);
    m_server = std::make_unique<TestServer>(options);
}

QStringList ServerDriver::Run() {
    try {
        FindEntries();
        Rights();
        TakeRight();
        if (m_table.single)
            Record();
        else
            Table();
    } catch (const Stop&) {
    } catch (const std::exception& error) {
        m_differences.append(m_screen.name + ": " + error.what());
    }
    m_server.reset();
    return m_differences;
}

void ServerDriver::Expect(const QString& what, const QString& is, const QString& wanted) {
    if (is == wanted)
        return;
    m_differences.append(QString("%1, %2, %3:\n    is     %4\n    wanted %5")
                             .arg(m_screen.name, m_table.subject, what, is, wanted));
    if (m_stopAtFirst)
        throw Stop();
}

void ServerDriver::ExpectStatus(const QString& what, const wire::Reply& reply, qint16 wanted) {
    Expect("status of " + what, QString::number(reply.status), QString::number(wanted));
}

/// What a choice may hold comes from a list of the server's.
void ServerDriver::FindEntries() {
    for (const Field& field : m_table.fields) {
        if (field.source.request.isEmpty())
            continue;
        const wire::Reply reply = Send(field.source.request);
        ExpectStatus("the entries of " + field.control, reply, 0);
        const QStringList ids = testing::ValuesOf(reply.fields, field.source.id);
        Expect("texts of " + field.control,
               QString::number(testing::ValuesOf(reply.fields, field.source.text).size()),
               QString::number(ids.size()));
        m_entries[field.control] = ids;
    }
}

ServerDriver::Values ServerDriver::ValuesOf(int record) {
    Values values;
    Values flags;
    for (const Field& field : m_table.fields) {
        if (field.kind == u"picked" || field.kind == u"other" || field.shown)
            continue;
        QString value = ValueOf(m_table, field, record);
        if (const QStringList& ids = m_entries[field.control]; !ids.isEmpty())
            value = ids[record % ids.size()];
        if (field.kind == u"flag")
            flags[field.control] = value;
        values[field.tag] = value;
    }
    // What travels only with its flag is empty where that is off.
    for (const exact::Put& put : m_table.updates)
        if (put.kind == exact::Put::Kind::WhenOn && values[put.tag] != u"Y")
            values[put.other].clear();
    return values;
}

QString ServerDriver::Key(const Values& values, const QString& id) const {
    return values.value(m_table.record, id);
}

wire::Reply ServerDriver::Put(bool adding, const Values& values, const QString& key,
                              const QMap<QString, QStringList>& in, const QMap<QString, QStringList>& out,
                              const Values& before) {
    const Saving saving{
        [&](const QString& tag) { return values.value(tag); },
        [&](const QString& tag) { return before.isEmpty() || values.value(tag) != before.value(tag); }, key,
        out, in};
    const wire::Reply reply = adding ? Send(m_table.add, FieldsOf(m_table.adds, saving))
                                     : Send(m_table.update, FieldsOf(m_table.updates, saving));
    if (reply.status == status::Ok && !m_table.follow.isEmpty()) {
        Saving further = saving;
        if (adding)
            further.key = wire::FirstValue(reply.fields, m_table.record);
        ExpectStatus(m_table.follow, Send(m_table.follow, FieldsOf(m_table.follows, further)), 0);
    }
    return reply;
}

void ServerDriver::Rights() {
    using Case = std::tuple<QString, bool, bool>; // operator, reads, writes
    for (const auto& [operatorId, reads, writes] :
         {Case{"GUEST", false, false}, Case{"VIEWER", true, false}}) {
        m_server->SignOnAs(operatorId);
        const auto expect = [&](const QString& request, bool allowed) {
            if (request.isEmpty())
                return;
            const bool refused = Send(request, {{m_table.getKey, "0"}}).status == status::NotAuthorised;
            Expect(request + " by " + operatorId, refused ? "refused" : "allowed",
                   allowed ? "allowed" : "refused");
        };
        expect(m_table.list, reads || m_table.open);
        expect(m_table.get, reads);
        expect(m_table.add, writes);
        expect(m_table.update, writes);
        expect(m_table.remove, writes);
        for (const Available& available : m_table.available)
            if (available.request != u"LstLoc")
                expect(available.request, reads);
    }
    m_server->SignOnAs("SYSADMIN");
}

/// From here on an operator goes on who may edit what belongs to the screen's area, and nothing else.
void ServerDriver::TakeRight() {
    static const QHash<QString, QString> tags{{"Acquisitions", "ASPG"},
                                              {"Cataloging", "CatPG"},
                                              {"Circulation", "CrcPG"},
                                              {"Security", "Sec"},
                                              {"System", "SysDf"}};
    ExpectStatus("giving the right",
                 Send("AddMPrf",
                      {{"SOI", "GUEST"}, {"OSt", "1"}, {tags.value(m_screen.area), "Y"}, {"Nm", "One area"}}),
                 0);
    m_server->SignOnAs("GUEST");
}

QStringList ServerDriver::Taken(const wire::Fields& reply, const QString& tag) const {
    return testing::ValuesOf(reply, tag);
}

/// What a get (or the list, where rows are whole) answers for the record.
void ServerDriver::Stored(const QString& what, const QString& key, const Values& wanted,
                          const QMap<QString, QStringList>& in) {
    const wire::Reply list = Send(m_table.list);
    ExpectStatus("the list", list, 0);
    const QStringList keys = testing::ValuesOf(list.fields, m_table.record);
    Expect("list names it " + what, keys.contains(key) ? "yes" : "no", "yes");
    for (const Column& column : m_table.columns)
        if (wanted.contains(column.tag) || !column.field.isEmpty()) {
            const QString shown = testing::InRecord(list.fields, m_table.record, key, column.tag);
            if (wanted.contains(column.tag))
                Expect(column.tag + " in the list " + what, shown, wanted[column.tag]);
            else if (!wanted.value(column.field).isEmpty())
                Expect(column.tag + " in the list is there", shown.isEmpty() ? "no" : "yes", "yes");
        }
    for (const auto& [request, more] : m_table.given)
        for (const wire::Field& field : request == m_table.list ? more : wire::Fields())
            Expect(field.tag + " in the list besides",
                   testing::InRecord(list.fields, m_table.record, key, field.tag), field.value);
    if (m_table.get.isEmpty())
        return;
    const wire::Reply reply = Send(m_table.get, {{m_table.getKey, key}});
    ExpectStatus("get " + what, reply, 0);
    for (const auto& [request, more] : m_table.given)
        for (const wire::Field& field : request == m_table.get ? more : wire::Fields())
            Expect(field.tag + " besides", testing::ValuesOf(reply.fields, field.tag).value(0), field.value);
    for (auto each = wanted.begin(); each != wanted.end(); ++each) {
        const Field* choice = nullptr;
        for (const Field& field : m_table.fields)
            if (field.tag == each.key() && !field.loads.isEmpty())
                choice = &field;
        if (choice)
            continue;
        const QStringList values = testing::ValuesOf(reply.fields, each.key());
        Expect(each.key() + " " + what, values.isEmpty() ? QString("(missing)") : values.first(),
               each.value());
    }
    for (const Field& field : m_table.fields) {
        if (field.shown)
            Expect(field.tag + " is answered",
                   testing::ValuesOf(reply.fields, field.tag).isEmpty() ? "no" : "yes", "yes");
        if (field.kind != u"picked")
            continue;
        const QStringList taken = in.value(field.tags[2]);
        const QStringList selected = testing::ValuesOf(reply.fields, field.tags[2]);
        const QStringList available = testing::ValuesOf(reply.fields, field.tags[0]);
        const auto count = [&](qsizetype tag) {
            return QString::number(testing::ValuesOf(reply.fields, field.tags[tag]).size());
        };
        Expect("selected " + field.control + " " + what, selected.join(' '), taken.join(' '));
        Expect("names of " + field.control + " " + what, count(3), QString::number(selected.size()));
        Expect("names of what is available to " + field.control, count(1), QString::number(available.size()));
        Expect("something is available to " + field.control, available.isEmpty() ? "no" : "yes", "yes");
        for (const QString& id : taken)
            Expect("available to " + field.control + " although taken",
                   available.contains(id) ? id : QString(), {});
    }
}

/// What a new record may have holds what the rows name and nothing else.
void ServerDriver::ExpectOffered(const QString& request, const wire::Reply& reply) {
    QSet<QString> tags;
    for (const Available& available : m_table.available)
        if (available.request == request)
            tags += {available.id, available.name};
    for (const wire::Field& field : reply.fields)
        if (!tags.contains(field.tag))
            return Expect("what " + request + " offers", field.tag, {});
}

void ServerDriver::History(const QString& request) {
    Expect("history of " + request,
           m_server->Value("SELECT COUNT(*) FROM history_requests WHERE request=? AND operator_id='GUEST'",
                           {request}) == u"0"
               ? "missing"
               : "there",
           "there");
}

void ServerDriver::Table() {
    const Values first = ValuesOf(1);
    const Values second = ValuesOf(2);
    // Who or what may be attached is asked for before a record is added.
    QMap<QString, QStringList> free; // by the tag under which they are put
    for (const Available& available : m_table.available)
        for (const Field& field : m_table.fields)
            if (field.control == available.control) {
                const wire::Reply reply = Send(available.request);
                ExpectStatus(available.request, reply, 0);
                const QStringList ids = testing::ValuesOf(reply.fields, available.id);
                Expect("names of " + available.request,
                       QString::number(testing::ValuesOf(reply.fields, available.name).size()),
                       QString::number(ids.size()));
                Expect("enough in " + available.request, ids.size() > 1 ? "yes" : "no", "yes");
                free[field.tags[2]] = ids;
                if (available.request.startsWith("Avl"))
                    ExpectOffered(available.request, reply);
            }
    QMap<QString, QStringList> in;
    QMap<QString, QStringList> out;
    for (auto each = free.begin(); each != free.end(); ++each)
        in[each.key()] = each->mid(0, 1);
    const wire::Reply added = Put(true, first, {}, in);
    ExpectStatus("an add", added, 0);
    const QString id = wire::FirstValue(added.fields, m_table.record);
    const QString key = Key(first, id);
    Expect("an add's reply names the key", key.isEmpty() ? "no" : "yes", "yes");
    if (!m_table.finds.isEmpty())
        Expect("what finds a new record", wire::FirstValue(added.fields, m_table.finds),
               first[m_table.finds]);
    Stored("after an add", key, first, in);
    History(m_table.add);

    Duplicates();
    WrongValues(key);
    Stored("after refusals", key, first, in);

    out = in;
    in.clear();
    for (auto each = free.begin(); each != free.end(); ++each)
        in[each.key()] = each->mid(1, 1);
    ExpectStatus("an update", Put(false, second, key, in, out, first), 0);
    const QString newKey = Key(second, id);
    Stored("after an update", newKey, second, in);
    History(m_table.update);
    m_server->Restart();
    Stored("after a restart", newKey, second, in);

    for (const QString& request : {m_table.get, m_table.remove})
        if (!request.isEmpty())
            ExpectStatus(request + " of what is not there", Send(request, {{m_table.getKey, "987654"}}),
                         status::NotFound);
    ExpectStatus("an update of what is not there", Put(false, ValuesOf(3), "987654"), status::NotFound);
    if (m_table.remove.isEmpty())
        return;
    Put(false, second, newKey, {}, in); // what is attached might keep the record
    Refusals(newKey);
    ExpectStatus("a delete", Send(m_table.remove, {{m_table.getKey, newKey}}), 0);
    History(m_table.remove);
    Expect("a deleted record is listed",
           testing::ValuesOf(Send(m_table.list).fields, m_table.record).contains(newKey) ? "yes" : "no",
           "no");
}

void ServerDriver::Record() {
    const auto expectValues = [this](const QString& what, const Values& wanted) {
        const wire::Reply reply = Send(m_table.get, m_screen.listPuts);
        ExpectStatus("get " + what, reply, 0);
        for (auto each = wanted.begin(); each != wanted.end(); ++each) {
            const QStringList values = testing::ValuesOf(reply.fields, each.key());
            Expect(each.key() + " " + what, values.isEmpty() ? QString("(missing)") : values.first(),
                   each.value());
        }
    };
    if (!m_table.add.isEmpty()) {
        ExpectStatus("a second record", Put(true, ValuesOf(1)), status::DuplicateRecord);
        m_server->GetDatabase().Run("DELETE FROM " + m_table.stored);
        const wire::Reply none = Send(m_table.get);
        ExpectStatus("get before there is a record", none, 0);
        Expect("what says that there is a record", wire::FirstValue(none.fields, m_table.existsAs.value(0)),
               {});
        ExpectStatus("an add", Put(true, ValuesOf(3)), 0);
        expectValues("after an add", ValuesOf(3));
        History(m_table.add);
    }
    for (const int record : {1, 2}) {
        ExpectStatus("an update", Put(false, ValuesOf(record)), 0);
        expectValues("after an update", ValuesOf(record));
    }
    ExpectStatus("an update", Put(false, ValuesOf(1)), 0);
    WrongValues({});
    History(m_table.update);
    m_server->Restart();
    expectValues("after a restart", ValuesOf(1));
}

} // namespace sysadmin::exact
