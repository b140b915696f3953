#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

void FillSample(SampleWriter& sample) {
    const QList<QPair<QString, QString>> types{
        {"AGT", "Subscription Agent"},
        {"AV", "Audiovisual Supplier"},
        {"BIND", "Bindery"},
        {"BOOK", "Bookseller"},
        {"ELEC", "Electronic Platform"},
        {"GIFT", "Gift and Exchange Partner"},
        {"MAP", "Map Dealer"},
        {"PUB", "Publisher"},
        {"SOC", "Learned Society"},
    };
    for (const auto& [code, name] : types)
        sample.Add("vendor_types", {{"code", code}, {"name", name}});

    struct Vendor {
        QString code;
        QString name;
        QString type; // no map dealer: one type can be deleted
    };
    const QList<Vendor> vendors{
        {"ALDERGATE", "Aldergate Booksellers", "BOOK"},
        {"AMBERLINE", "Amberline Audio and Film", "AV"},
        {"ANTIQ", "Corner House Antiquarian Books", "BOOK"},
        {"ARBORLEA", "Arborlea Press", "PUB"},
        {"BRACKEN", "Bracken and Daughters Bindery", "BIND"},
        {"CIVICSOC", "Society for Civic History", "SOC"},
        {"CLEARWELL", "Clearwell Subscription Services", "AGT"},
        {"DELTAVIEW", "Deltaview Streaming", "ELEC"},
        {"EASTGATE", "Eastgate Asian Books", "BOOK"},
        {"FERNHILL", "Fernhill University Press", "PUB"},
        {"FJORD", "Fjord Nordic Book Import", "BOOK"},
        {"GEOSOC", "Regional Geological Society", "SOC"},
        {"GIFTS", "Friends of the Library", "GIFT"},
        {"HARBOUR", "Harbour Street Books", "BOOK"},
        {"HELIOTROPE", "Heliotrope Journals Online", "ELEC"},
        {"IBERIA", "Librería Puerta del Sur", "BOOK"},
        {"LANTERN", "Lantern Scores and Parts", "PUB"},
        {"LINDENHOF", "Buchhandlung am Lindenhof", "BOOK"},
        {"MERIDIEN", "Librairie du Méridien", "BOOK"},
        {"NORTHWAY", "Northway Periodicals Agency", "AGT"},
        {"OPENSHELF", "Openshelf E-Books", "ELEC"},
        {"PARTNERS", "University Exchange Programme", "GIFT"},
        {"QUILL", "Quill and Thread Conservation Binding", "BIND"},
        {"SILVERREEL", "Silver Reel Educational Video", "AV"},
        {"TIDEMARK", "Tidemark Science Publishing", "PUB"},
        {"WESTERLY", "Westerly Standing Orders", "AGT"},
    };
    for (const Vendor& vendor : vendors) {
        Row row{{"code", vendor.code}, {"name", vendor.name}};
        if (const auto type = sample.Find("vendor_types", "code", vendor.type))
            row.insert("vendor_type_id", *type);
        sample.Add("vendors", row);
    }
}

} // namespace

void RegisterVendorTypes(Registry& registry) {
    registry.AddSubject({
        .table = "vendor_types",
        .area = Area::Acquisitions,
        .requests = {.list = "LstVenTp", .add = "AddVenTp", .update = "UpdVenTp", .remove = "DelVenTp"},
        .fields =
            {
                Field::Text("Cd", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                Field::Text("Nm", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
            },
        .key = "Cd",
        .originalKey = "OCd",
        .usedBy = {{"vendors", "vendor_type_id", status::InUse}},
    });
    // The vendors themselves are kept by the acquisitions client.
    registry.AddTable({.name = "vendors",
                       .columns = {{.name = "code"}, {.name = "name"}},
                       .uniqueTexts = {{.column = "code"}}});
    registry.AddSample("vendor types", FillSample);
}

} // namespace sysadmin::server
