#include "server/Rights.h"

#include "server/store/Database.h"

#include <algorithm>

namespace sysadmin::server {

const QList<MasterRight>& MasterRights() {
    static const QList<MasterRight> rights{
        {"Sec", "security_edit"},
        {"SecV", "security_view"},
        {"ChgPwd", "change_password"},
        {"SysDf", "system_edit"},
        {"SysDfV", "system_view"},
        {"ASPG", "acquisitions_edit"},
        {"ASPGV", "acquisitions_view"},
        {"CatPG", "cataloging_edit"},
        {"CatPGV", "cataloging_view"},
        {"CrcPG", "circulation_edit"},
        {"CrcPGV", "circulation_view"},
        {"CrCnv", "conversion_edit"},
        {"CrCnvV", "conversion_view"},
        {"MSPG", "media_edit"},
        {"CluCreate", "cluster_create"},
        {"CluDelete", "cluster_delete"},
        {"CluEdit", "cluster_edit"},
        {"CluViewOnly", "cluster_view_only"},
        {"EditPatGrp", "patron_groups_edit"},
        {"PatGrpV", "patron_groups_view"},
    };
    return rights;
}

Rights Rights::Of(Database& database, qint64 operatorRow) {
    static const QString sql = [] {
        QStringList columns;
        for (const MasterRight& right : MasterRights())
            columns << QString("MAX(p." + right.column + ')'); // "Y" is greater than "N"
        return "SELECT " + columns.join(", ") +
               " FROM master_profile_operators m JOIN master_profiles p ON p.id=m.profile_id WHERE "
               "m.operator_row=?";
    }();
    Rights rights;
    if (const auto row = database.FirstRow(sql, {operatorRow}))
        for (qsizetype i = 0; i < row->size(); ++i)
            rights.m_held |= quint64((*row)[i].toString() == "Y") << i;
    return rights;
}

bool Rights::Has(const QString& tag) const {
    const QList<MasterRight>& all = MasterRights();
    const auto right = std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.tag == tag; });
    return right != all.end() && (m_held >> (right - all.begin()) & 1);
}

bool Rights::MayEdit(Area area) const {
    return area == Area::AnyOperator || Has(wire::RightsOf(area).edit);
}

bool Rights::MayView(Area area) const {
    return MayEdit(area) || Has(wire::RightsOf(area).view);
}

} // namespace sysadmin::server
