#include "circulation/frmCirculation_PolicyMatrixRecordSettings.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/ConflictCheck.h"

namespace sysadmin {

frmCirculation_PolicyMatrixRecordSettings::frmCirculation_PolicyMatrixRecordSettings(Application& application,
                                                                                     MatrixForm& rule,
                                                                                     const MatrixGroup& group,
                                                                                     const MatrixEntry& entry,
                                                                                     QWidget* parent)
    : MatrixDialog(application, rule, group,
                   {.name = "frmCirculation_PolicyMatrixRecordSettings",
                    .title = tr("Circulation Policy Matrix Record Settings"),
                    .helpContext = 50531,
                    .okName = "cmdSave",
                    .focus = "chkChargeRenew",
                    .okCaption = tr("&Save"),
                    .readOnly = !group.mayEdit},
                   Below({Note(group.name + ": " + entry.Name()), rule.Pages()}), parent)
    , m_entry(entry) {}

qint16 frmCirculation_PolicyMatrixRecordSettings::SendRule() {
    RequestChannel& channel = m_application.channel;
    channel.PutField("CID", m_group.clusterId);
    channel.PutField("ID", m_group.id);
    channel.PutField("MI", m_entry.id);
    channel.PutField("MP", m_entry.patronGroup);
    channel.PutField("MII", m_entry.itemType);
    for (const ValueField* field : m_rule.InOrder())
        field->Put(channel);
    return channel.SendRequest("UpdMat");
}

bool frmCirculation_PolicyMatrixRecordSettings::Save() {
    if (!ConfirmZeros())
        return false;
    qint16 status = SendRule();
    while (const std::optional<Conflict> conflict =
               ConflictOf(m_application.channel, status, tr("Policy Matrix"))) {
        const ConflictAnswer answer =
            SettleSave(m_application, this, *conflict, m_rule, !conflict->removed,
                       [this] { return ReadMatrixRule(m_application, m_group, m_entry, m_rule); });
        if (answer == ConflictAnswer::BackToEditing)
            return false;
        if (answer == ConflictAnswer::KeepTheirs)
            return true;
        status = SendRule();
    }
    if (status) {
        Report(status, "Update Circulation Policy Matrix Information");
        return false;
    }
    Announce(tr("Saved %1").arg(m_entry.Name()));
    return true;
}

bool ModifyMatrixEntry(Application& application, QWidget* parent, const MatrixGroup& group,
                       const MatrixEntry& entry, MatrixKind kind) {
    const MatrixSettings settings = AskMatrixSettings(application);
    MatrixForm rule(application, settings);
    rule.SetShortLoan(kind == MatrixKind::ShortLoan);
    if (!ReadMatrixRule(application, group, entry, rule))
        return false;
    frmCirculation_PolicyMatrixRecordSettings dialog(application, rule, group, entry, parent);
    return application.prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmCirculation_PolicyMatrixRecordSettings.cpp"
