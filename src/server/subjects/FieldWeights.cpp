#include "wire/FieldWeights.h"

#include "server/store/Database.h"
#include "server/subjects/FieldWeights.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/SearchIndexes.h"

#include <algorithm>

namespace sysadmin::server {

namespace weights = wire::weights;
namespace indexes = wire::indexes;
using indexes::Family;

namespace {

const QString Weightings = "index_weightings";

/// Those of the families whose indexes are made of words.
QList<IndexFamily> KeywordFamilies() {
    QList<IndexFamily> families;
    for (const IndexFamily& family : IndexFamilies())
        if (family.family == Family::Keyword || family.family == Family::HoldingsKeyword)
            families << family;
    return families;
}

/// The keyword index of a code: its table and id.
std::optional<RecordName> FindIndex(Context& context, const QString& code) {
    for (const IndexFamily& family : KeywordFamilies())
        if (const auto id = context.records.IdOfText(family.table, "code", code))
            return RecordName{family.table, *id};
    return std::nullopt;
}

/// No place twice, and something that counts.
bool AreWeightsInOrder(const QList<Row>& rows) {
    QSet<QPair<QString, QString>> seen;
    bool counts = false;
    for (const Row& row : rows) {
        QString subfields = row["subfields"].toString();
        std::sort(subfields.begin(), subfields.end());
        seen.insert({row["field"].toString(), subfields});
        counts = counts || row["weight"].toInt() > 0;
    }
    return counts && seen.size() == rows.size();
}

Children Weights() {
    return {.table = "index_weights",
            .owner = "weighting_id",
            .fields = {SubjectField::Text("WF", "field", 3).Required().Checked(indexes::IsFieldPattern),
                       SubjectField::Text("WS", "subfields", indexes::SubfieldsLength)
                           .Checked(indexes::AreSubfields),
                       SubjectField::Whole("W", "weight", 0, weights::MostWeight).Required()},
            .ordered = true,
            .check = AreWeightsInOrder};
}

/// The code is that of a keyword index, as it is written there; an index has its weights for good.
qint16 CheckWeighting(Context& context, const wire::Fields&, const Row& before, Row& after) {
    const auto index = FindIndex(context, after["code"].toString());
    if (!index)
        return status::ColumnError;
    after["code"] = context.records.Find(index->table, index->id)->value("code");
    return before.isEmpty() || Fold(before["code"].toString()) == Fold(after["code"].toString())
               ? status::Ok
               : status::ColumnError;
}

QList<weights::WordField> WordFieldsOf(Context& context, const RecordName& index) {
    QList<weights::WordField> fields;
    context.database.Each(
        "SELECT field, include_subfields, exclude_subfields FROM " + index.table +
            "_fields WHERE index_id=? ORDER BY id",
        {index.id}, [&](const ResultRow& row) {
            fields.append({row.value(0).toString(), row.value(1).toString(), row.value(2).toString()});
        });
    return fields;
}

/// Every weight is one of words that the index takes.
qint16 CheckWeights(Context& context, const wire::Fields&, qint64 id, bool) {
    const QString code = context.records.Find(Weightings, id)->value("code").toString();
    const auto index = FindIndex(context, code);
    const QList<weights::WordField> fields = WordFieldsOf(context, *index);
    bool areTaken = true;
    context.database.Each(
        "SELECT field, subfields FROM index_weights WHERE weighting_id=?", {id}, [&](const ResultRow& row) {
            const weights::Place place{row.value(0).toString(), row.value(1).toString()};
            areTaken =
                areTaken && std::any_of(fields.begin(), fields.end(), [&](const weights::WordField& field) {
                    return weights::Takes(field, place);
                });
        });
    return areTaken ? status::Ok : status::ColumnError;
}

/// "AvlFldWt": the keyword indexes with the fields that they take and the weights that they have.
Answer ListWeightedIndexes(Context& context, const wire::Fields&) {
    Answer answer;
    for (const IndexFamily& family : KeywordFamilies())
        context.database.Each("SELECT id, code, name FROM " + family.table + " ORDER BY code", {},
                              [&](const ResultRow& row) {
                                  Put(answer.fields, "WC", row.value(1).toString());
                                  Put(answer.fields, "WN", row.value(2).toString());
                                  for (const weights::WordField& field :
                                       WordFieldsOf(context, {family.table, row.value(0).toLongLong()})) {
                                      Put(answer.fields, "KF", field.field);
                                      Put(answer.fields, "KSI", field.include);
                                      Put(answer.fields, "KSE", field.exclude);
                                  }
                                  AddWeightsOf(context, row.value(1).toString(), answer.fields);
                              });
    return answer;
}

} // namespace

void AddWeightsOf(Context& context, const QString& index, ReplyFields& reply) {
    if (const auto weighting = context.records.IdOfText(Weightings, "code", index))
        PutChildren(context, Weights(), *weighting, reply);
}

void RegisterFieldWeights(Registry& registry) {
    registry.AddSubject({
        .table = Weightings,
        .requests = {.list = "LstFldWt",
                     .get = "GetFldWt",
                     .add = "AddFldWt",
                     .update = "UpdFldWt",
                     .remove = "DelFldWt"},
        .fields = {SubjectField::Text("Cd", "code", indexes::CodeLength)
                       .Required()
                       .Unique(status::DuplicateCode)
                       .InList()},
        .key = "Cd",
        .children = {Weights()},
        .checkPut = CheckWeighting,
        .afterPut = CheckWeights,
    });
    registry.AddRead("AvlFldWt", Area::System, ListWeightedIndexes);
}

} // namespace sysadmin::server
