#include "circulation/frmCirculation_PolicyMatrixRecordMultiple.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/ConflictCheck.h"
#include "wire/Status.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace sysadmin {

namespace {

QStringList UnitsOf(MatrixForm& rule) {
    QStringList units{rule.cboLoanPeriod.Draft()};
    for (const ChoiceField* dependent : rule.DependentUnits())
        units.append(dependent->Draft());
    return units;
}

/// "a", "a and b", "a, b, and c".
QString Joined(const QStringList& names) {
    if (names.size() < 3)
        return names.join(Form::tr(" and "));
    return names.mid(0, names.size() - 1).join(", ") + Form::tr(", and ") + names.last();
}

} // namespace

frmCirculation_PolicyMatrixRecordMultiple::frmCirculation_PolicyMatrixRecordMultiple(
    Application& application, MatrixForm& rule, const MatrixGroup& group, const QList<MatrixEntry>& entries,
    QWidget* parent)
    : MatrixDialog(application, rule, group,
                   {.name = "frmCirculation_PolicyMatrixRecordMultiple",
                    .title = tr("Circulation Policy Matrix Record Settings"),
                    .helpContext = 50533,
                    .okName = "cmdSave",
                    .okCaption = tr("&Save"),
                    .several = true},
                   Below({Note((entries.size() == 1
                                    ? tr("%1: only checked fields are written to the selected entry.")
                                    : tr("%1: only checked fields are written to the %n selected entries.",
                                         nullptr, int(entries.size())))
                                   .arg(group.name)),
                          rule.Pages()}),
                   parent)
    , m_entries(entries)
    , m_units(UnitsOf(rule)) {
    // The rules have set the dependent units by the time that the edit of the loan unit is told.
    connect(&rule, &Form::Edited, this, [this](const Field* field) {
        if (m_following)
            return;
        if (field == &m_rule.cboLoanPeriod)
            FollowLoanUnit();
        else if (m_rule.cboLoanPeriod.Draft() == m_units.first())
            m_units = UnitsOf(m_rule);
    });
}

void frmCirculation_PolicyMatrixRecordMultiple::FollowLoanUnit() {
    const QScopedValueRollback following(m_following, true);
    const QList<ChoiceField*> dependents = m_rule.DependentUnits();
    const QStringList names{tr("Renewal Period Interval"), tr("Fine Interval"), tr("Recall Fine Interval")};
    QStringList changed;
    QList<ChoiceField*> followers;
    for (qsizetype i = 0; i < dependents.size(); ++i) {
        if (m_rule.UnitsFor(*dependents[i], m_rule.cboLoanPeriod.Draft()).isEmpty())
            continue;
        followers.append(dependents[i]);
        // What is not written yet differs from entry to entry.
        if (!dependents[i]->IsChosen() || dependents[i]->Draft() != m_units[i + 1])
            changed.append(names[i]);
    }
    const bool agreed =
        changed.isEmpty() ||
        m_application.prompter.ShowBox(this, {.text = tr("Loan Period Interval will be modified.  ") +
                                                      Joined(changed) + tr(" will be updated to match.  OK?"),
                                              .icon = Box::Icon::Question,
                                              .buttons = Box::Buttons::OkCancel});
    if (agreed) {
        for (ChoiceField* follower : followers)
            follower->SetChosen(true);
    } else {
        m_rule.cboLoanPeriod.SetDraft(m_units.first());
        for (qsizetype i = 0; i < dependents.size(); ++i)
            dependents[i]->SetDraft(m_units[i + 1]);
    }
    m_units = UnitsOf(m_rule);
}

// A unit that is written without the others may not suit what an entry has: the server would refuse them all
// and not say which.
bool frmCirculation_PolicyMatrixRecordMultiple::UnitsSuit() {
    const QList<ChoiceField*> dependents = m_rule.DependentUnits();
    const ChoiceField& loanUnit = m_rule.cboLoanPeriod;
    const bool isAnyWritten = loanUnit.IsChosen() ||
                              std::any_of(dependents.begin(), dependents.end(),
                                          [](const ChoiceField* dependent) { return dependent->IsChosen(); });
    if (!isAnyWritten)
        return true;
    RequestChannel& channel = m_application.channel;
    channel.PutField("ID", m_group.id);
    channel.PutField("CID", m_group.clusterId);
    if (!Send("LstMatRule", "Edit Policy Matrix Definitions"))
        return false;
    const auto unitOf = [&](const ChoiceField& field) {
        return field.IsChosen() ? field.Draft() : channel.GetField(field.Tag());
    };
    QHash<QString, QString> names;
    for (const MatrixEntry& entry : m_entries)
        names.insert(entry.id, entry.Name());
    QStringList wrong;
    while (channel.NextRecord("MI")) {
        const QString name = names.value(channel.GetField("MI"));
        const bool suit =
            std::all_of(dependents.begin(), dependents.end(), [&](const ChoiceField* dependent) {
                const QList<PickItem> suitable = m_rule.UnitsFor(*dependent, unitOf(loanUnit));
                const QString unit = unitOf(*dependent);
                return suitable.isEmpty() ||
                       std::any_of(suitable.begin(), suitable.end(),
                                   [&](const PickItem& item) { return item.id == unit; });
            });
        if (!name.isEmpty() && !suit)
            wrong.append(name);
    }
    if (wrong.isEmpty())
        return true;
    constexpr int MostNamed = 10;
    const qsizetype more = wrong.size() - MostNamed;
    m_application.prompter.ShowBox(this,
                                   {.text = tr("The units do not suit the loan period of these entries:") +
                                            "\r\n\r\n" + wrong.mid(0, MostNamed).join("\r\n") +
                                            (more > 0 ? "\r\n" + tr("and %1 more").arg(more) : QString())});
    return false;
}

bool frmCirculation_PolicyMatrixRecordMultiple::Save() {
    if (!UnitsSuit() || !ConfirmZeros())
        return false;
    RequestChannel& channel = m_application.channel;
    channel.PutField("CID", m_group.clusterId);
    channel.PutField("ID", m_group.id);
    for (const MatrixEntry& entry : m_entries) {
        channel.PutField("MI", entry.id);
        channel.PutField("MP", entry.patronGroup);
        channel.PutField("MII", entry.itemType);
    }
    for (const ValueField* field : m_rule.InOrder())
        if (field->IsChosen() && field->IsUsable())
            field->Put(channel);
    const qint16 status = channel.SendRequest("UpdMulMat");
    if (status == wire::status::RecordChanged) {
        TellChanged();
        return false;
    }
    if (status) {
        Report(status, "Circ Policy Matrix Record Settings Multi Edit");
        return false;
    }
    Announce(m_entries.size() == 1 ? tr("Saved 1 entry")
                                   : tr("Saved %n entries", nullptr, int(m_entries.size())));
    return true;
}

// Whoever saves again after that means it: the entries count as seen.
void frmCirculation_PolicyMatrixRecordMultiple::TellChanged() {
    QHash<QString, QString> names;
    for (const MatrixEntry& entry : m_entries)
        names.insert(entry.id, entry.Name());
    const QString changed =
        ChangedByOthers(m_application.channel, "MI", [&](const QString& id) { return names.value(id, id); });
    m_application.prompter.ShowBox(
        this, {.text = tr("Nothing was saved.") + ' ' + changed + "\r\n\r\n" +
                       tr("Save again to write the checked fields to them all the same.")});
    m_application.channel.PutField("ID", m_group.id);
    m_application.channel.PutField("CID", m_group.clusterId);
    Send("LstMatPatronItem", "Edit Policy Matrix Definitions");
}

bool ModifyMatrixEntries(Application& application, QWidget* parent, const MatrixGroup& group,
                         const QList<MatrixEntry>& entries, MatrixKind kind) {
    const MatrixSettings settings = AskMatrixSettings(application);
    MatrixForm rule(application, settings);
    rule.SetShortLoan(kind == MatrixKind::ShortLoan);
    for (Field* field : rule.Fields()) {
        const bool mayBeBlank = field->GetKind() == Field::Kind::Money;
        field->Declaration().required = !mayBeBlank && field->GetKind() != Field::Kind::Flag;
    }
    frmCirculation_PolicyMatrixRecordMultiple dialog(application, rule, group, entries, parent);
    return application.prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmCirculation_PolicyMatrixRecordMultiple.cpp"
