#include "circulation/frmCirculation_PolicyMatrixRecordSettingsCopy.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "wire/Status.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace sysadmin {

namespace {

QList<CheckedItem> ItemsOf(const QList<MatrixChoices::Choice>& choices) {
    QList<CheckedItem> items{{{}, Form::tr("  (all)")}};
    for (const MatrixChoices::Choice& choice : choices)
        items.append({choice.id, choice.name});
    return items;
}

bool AllChecked(const CheckedField& list) {
    const QList<CheckedItem>& items = list.Items();
    return items.size() > 1 &&
           std::all_of(items.begin() + 1, items.end(), [](const CheckedItem& item) { return item.checked; });
}

} // namespace

MatrixCopyForm::MatrixCopyForm(const Application& application, const MatrixSettings& settings,
                               const MatrixChoices& choices, MatrixKind kind)
    : MatrixForm(application, settings)
    , vsfPatronGroups(*this, {.name = "vsfPatronGroups", .accessible = tr("Patron Group")})
    , vsfItemTypes(*this, {.name = "vsfItemTypes", .accessible = tr("Item Type")})
    , m_choices(choices)
    , m_kind(kind) {
    Clear();
    vsfPatronGroups.SetStoredItems(ItemsOf(choices.patronGroups));
    vsfItemTypes.SetStoredItems(ItemsOf(choices.itemTypes));
    SetShortLoan(kind == MatrixKind::ShortLoan);
    connect(this, &Form::Edited, this, [this](const Field* field) {
        for (CheckedField* list : {&vsfPatronGroups, &vsfItemTypes})
            if (field == list && !m_following)
                FollowList(*list);
    });
}

// The first entry stands for all the others.
void MatrixCopyForm::FollowList(CheckedField& list) {
    const QScopedValueRollback following(m_following, true);
    const bool all = list.Items().value(0).checked;
    if (all != m_all.value(&list))
        for (qsizetype i = 1; i < list.Items().size(); ++i)
            list.SetChecked(i, all);
    list.SetChecked(0, AllChecked(list));
    m_all[&list] = list.Items().value(0).checked;
    if (&list == &vsfItemTypes && !MixesKinds())
        SetShortLoan(HasChosen(true) || (m_kind == MatrixKind::ShortLoan && !HasChosen(false)));
}

void MatrixCopyForm::Choose(const QList<MatrixEntry>& pairs) {
    for (const MatrixEntry& pair : pairs) {
        const auto check = [](CheckedField& list, const QString& id) {
            for (qsizetype i = 1; i < list.Items().size(); ++i)
                if (list.Items()[i].id == id)
                    list.SetChecked(i, true);
        };
        check(vsfPatronGroups, pair.patronGroup);
        check(vsfItemTypes, pair.itemType);
    }
}

QStringList MatrixCopyForm::Ids(const CheckedField& list) {
    QStringList ids;
    for (const CheckedItem& item : list.Items())
        if (item.checked && !item.id.isEmpty())
            ids.append(item.id);
    return ids;
}

bool MatrixCopyForm::HasChosen(bool isShortLoan) const {
    const QStringList chosen = Ids(vsfItemTypes);
    return std::any_of(m_choices.itemTypes.begin(), m_choices.itemTypes.end(),
                       [&](const MatrixChoices::Choice& type) {
                           return type.isShortLoan == isShortLoan && chosen.contains(type.id);
                       });
}

bool MatrixCopyForm::MixesKinds() const {
    return HasChosen(true) && HasChosen(false);
}

frmCirculation_PolicyMatrixRecordSettingsCopy::frmCirculation_PolicyMatrixRecordSettingsCopy(
    Application& application, MatrixCopyForm& rule, const MatrixGroup& group, bool isCopy, QWidget* parent)
    : MatrixDialog(
          application, rule, group,
          {.name = "frmCirculation_PolicyMatrixRecordSettingsCopy",
           .title = isCopy ? tr("Copy - Circulation Policy Matrix Record Settings")
                           : tr("Add - Circulation Policy Matrix Record Settings"),
           .helpContext = 50532,
           .okName = "cmdSave",
           .focus = "vsfPatronGroups",
           .okCaption = tr("&Save"),
           .check = [&rule]() -> QString {
               if (rule.MixesKinds())
                   return tr("Short loan item types may not be mixed with regular item types.");
               return MatrixCopyForm::Ids(rule.vsfPatronGroups).isEmpty() ||
                              MatrixCopyForm::Ids(rule.vsfItemTypes).isEmpty()
                          ? tr("Please choose at least one patron group and one item type.")
                          : QString();
           }},
          rule.Pages({Page(tr("&Patron Groups and Item Types"),
                           {Beside({Frame("fraPatronGroups", tr("Patron Group"), {rule.vsfPatronGroups}),
                                    Frame("fraItemTypes", tr("Item Type"), {rule.vsfItemTypes})})})}),
          parent)
    , m_copy(rule) {}

void frmCirculation_PolicyMatrixRecordSettingsCopy::PutAll(bool overwrites) {
    RequestChannel& channel = m_application.channel;
    channel.PutField("CID", m_group.clusterId);
    channel.PutField("ID", m_group.id);
    for (const QString& patronGroup : MatrixCopyForm::Ids(m_copy.vsfPatronGroups))
        for (const QString& itemType : MatrixCopyForm::Ids(m_copy.vsfItemTypes)) {
            channel.PutField("MS", "1");
            channel.PutField("MP", patronGroup);
            channel.PutField("MII", itemType);
        }
    for (const ValueField* field : m_rule.InOrder())
        field->Put(channel);
    if (overwrites)
        channel.PutField("OV", "Y");
}

bool frmCirculation_PolicyMatrixRecordSettingsCopy::Save() {
    if (!ConfirmZeros())
        return false;
    PutAll(false);
    const qint16 status = m_application.channel.SendRequest("AddMat");
    if (status == wire::status::MatrixEntriesExist) {
        if (!m_application.prompter.ShowBox(
                this, {.text = tr("Your selections include existing matrix records for this policy; do you "
                                  "wish to overwrite them?"),
                       .icon = Box::Icon::Question,
                       .buttons = Box::Buttons::YesNo,
                       .careful = true}))
            return false;
        PutAll(true);
        if (!Send("CopyMat", "Copy Policy Matrix Settings"))
            return false;
    } else if (status) {
        Report(status, "Save Circulation Policy Matrix Definition");
        return false;
    }
    Announce(tr("Saved the matrix of %1").arg(m_group.name));
    return true;
}

bool AddMatrixEntries(Application& application, QWidget* parent, const MatrixGroup& group, MatrixKind kind,
                      const QList<MatrixEntry>& chosen, const MatrixEntry& source) {
    const std::optional<MatrixChoices> choices = ReadMatrixChoices(application, group);
    if (!choices)
        return false;
    const MatrixSettings settings = AskMatrixSettings(application);
    MatrixCopyForm rule(application, settings, *choices, kind);
    if (!source.id.isEmpty() && !ReadMatrixRule(application, group, source, rule))
        return false;
    rule.Choose(chosen);
    frmCirculation_PolicyMatrixRecordSettingsCopy dialog(application, rule, group, !source.id.isEmpty(),
                                                         parent);
    return application.prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmCirculation_PolicyMatrixRecordSettingsCopy.cpp"
