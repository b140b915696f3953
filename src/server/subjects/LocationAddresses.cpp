#include "server/subjects/LocationAddresses.h"

#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/PostalFields.h"

#include <algorithm>
#include <optional>
#include <variant>

namespace sysadmin::server {

namespace {

constexpr int MostAddresses = 6;
constexpr int PhoneLength = 40;

/// The fields of an address, in the order in which they travel. No request of its own serves them.
const Subject& Addresses() {
    static const Subject addresses{
        .table = "location_addresses",
        .fields = QList<Field>{Field::Text("AdrNm", "contact", NameLength)} + PostalFields() +
                  QList<Field>{
                      Field::Flag("Ship", "is_ship_to"),
                      Field::Flag("Bill", "is_bill_to"),
                      Field::Flag("Strt", "is_street"),
                      Field::Flag("Cmp", "is_campus"),
                      Field::Flag("CDsk", "is_circ_desk"),
                      Field::Flag("Other", "is_other"),
                  },
    };
    return addresses;
}

struct Phone {
    QString number;
    QString type;
    QString action;
    QString addressId;
};

/// An address of a request with the phones that follow it.
struct AddressChange {
    QString action;
    wire::Fields fields;
    QList<Phone> phones;
};

QList<AddressChange> ReadChanges(const wire::Fields& request) {
    QList<AddressChange> changes;
    for (const wire::Field& field : request) {
        if (field.tag == u"AdrRq") {
            changes.append({.action = field.value, .fields = {}, .phones = {}});
            continue;
        }
        if (changes.isEmpty())
            continue;
        AddressChange& change = changes.last();
        if (field.tag == u"PhNm")
            change.phones.append({.number = field.value, .type = {}, .action = {}, .addressId = {}});
        else if (!change.phones.isEmpty() && field.tag == u"PhTp")
            change.phones.last().type = field.value;
        else if (!change.phones.isEmpty() && field.tag == u"PhRq")
            change.phones.last().action = field.value;
        else if (!change.phones.isEmpty() && field.tag == u"PhAID")
            change.phones.last().addressId = field.value;
        else
            change.fields.append(field);
    }
    return changes;
}

/// The id of an address of the location.
std::optional<qint64> FindAddress(Context& context, qint64 location, const QString& id) {
    bool isNumber = false;
    const qint64 number = id.toLongLong(&isNumber);
    const auto row = isNumber ? context.records.Find("location_addresses", number) : std::nullopt;
    if (!row || row->value("location_id").toLongLong() != location)
        return std::nullopt;
    return number;
}

/// The row of a phone; none when it is not in order.
std::optional<Row> RowOfPhone(Context& context, const Phone& phone) {
    const QString number = phone.number.trimmed();
    if (number.isEmpty() || number.size() > PhoneLength || number.contains(QChar(0)))
        return std::nullopt;
    Row row{{"number", number}, {"phone_type_id", QVariant()}};
    if (phone.type.isEmpty())
        return row;
    bool isNumber = false;
    const qint64 type = phone.type.toLongLong(&isNumber);
    if (!isNumber || !context.records.Find("phone_types", type))
        return std::nullopt;
    row["phone_type_id"] = type;
    return row;
}

/// Makes these the phones of the address. Phones that were there already keep their ids.
void ReplacePhones(Context& context, qint64 address, QList<Row> wanted) {
    QList<qint64> spare;
    const auto present = context.database.FirstColumn(
        "SELECT id FROM location_phones WHERE address_id=? ORDER BY id", {address});
    for (const QVariant& id : present) {
        const Row row = *context.records.Find("location_phones", id.toLongLong());
        const auto same = std::find_if(wanted.begin(), wanted.end(), [&](const Row& other) {
            return other["number"] == row["number"] && other["phone_type_id"] == row["phone_type_id"];
        });
        if (same == wanted.end())
            spare.append(id.toLongLong());
        else
            wanted.erase(same);
    }
    for (Row& row : wanted) {
        if (!spare.isEmpty()) {
            context.records.Update("location_phones", spare.takeFirst(), row);
            continue;
        }
        row.insert("address_id", address);
        context.records.Insert("location_phones", row);
    }
    for (const qint64 id : spare)
        context.records.Remove("location_phones", id);
}

/// Adds or changes the address; its id, or the refusal.
std::variant<qint64, qint16> KeepAddress(Context& context, const AddressChange& change, qint64 location) {
    const bool isNew = change.action == u"1";
    Row row;
    if (const qint16 refused = ReadFields(context, Addresses(), change.fields, isNew, row))
        return refused;
    if (isNew) {
        if (context.records.Count("location_addresses", "location_id", location) >= MostAddresses)
            return status::ColumnError;
        row.insert("location_id", location);
        return context.records.Insert("location_addresses", row);
    }
    const auto id = FindAddress(context, location, wire::FirstValue(change.fields, "AdrID"));
    if (!id)
        return status::NotFound;
    context.records.Update("location_addresses", *id, row);
    return *id;
}

} // namespace

void DeclareLocationAddresses(Registry& registry) {
    Table addresses{.name = Addresses().table,
                    .columns = {{.name = "location_id",
                                 .type = ColumnType::Reference,
                                 .target = "locations",
                                 .onRemoval = OnRemoval::RemoveToo}}};
    addresses.owner = "location_id";
    for (const Field& field : Addresses().fields)
        addresses.columns << field.StoredAs();
    registry.AddTable(addresses);
    registry.AddTable({.name = "phone_types",
                       .columns = {{.name = "name"}},
                       .uniqueTexts = {{.column = "name"}},
                       .ordered = true});
    registry.AddTable(
        {.name = "location_phones",
         .columns = {{.name = "address_id",
                      .type = ColumnType::Reference,
                      .target = "location_addresses",
                      .onRemoval = OnRemoval::RemoveToo},
                     {.name = "phone_type_id", .type = ColumnType::Reference, .target = "phone_types"},
                     {.name = "number"}},
         .owner = "address_id"});
}

void PutAddresses(Context& context, qint64 location, wire::Fields& reply) {
    QStringList columns{"id"};
    for (const Field& field : Addresses().fields)
        columns << field.column;
    context.database.Each("SELECT " + columns.join(", ") +
                              " FROM location_addresses WHERE location_id=? ORDER BY id",
                          {location}, [&](const ResultRow& row) {
                              Put(reply, "AdrID", row.value(0).toString());
                              for (qsizetype i = 1; i < columns.size(); ++i)
                                  Put(reply, Addresses().fields[i - 1].tag, row.value(int(i)).toString());
                          });
    context.database.Each("SELECT p.address_id, p.phone_type_id, p.number, p.id FROM location_phones p JOIN "
                          "location_addresses a ON a.id=p.address_id WHERE a.location_id=? ORDER BY p.id",
                          {location}, [&](const ResultRow& row) {
                              int column = 0;
                              for (const char* tag : {"PhAID", "PhTp", "PhNm", "PhID"})
                                  Put(reply, tag, row.value(column++).toString());
                          });
}

void PutPhoneTypes(Context& context, wire::Fields& reply) {
    context.database.Each("SELECT id, name FROM phone_types ORDER BY id", {}, [&](const ResultRow& row) {
        Put(reply, "PTps", row.value(0).toString());
        Put(reply, "PDsc", row.value(1).toString());
    });
}

qint16 ApplyAddresses(Context& context, const wire::Fields& request, qint64 location) {
    QMap<qint64, QList<Row>> phonesOf;
    QList<QPair<qint64, Phone>> phones; // with the address that they follow
    for (const AddressChange& change : ReadChanges(request)) {
        if (change.action == u"3") {
            const auto id = FindAddress(context, location, wire::FirstValue(change.fields, "AdrID"));
            if (!id)
                return status::NotFound;
            context.records.Remove("location_addresses", *id);
            continue;
        }
        if (change.action != u"1" && change.action != u"2")
            return status::ColumnError;
        const auto stored = KeepAddress(context, change, location);
        if (const qint16* refused = std::get_if<qint16>(&stored))
            return *refused;
        const qint64 id = std::get<qint64>(stored);
        phonesOf.insert(id, {});
        for (const Phone& phone : change.phones)
            phones.append({id, phone});
    }
    for (const auto& [followed, phone] : phones) {
        const qint64 address = phone.addressId.isEmpty() ? followed : phone.addressId.toLongLong();
        if (!phonesOf.contains(address) || !QStringList{"1", "2", "3"}.contains(phone.action))
            return status::ColumnError;
        if (phone.action == u"3")
            continue;
        const auto row = RowOfPhone(context, phone);
        if (!row)
            return status::ColumnError;
        phonesOf[address].append(*row);
    }
    for (auto address = phonesOf.begin(); address != phonesOf.end(); ++address)
        ReplacePhones(context, address.key(), *address);
    return status::Ok;
}

} // namespace sysadmin::server
