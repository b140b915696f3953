#include "server/Library.h"
#include "server/OperatorPasswords.h"
#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

void FillSample(SampleWriter& sample) {
    const QHash<QString, QPair<QString, QString>> names{
        {"SYSADMIN", {"Administrator", "System"}},
        {"VIEWER", {"Okafor", "Ada"}},
        {"CIRC", {"Lindqvist", "Per"}},
        {"GUEST", {"Guest", "Sample"}},
    };
    const QString today = sample.GetLibrary().Now().date().toString(Qt::ISODate);
    for (const SampleOperator& account : SampleOperators()) {
        const qint64 row = sample.Add("operators", {{"operator_id", account.id},
                                                    {"last_name", names[account.id].first},
                                                    {"first_name", names[account.id].second},
                                                    {"never_expires", "Y"},
                                                    {"created_on", today},
                                                    {"modified_on", today},
                                                    {"modified_by", "SYSADMIN"}});
        sample.SetPassword(row, account.password);
    }
}

} // namespace

void RegisterOperators(Registry& registry) {
    registry.AddTable({
        .name = "operators",
        .columns =
            {
                {.name = "operator_id"},
                {.name = "last_name"},
                {.name = "first_name"},
                {.name = "middle_initial"},
                {.name = "password_hash", .secret = true},
                {.name = "password_changed_at"},
                {.name = "reset_at"}, // set by an administrator and not used yet
                {.name = "never_expires", .type = ColumnType::Flag},
                {.name = "restrict_change", .type = ColumnType::Flag},
                {.name = "expired", .type = ColumnType::Flag},
                {.name = "failed_count", .type = ColumnType::Whole, .fallback = "0"},
                {.name = "last_failure_at"},
                {.name = "locked_at"},
                {.name = "last_sign_on_at"},
                {.name = "created_on"},
                {.name = "modified_on"},
                {.name = "modified_by"},
                {.name = "sample_password", .type = ColumnType::Flag},
            },
        .uniqueTexts = {{.column = "operator_id"}},
    });
    registry.AddTable({
        .name = "password_history",
        .columns =
            {
                {.name = "operator_row",
                 .type = ColumnType::Reference,
                 .target = "operators",
                 .onRemoval = OnRemoval::RemoveToo},
                {.name = "password_hash", .secret = true},
                {.name = "replaced_at"},
            },
        .owner = "operator_row",
        .content = Content::Record,
    });
    registry.AddSample("operators", FillSample);
}

} // namespace sysadmin::server
