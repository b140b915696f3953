#include "server/subjects/Registrations.h"

namespace sysadmin::server {

void RegisterOperators(Registry& registry) {
    registry.AddTable({
        .name = "operators",
        .columns =
            {
                {.name = "operator_id", .rule = {.isSet = true, .limit = OperatorIdLength, .required = true}},
                {.name = "last_name", .rule = {.isSet = true, .limit = OperatorNameLength}},
                {.name = "first_name", .rule = {.isSet = true, .limit = OperatorNameLength}},
                {.name = "middle_initial", .rule = {.isSet = true, .limit = 1}},
                {.name = "password_hash", .secret = true},
                {.name = "password_changed_at", .bookkeeping = true},
                {.name = "reset_at", .bookkeeping = true}, // set by an administrator and not used yet
                {.name = "never_expires", .type = ColumnType::Flag},
                {.name = "restrict_change", .type = ColumnType::Flag},
                {.name = "expired", .type = ColumnType::Flag, .bookkeeping = true},
                {.name = "failed_count", .type = ColumnType::Whole, .fallback = "0", .bookkeeping = true},
                {.name = "last_failure_at", .bookkeeping = true},
                {.name = "locked_at", .bookkeeping = true},
                {.name = "last_sign_on_at", .bookkeeping = true},
                {.name = "created_on", .bookkeeping = true},
                {.name = "modified_on", .bookkeeping = true},
                {.name = "modified_by", .bookkeeping = true},
                {.name = "sample_password", .type = ColumnType::Flag, .bookkeeping = true},
                {.name = "published_password", .type = ColumnType::Flag, .bookkeeping = true},
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
}

} // namespace sysadmin::server
