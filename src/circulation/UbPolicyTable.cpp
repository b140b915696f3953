#include "circulation/UbPolicyTable.h"

#include "circulation/UbPolicyForm.h"
#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/FormDialog.h"
#include "framework/forms/ReadList.h"
#include "wire/Counts.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

constexpr int PoliciesTopic = 50515;

/// Cells of a row: code, name and eligibility, two for each limit (blank: it does not apply), then what is
/// not shown: the stored limit also where it does not apply.
enum Cell { Code, Name, Eligible, FirstLimit };

int LimitCell(qsizetype limit) {
    return int(FirstLimit + 2 * limit);
}
int BlockCell(qsizetype limit) {
    return LimitCell(limit) + 1;
}
int KeptCell(qsizetype limit) {
    return LimitCell(UbLimits().size()) + int(limit);
}

/// The row of the policy in the channel's current record.
GridRow ReadPolicyRow(RequestChannel& channel, const QString& key, const QString& code, const QString& name) {
    GridRow row{key, {code, name, channel.GetField("UBE")}, {}};
    QStringList kept;
    for (const UbLimitSpec& limit : UbLimits()) {
        const QString most = channel.GetField(limit.most).trimmed();
        row.cells.Own() << (channel.GetFlag(limit.applies) ? most : QString())
                        << channel.GetField(limit.blocks);
        kept << most;
    }
    row.cells.Own() += kept;
    return row;
}

void FillPolicy(UbPolicyForm& form, const GridRow& row) {
    const Form::Loading loading(form);
    form.chkUBEligible.SetStored(row.cells[Eligible]);
    for (size_t i = 0; i < form.limits.size(); ++i) {
        UbLimit& limit = *form.limits[i];
        const QString most = row.cells[LimitCell(qsizetype(i))].trimmed();
        limit.applies.SetStored(most.isEmpty() ? "N" : "Y");
        limit.most->SetStored({});
        limit.most->SetDraft(most.isEmpty() ? row.cells[KeptCell(qsizetype(i))] : most); // to be tidied
        limit.blocks.SetStored(row.cells[BlockCell(qsizetype(i))]);
    }
}

/// The row as the server keeps it: amounts in their stored form, and nothing of a group that is not eligible.
GridRow AsStored(UbPolicyForm& form, GridRow row) {
    const bool isEligible = row.cells[Eligible] == u"Y";
    FillPolicy(form, row);
    form.Tidy();
    for (size_t i = 0; i < form.limits.size(); ++i) {
        const UbLimit& limit = *form.limits[i];
        const QString most = isEligible ? limit.most->Draft() : QString();
        row.cells[LimitCell(qsizetype(i))] = limit.applies.IsOn() ? most : QString();
        row.cells[BlockCell(qsizetype(i))] = isEligible && limit.blocks.IsOn() ? "Y" : "N";
        row.cells[KeptCell(qsizetype(i))] = most;
    }
    return row;
}

struct TableForm : Form {
    TableForm(bool usesDemerits, int decimals)
        : vsfPolicies(*this, {.name = "vsfPolicies", .accessible = tr("Policies of all patron groups")},
                      Columns(usesDemerits), Spec()) {
        for (const auto& limit : policy.limits)
            if (auto* money = dynamic_cast<MoneyField*>(limit->most.get()))
                money->SetDecimals(decimals);
        vsfPolicies.Behaviour().check = [this](const GridRow& row, const GridRow*) { return Problem(row); };
    }

    static QList<GridColumn> Columns(bool usesDemerits) {
        QList<GridColumn> columns{{.caption = tr("Code"), .width = 130},
                                  {.caption = tr("Name"), .width = 190},
                                  {.caption = tr("UB Eligible"), .width = 80, .yesNo = true}};
        for (const UbLimitSpec& limit : UbLimits()) {
            const bool hidden = limit.isDemerits && !usesDemerits;
            const QString caption = UbCaption(limit.mostCaption);
            columns << GridColumn{.caption = caption, .width = 150, .hidden = hidden}
                    << GridColumn{.caption = tr("Blocks Here"), .width = 90, .hidden = hidden, .yesNo = true};
        }
        return columns;
    }
    static RowsSpec Spec() {
        RowsSpec spec;
        spec.edits.insert(Eligible, {.kind = CellEdit::Kind::Check});
        for (qsizetype i = 0; i < UbLimits().size(); ++i) {
            spec.edits.insert(LimitCell(i),
                              UbLimits()[i].isMoney
                                  ? CellEdit{.kind = CellEdit::Kind::Text, .maxLength = 12}
                                  : CellEdit{.kind = CellEdit::Kind::Number, .most = wire::MostCount});
            spec.edits.insert(BlockCell(i), {.kind = CellEdit::Kind::Check});
        }
        return spec;
    }
    QString Problem(const GridRow& row) {
        if (row.cells[Eligible] != u"Y") {
            const GridRow* former = vsfPolicies.FindRow(row.key);
            const bool isLeft = former && former->cells[Eligible] == u"Y"; // its limits go with the policy
            return isLeft ? QString() : tr("Please check UB Eligible first.");
        }
        FillPolicy(policy, row);
        const std::optional<Finding> problem = policy.FirstProblem();
        return problem ? problem->text : QString();
    }

    UbPolicyForm policy; ///< checks a row and puts it
    RowsField vsfPolicies;
};

/// The table with what the server has of it.
class PolicyTable {
public:
    PolicyTable(Application& application, QWidget* parent, bool usesDemerits)
        : m_application(application)
        , m_parent(parent)
        , m_form(usesDemerits, application.profile.MoneyDecimals()) {}

    bool Load() {
        const clsCluster* cluster = m_application.clusters.Current();
        QList<GridRow> rows;
        const auto read = [&](RequestChannel& channel) {
            rows.append(ReadPolicyRow(channel, channel.GetField("UBPGID"), channel.GetField("Cd"),
                                      channel.GetField("Nm")));
        };
        const qint16 result = ReadList(
            m_application.channel,
            {.request = "LstUbPol",
             .putKey =
                 [&](RequestChannel& c) { c.PutField("CID", cluster ? cluster->sClusterID : QString()); },
             .report = [&](qint16 status) { Report(status, "Load Circulation UB Policy Definitions"); }},
            {{"UBPGID", read}});
        for (const GridRow& row : rows)
            m_stored.insert(row.key, row);
        m_form.vsfPolicies.SetStoredRows(rows);
        return result == wire::status::Ok;
    }

    /// False when something is left to be stored.
    bool Save() {
        QStringList changedByOthers;
        for (const GridRow& row : QList<GridRow>(m_form.vsfPolicies.Rows()))
            if (row != m_stored[row.key] && !SaveRow(row, changedByOthers))
                return false;
        if (changedByOthers.isEmpty())
            return true;
        m_application.prompter.ShowBox(
            m_parent, {.text = Form::tr("Somebody else has changed the policies of these patron groups "
                                        "meanwhile:") +
                               "\r\n\r\n" + changedByOthers.join("\r\n") + "\r\n\r\n" +
                               Form::tr("The table still holds your version, which OK stores over theirs.")});
        return false;
    }

    Form& GetForm() { return m_form; }
    Layout Draw() { return Below({m_form.vsfPolicies}); }
    bool HasStored() const { return m_hasStored; }

private:
    bool SaveRow(const GridRow& row, QStringList& changedByOthers) {
        RequestChannel& channel = m_application.channel;
        const QString caption = "Edit Circulation UB Policy Defintions";
        channel.PutField("UBPGID", row.key);
        if (const qint16 result = channel.SendRequest("GetUbPol"); result != wire::status::Ok)
            return Report(result, caption);
        const GridRow theirs = ReadPolicyRow(channel, row.key, row.cells[Code], row.cells[Name]);
        if (GridRow& stored = m_stored[row.key]; theirs != stored) {
            stored = theirs;
            changedByOthers << row.cells[Name];
            return true;
        }
        const bool hasPolicy = theirs.cells[Eligible] == u"Y";
        const bool isEligible = row.cells[Eligible] == u"Y";
        const GridRow stored = AsStored(m_form.policy, row);
        m_form.vsfPolicies.PutRow(stored);
        channel.PutField("UBPGID", row.key);
        for (const Field* field : isEligible ? m_form.policy.Fields() : QList<Field*>())
            field->Put(channel);
        const QString request = !isEligible ? "DelUbPol" : hasPolicy ? "UpdUbPol" : "AddUbPol";
        if (const qint16 result = channel.SendRequest(request); result != wire::status::Ok)
            return Report(result, "Save UB Policy Defintions");
        m_stored[row.key] = stored;
        m_hasStored = true;
        return true;
    }
    /// Always false, for whoever gives up after it.
    bool Report(qint16 status, const QString& caption) {
        m_application.ReportRequestFailure(status, caption, Form::tr("UB Policy Definition"));
        return false;
    }

    Application& m_application;
    QWidget* m_parent;
    TableForm m_form;
    QHash<QString, GridRow> m_stored;
    bool m_hasStored = false;
};

} // namespace

bool EditAllUbPolicies(Application& application, QWidget* parent, bool readOnly, bool usesDemerits) {
    PolicyTable table(application, parent, usesDemerits);
    if (!table.Load())
        return false;
    for (bool isDone = false; !isDone;) {
        FormDialog dialog(application.prompter, table.GetForm(), table.Draw(),
                          {.name = "frmCirculation_UBPolicyTable",
                           .title = Form::tr("UB Policies of All Patron Groups"),
                           .helpContext = PoliciesTopic,
                           .readOnly = readOnly},
                          parent);
        dialog.resize(1100, 620);
        isDone = !application.prompter.RunDialog(dialog) || table.Save();
    }
    return table.HasStored();
}

} // namespace sysadmin
