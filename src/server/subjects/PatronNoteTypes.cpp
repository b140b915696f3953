#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {} // namespace

void RegisterPatronNoteTypes(Registry& registry) {
    registry.AddSubject({
        .table = "patron_note_types",
        .area = Area::Circulation,
        .requests = {.list = "LstPatNoteTp",
                     .add = "AddPatNoteTp",
                     .update = "UpdPatNoteTp",
                     .remove = "DelPatNoteTp"},
        .fields =
            {SubjectField::Text("D", "name", TextLength).Required().Unique(status::DuplicateName).InList()},
        .usages = {{"patron notes"}},
        .addReply = {"ID", "D"},
    });
}

} // namespace sysadmin::server
