#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr int TextLength = 40;

void FillSample(SampleWriter& sample) {
    const QList<QPair<QString, int>> types{
        {"General", 5120},    {"Address", 874},        {"Barcode", 96}, {"Borrowing Privileges", 1310},
        {"Contact", 2048},    {"Disputed Fine", 447},  {"Email", 388},  {"Lost Card", 903},
        {"Pickup Proxy", 61}, {"Returned Mail", 1275}, {"Phone", 212},  {"Visiting Scholar", 0},
    };
    for (const auto& [name, notes] : types) {
        const qint64 id = sample.Add("patron_note_types", {{"name", name}});
        if (notes > 0)
            sample.Use("patron_note_types", "patron notes", id, notes);
    }
}

} // namespace

void RegisterPatronNoteTypes(Registry& registry) {
    registry.AddSubject({
        .table = "patron_note_types",
        .area = Area::Circulation,
        .requests = {.list = "LstPatNoteTp",
                     .add = "AddPatNoteTp",
                     .update = "UpdPatNoteTp",
                     .remove = "DelPatNoteTp"},
        .fields = {Field::Text("D", "name", TextLength).Required().Unique(status::DuplicateName).InList()},
        .usages = {{"patron notes"}},
        .addReply = {"ID", "D"},
    });
    registry.AddSample("patron note types", FillSample);
}

} // namespace sysadmin::server
