#pragma once

#include "circulation/PolicySettings.h"

#include <memory>
#include <vector>

namespace sysadmin {

/// "Patron Rules": what a policy group allows the patrons of one patron group.
class PatronRulesForm : public SettingsForm {
public:
    PatronRulesForm();
    Layout Draw() override;

private:
    template <class Kind, class... More>
    Kind& Add(const FieldSpec& spec, const More&... more);
    void AddFlags(std::initializer_list<std::pair<const char*, const char*>> tagsAndCaptions);
    void AddLimits(std::initializer_list<struct PatronLimit> limits);

    std::vector<std::unique_ptr<Field>> m_owned;
};

/// Asks for the rules in "frmCirculation_PolDefPatronSettings".
RowAsker AskPatronRules(const QList<GridColumn>& columns, std::shared_ptr<PatronRulesForm> form);

} // namespace sysadmin
