#include "server/SubjectRequests.h"
#include "server/subjects/ProfileMembers.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

/// What one of the modules has of its own.
struct Module {
    QString table;
    QString word;             ///< subject word of its requests
    QString availableRequest; ///< empty: the master profiles' serves it too
    QStringList rights;
    bool hasLocations = true;
};

const QList<Module>& Modules() {
    static const QList<Module> modules{
        {"cataloging_profiles", "CaPrf", "AvlCaPrf", {"VwBR",   "AddBR", "UpdBR",  "DelBR", "VwHR",   "AddHR",
                                                      "UpdHR",  "DelHR", "GlHR",   "VwIR",  "AddIR",  "UpdIR",
                                                      "DelIR",  "VwAR",  "AddAR",  "UpdAR", "DelAR",  "VwMBT",
                                                      "AddMBT", "VwMHT", "AddMHT", "VwMAT", "AddMAT", "UT",
                                                      "UTP",    "BEO",   "MEO",    "AEO",   "BOL",    "BOC",
                                                      "HIO"}},
        {"circulation_profiles", "CrPrf", "", {"CgRen", "Dschg", "ARHR", "AIRc",    "AFFR",  "AcPay",
                                               "MFFR",  "APtR",  "PP",   "CDD",     "DsBdt", "PSSM",
                                               "RRHRQ", "SISt",  "DIRc", "DHRc",    "DBRc",  "FFFR",
                                               "CrsRs", "VwPtR", "RPC",  "DPtR",    "VPCH",  "ESP",
                                               "RV",    "RM",    "RC",   "PkAndSn", "MMRP",  "HIO"}},
        {"acq_serials_profiles",
         "ASPrf",
         "AvlASPrf",
         {"VwPO",  "APO",      "AppPO",  "PDl",   "ODl",   "Recv",  "VwPC", "OcWrn", "OeWrn", "VwInv", "AInv",
          "ApInv", "IDl",      "CM",     "VwVnd", "AVnd",  "VDl",   "VLF",  "ALF",   "LDl",   "CFA",   "FCls",
          "VwSCI", "SCI",      "SCClm",  "AClm",  "VSPtn", "ASPtn", "DSC",  "VI",    "AI",    "DI",    "CLIB",
          "HIO",   "BVwVolIs", "BEdVol", "BEdIs", "BPrnt", "EI",    "EO",   "EM"}},
        {"reporting_profiles",
         "RPrf",
         "AvlRpOp",
         {"RepAcqSer", "RepCallSl", "RepCat", "RepCatOpac", "RepLocUb", "RepMedSched", "RepRemStrg",
          "RepSysAdm", "RepDbMod"},
         false},
        {"data_change_profiles",
         "GDCPrf",
         "AvlGDCPrf",
         {"ViewRSB", "PreRSB",  "AddRSB",  "UpdRSB",   "DelRSB", "DelRRSB", "DataCB", "ScanB",  "IdxOB",
          "HistB",   "LogsB",   "FilesB",  "ViewRSA",  "PreRSA", "AddRSA",  "UpdRSA", "DelRSA", "DelRRSA",
          "DataCA",  "ScanA",   "HistA",   "LogsA",    "FilesA", "ViewRSM", "PreRSM", "AddRSM", "UpdRSM",
          "DelRSM",  "DelRRSM", "DataCM",  "ScanM",    "HistM",  "LogsM",   "FilesM", "ViewSR", "AddSR",
          "UpdSR",   "DelSR",   "ViewDCR", "AddDCR",   "UpdDCR", "DelDCR",  "LoadAL", "HistAL", "LogsAL",
          "FilesAL", "KillDC",  "KillS",   "KillIdxO", "KillAL"}},
    };
    return modules;
}

QString ColumnOf(const QString& tag) {
    return "right_" + tag.toLower();
}

/// A pair of lists of a circulation profile that names records of a fixed table.
Membership NamedList(const QString& what, const QString& memberTable, const QString& availableId,
                     const QString& availableName, const QString& selectedId, const QString& selectedName,
                     const QString& state) {
    return {.table = "circulation_profile_" + what,
            .ownerColumn = "profile_id",
            .memberTable = memberTable,
            .memberColumn = "member_id",
            .availableId = availableId,
            .availableName = availableName,
            .selectedId = selectedId,
            .selectedName = selectedName,
            .state = state,
            .offered = false};
}

const Membership& ItemBlocks() {
    static const Membership blocks = NamedList("item_blocks", "item_blocks", "AvlItmBlkID", "AvlItmBlkNm",
                                               "SelItmBlkID", "SelItmBlkNm", "IBSt");
    return blocks;
}

const Membership& PatronBlocks() {
    static const Membership blocks = NamedList("patron_blocks", "patron_blocks", "AvlPatBlkID", "AvlPatBlkNm",
                                               "SelPatBlkID", "SelPatBlkNm", "PBSt");
    return blocks;
}

/// The kinds of patron identification numbers that the profile's operators may see.
const Membership& PatronIds() {
    static const Membership ids =
        NamedList("patron_ids", "patron_id_kinds", "API", "APN", "SPI", "SPN", "PSt");
    return ids;
}

/// A profile that is being entered has nothing attached yet: all of it is available.
Answer GetCirculationLists(Context& context, const wire::Fields&) {
    Answer answer;
    for (const Membership& list : {ItemBlocks(), PatronBlocks(), PatronIds()})
        PutAvailable(context, list, {}, answer.fields);
    return answer;
}

Answer UpdatePatronIds(Context& context, const wire::Fields& request) {
    bool isNumber = false;
    const qint64 profile = wire::FirstValue(request, "ID").toLongLong(&isNumber);
    if (!isNumber || !context.records.Find("circulation_profiles", profile))
        return {status::NotFound};
    return {ApplyMembers(context, PatronIds(), profile, request)};
}

void DeclareCirculationLists(Registry& registry) {
    for (const char* table : {"item_blocks", "patron_blocks", "patron_id_kinds"})
        registry.AddTable(
            {.name = table, .columns = {{.name = "name"}}, .uniqueTexts = {{.column = "name"}}});
    registry.AddRead("GetCrBlocks", Area::Security, GetCirculationLists);
    registry.AddChange("UpdPINs", Area::Security, UpdatePatronIds);
}

} // namespace

void RegisterModuleProfiles(Registry& registry) {
    DeclareCirculationLists(registry);
    for (const Module& module : Modules()) {
        QList<SubjectField> fields{
            SubjectField::Text("Nm", "name", TextLength).Required().Unique(status::DuplicateName).InList()};
        for (const QString& tag : module.rights)
            fields << SubjectField::Flag(tag, ColumnOf(tag));
        if (module.word == "CrPrf")
            fields << SubjectField::Flag("AllLoc", "all_locations");
        if (module.word == "RPrf")
            fields << SubjectField::Whole("RepPrfLevId", "level", 1, 3).Default("1");
        Subject subject{
            .table = module.table,
            .area = Area::Security,
            .requests = {.list = "Lst" + module.word,
                         .get = "Get" + module.word,
                         .add = "Add" + module.word,
                         .update = "Upd" + module.word,
                         .remove = "Del" + module.word,
                         .available = module.availableRequest},
            .fields = fields,
            .memberships = {ProfileOperators(module.table + "_operators")},
            .addReply = {"ID", "Nm"},
        };
        if (module.hasLocations)
            subject.memberships << ProfileLocations(module.table + "_locations");
        if (module.word == "CrPrf")
            subject.memberships << ItemBlocks() << PatronBlocks() << PatronIds();
        registry.AddSubject(subject);
    }
}

} // namespace sysadmin::server
