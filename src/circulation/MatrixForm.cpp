#include "circulation/MatrixForm.h"

#include "core/Application.h"
#include "core/data/Tr.h"
#include "framework/forms/Rules.h"
#include "wire/Counts.h"

#include <algorithm>

namespace sysadmin {

namespace {

const QString ShortLoanPage = "short";

/// The units that are known by these letters, in this order.
QList<PickItem> Units(const QString& letters) {
    static const QHash<QChar, QString> names{
        {'D', Tr("Day")}, {'H', Tr("Hour")}, {'M', Tr("Minute")}, {'I', Tr("Indef")}, {'T', Tr("Term")}};
    QList<PickItem> units;
    for (const QChar letter : letters)
        units.append({letter, names[letter]});
    return units;
}

FieldSpec Flag(const QString& name, const QString& tag, const QString& caption, const QString& spoken = {}) {
    return {.name = name, .tag = tag, .caption = caption, .accessible = spoken};
}

FieldSpec UnitChoice(const QString& name, const QString& tag, const QString& caption, const QString& letters,
                     const QString& spoken = {}) {
    return {.name = name,
            .tag = tag,
            .caption = caption,
            .initial = "D",
            .accessible = spoken,
            .options = Units(letters)};
}

FieldSpec Money(const QString& name, const QString& tag, const QString& caption) {
    return {.name = name, .tag = tag, .caption = caption};
}

/// What the periods that are counted in the loan's unit are labelled with.
QString LabelOf(const QString& loanUnit) {
    static const QHash<QString, QString> labels{
        {"D", Tr("Days")}, {"H", Tr("Hours")}, {"M", Tr("Minutes")}, {"T", Tr("Days")}};
    return labels.value(loanUnit);
}

/// The units that suit a loan unit, the first one to be chosen; none where it leaves them as they are.
QList<PickItem> SuitableUnits(bool isRenewal, const QString& loanUnit, bool isShortLoan) {
    if (loanUnit == u"D")
        return Units(isRenewal ? "DH" : "D");
    if (loanUnit == u"H")
        return Units(isRenewal && !isShortLoan ? "HMT" : "HM");
    if (loanUnit == u"M")
        return Units(isRenewal && !isShortLoan ? "MT" : "M");
    if (loanUnit == u"I")
        return Units(isRenewal ? "D" : "");
    if (loanUnit == u"T")
        return Units(isRenewal ? "DT" : "D");
    return {};
}

} // namespace

MatrixCountField::MatrixCountField(Form& form, const QString& name, const QString& tag,
                                   const QString& caption, const QString& unit)
    : NumberField(form, {.name = name,
                         .tag = tag,
                         .caption = caption,
                         .unit = unit,
                         .initial = "0",
                         .most = wire::MostCount}) {}

QString LoanPeriodField::Problem() const {
    if (const QString problem = TextField::Problem(); !problem.isEmpty() || IsBlank())
        return problem;
    bool isNumber = false;
    const double value = Draft().trimmed().toDouble(&isNumber);
    const bool isPlain = std::all_of(Draft().begin(), Draft().end(),
                                     [](QChar c) { return (c >= u'0' && c <= u'9') || c == u'.'; });
    return isNumber && isPlain && value <= wire::MostCount
               ? QString()
               : Form::tr("\"%1\" must be a number from %2 to %3.")
                     .arg(PlainCaption())
                     .arg(0)
                     .arg(wire::MostCount);
}

MatrixSettings AskMatrixSettings(Application& application) {
    RequestChannel& channel = application.channel;
    if (channel.SendRequest("GetCrMsc"))
        return {};
    return {channel.GetFlag("UDem"), channel.GetFlag("UBPG")};
}

MatrixForm::MatrixForm(const Application& application, const MatrixSettings& settings)
    : chkChargeRenew(*this, Flag("chkChargeRenew", "CR", tr("Charge/Renew")))
    , chkHold(*this, Flag("chkHold", "Hl", tr("Hold")))
    , chkRecall(*this, Flag("chkRecall", "Rc", tr("Recall")))
    , chkCallSlip(*this, Flag("chkCallSlip", "CSl", tr("Call Slip")))
    , chkUB(*this, Flag("chkUB", "UBREQ", tr("Universal Borrowing Request")))
    , txtLoanPeriod(*this, {.name = "txtLoanPeriod",
                            .tag = "LP",
                            .caption = tr("Loan Period:"),
                            .maxLength = 8,
                            .initial = "0"})
    , cboLoanPeriod(*this, UnitChoice("cboLoanPeriod", "LnI", {}, "DHMIT", tr("Loan Period Interval")))
    , txtGracePeriod(*this, "txtGracePeriod", "G", tr("Grace Period:"), tr("Days"))
    , txtFineRate(*this, Money("txtFineRate", "FR", tr("Fine Rate:")))
    , cboFineInterval(*this, UnitChoice("cboFineInterval", "FI", tr("Fine Interval:"), "DHM"))
    , txtMaxFine(*this, Money("txtMaxFine", "MF", tr("Max Fine Amount:")))
    , txtMaxRenewals(*this, "txtMaxRenewals", "MR", tr("Max # of Sequential Renewals:"))
    , txtRenewalPeriod(*this, "txtRenewalPeriod", "RPr", tr("Renewal Period:"))
    , cboRenewalPeriod(*this, UnitChoice("cboRenewalPeriod", "RI", {}, "DHMT", tr("Renewal Period Interval")))
    , optRenewFrom(*this, {.name = "optRenewFrom",
                           .tag = "RF",
                           .caption = tr("Renew From:"),
                           .initial = "N",
                           .options = {{"Y", tr("Renewal Date")}, {"N", tr("Original Due Date")}}})
    , txtRecallReturnInterval(*this, "txtRecallReturnInterval", "RRP", tr("Recall Return Interval:"))
    , txtMinLoanRecalled(*this, "txtMinLoanRecalled", "MRL", tr("Min Loan Period for Recalled Items:"),
                         tr("Days"))
    , txtRecallGracePeriod(*this, "txtRecallGracePeriod", "RGP", tr("Recall Grace Period:"))
    , txtRecallFineRate(*this, Money("txtRecallFineRate", "RFR", tr("Recall Fine Rate:")))
    , cboRecallFineInterval(*this,
                            UnitChoice("cboRecallFineInterval", "RFI", tr("Recall Fine Interval:"), "DHM"))
    , txtMaxRecallFine(*this, Money("txtMaxRecallFine", "MRF", tr("Max Fine for Recalls:")))
    , chkMaxItems(*this,
                  Flag("chkMaxItems", "MIBA", tr("Max Items Borrowed for this Patron Group && Item Type"),
                       tr("Max items borrowed for this patron group and item type")))
    , txtMaxItems(*this, "txtMaxItems", "MIB", {})
    , chkBookingsOnOverdue(*this, Flag("chkBookingsOnOverdue", "BO", tr("Allow Bookings on Overdue Items")))
    , chkNextFixedDueTime(*this, Flag("chkNextFixedDueTime", "NO",
                                      tr("Always Calculate Due Date/Time to be Next Fixed Due Time")))
    , txtWarningPeriod(*this, "txtWarningPeriod", "WP", tr("Advanced Loan Warning Period:"))
    , cboWarningPeriod(*this,
                       UnitChoice("cboWarningPeriod", "WI", {}, "DHM", tr("Advanced loan warning unit")))
    , txtCourtesyInterval(*this, "txtCourtesyInterval", "CI", tr("Courtesy Notice Interval:"), tr("Days"))
    , txtMinLoanCourtesy(*this, "txtMinLoanCourtesy", "ML", tr("Minimum Loan for Courtesy:"), tr("Days"))
    , txtFirstOverdue(*this, "txtFirstOverdue", "FO", tr("First Overdue Interval:"), tr("Days"))
    , txtLostInterval(*this, "txtLostInterval", "LI", tr("Lost Interval:"), tr("Days"))
    , txtOverdueCount(*this, "txtOverdueCount", "OC", tr("Other (Overdue) Notice Count:"))
    , txtOverdueInterval(*this, "txtOverdueInterval", "ON", tr("Other (Overdue) Notice Interval:"),
                         tr("Days"))
    , txtRecallNoticeCount(*this, "txtRecallNoticeCount", "RNC", tr("Overdue  Recall Notice Count:"))
    , txtRecallNoticeInterval(*this, "txtRecallNoticeInterval", "RN", tr("Overdue Recall Notice Interval:"),
                              tr("Days"))
    , txtHoldShelfLife(*this, "txtHoldShelfLife", "HS", tr("Hold Shelf Life:"))
    , cboHoldShelfLife(*this, UnitChoice("cboHoldShelfLife", "HSI", {}, "DHM", tr("Hold shelf life unit")))
    , m_showsUb(settings.allowsUb) {
    txtMaxItems.Declaration().accessible = chkMaxItems.Spec().accessible;
    for (MoneyField* amount : {&txtFineRate, &txtMaxFine, &txtRecallFineRate, &txtMaxRecallFine})
        amount->SetDecimals(application.profile.MoneyDecimals());
    if (settings.usesDemerits) {
        txtFineRate.SetCaption(tr("Demerits"));
        txtMaxFine.SetCaption(tr("Max Demerits"));
        txtRecallFineRate.SetCaption(tr("Recall Demerits"));
        txtMaxRecallFine.SetCaption(tr("Max Recall Demerits"));
    }
    // Where several entries are changed, a flag that stays as it is in each of them locks nothing.
    const auto mayBeOn = [](const FlagField& flag) {
        return [&flag] { return flag.IsOn() || (flag.Owner().IsSeveral() && !flag.IsChosen()); };
    };
    When(mayBeOn(chkChargeRenew)).Enable(chkUB);
    When(mayBeOn(chkMaxItems)).Enable(txtMaxItems);
    When([this] { return m_isShortLoan; }).Page(ShortLoanPage);
    FollowLoanUnit();
    connect(this, &Form::Changed, this, [this](const Field* field) {
        if (field == &cboLoanPeriod)
            RelabelUnits();
    });
    RelabelUnits();
}

QList<ChoiceField*> MatrixForm::DependentUnits() {
    return {&cboRenewalPeriod, &cboFineInterval, &cboRecallFineInterval};
}

QList<PickItem> MatrixForm::UnitsFor(const ChoiceField& dependent, const QString& loanUnit) const {
    return SuitableUnits(&dependent == &cboRenewalPeriod, loanUnit, m_isShortLoan);
}

// Another loan unit begins with the first of the units that suit it, whatever was chosen before.
void MatrixForm::FollowLoanUnit() {
    for (const PickItem& unit : cboLoanPeriod.Items())
        for (ChoiceField* dependent : DependentUnits()) {
            const bool isRenewal = dependent == &cboRenewalPeriod;
            const auto isChosen = [this, unit] { return cboLoanPeriod.Draft() == unit.id; };
            const QList<PickItem> ordinary = SuitableUnits(isRenewal, unit.id, false);
            if (ordinary.isEmpty())
                continue;
            When(isChosen).Set(*dependent, ordinary.first().id);
            When([=, this] { return isChosen() && !m_isShortLoan; }).Offer(*dependent, ordinary);
            When([=, this] {
                return isChosen() && m_isShortLoan;
            }).Offer(*dependent, SuitableUnits(isRenewal, unit.id, true));
        }
}

void MatrixForm::RelabelUnits() {
    const QString label = LabelOf(cboLoanPeriod.Draft());
    txtGracePeriod.SetUnit(label);
    txtMinLoanRecalled.SetUnit(label);
}

void MatrixForm::SetShortLoan(bool isShortLoan) {
    {
        const Loading loading(*this);
        m_isShortLoan = isShortLoan;
    }
    const QList<PickItem> suitable = UnitsFor(cboRenewalPeriod, cboLoanPeriod.Draft());
    const bool suits = std::any_of(suitable.begin(), suitable.end(), [this](const PickItem& unit) {
        return unit.id == cboRenewalPeriod.Draft();
    });
    if (!suits && !suitable.isEmpty())
        cboRenewalPeriod.SetDraft(suitable.first().id);
}

QList<ValueField*> MatrixForm::InOrder() {
    QList<ValueField*> fields;
    for (Field* field : Fields()) {
        auto* value = dynamic_cast<ValueField*>(field);
        const bool isShortLoans = field == &chkBookingsOnOverdue || field == &chkNextFixedDueTime ||
                                  field == &txtWarningPeriod || field == &cboWarningPeriod;
        if (value && (m_isShortLoan || !isShortLoans))
            fields.append(value);
    }
    return fields;
}

Layout MatrixForm::Pages(const QList<Layout>& before) {
    QList<Layout> allowed{chkChargeRenew, chkHold, chkRecall, chkCallSlip};
    if (m_showsUb || chkUB.IsOn())
        allowed.append(chkUB);
    allowed << chkMaxItems << txtMaxItems;
    QList<Layout> pages = before;
    pages << Page(tr("&Loan"),
                  {Flow(2, {Frame("fraAllowed", tr("Allowed"), allowed),
                            Frame("fraLoan", tr("Loan and Renewal"),
                                  {Beside({txtLoanPeriod, cboLoanPeriod}), txtGracePeriod, txtMaxRenewals,
                                   Beside({txtRenewalPeriod, cboRenewalPeriod}), optRenewFrom}),
                            Frame("fraFines", tr("Overdue"), {txtFineRate, cboFineInterval, txtMaxFine}),
                            Frame("fraRecalls", tr("Recalls"),
                                  {txtRecallReturnInterval, txtMinLoanRecalled, txtRecallGracePeriod,
                                   txtRecallFineRate, cboRecallFineInterval, txtMaxRecallFine})})});
    const auto again = [](Field& field) { return Again(field, field.Name() + "SL"); };
    pages << Page(
        ShortLoanPage, tr("&Short Loan"),
        {Flow(2, {Frame("fraLoanSL", tr("Loan and Renewal"),
                        {again(chkChargeRenew), Beside({again(txtLoanPeriod), again(cboLoanPeriod)}),
                         Beside({again(txtRenewalPeriod), again(cboRenewalPeriod)}), again(txtMaxRenewals),
                         again(txtGracePeriod), again(optRenewFrom)}),
                  Frame("fraFinesSL", tr("Overdue"),
                        {again(txtFineRate), again(cboFineInterval), again(txtMaxFine)}),
                  Frame("fraShortLoan", tr("Short Loan"),
                        {chkBookingsOnOverdue, chkNextFixedDueTime,
                         Beside({txtWarningPeriod, cboWarningPeriod})})})});
    pages << Page(
        tr("&Notices"),
        {Flow(2, {Frame("fraCourtesy", tr("Before the Due Date"), {txtCourtesyInterval, txtMinLoanCourtesy}),
                  Frame("fraOverdue", tr("Overdue"),
                        {txtFirstOverdue, txtLostInterval, txtOverdueCount, txtOverdueInterval}),
                  Frame("fraOverdueRecalls", tr("Overdue Recalls"),
                        {txtRecallNoticeCount, txtRecallNoticeInterval}),
                  Frame("fraHoldShelf", tr("Hold Shelf"), {Beside({txtHoldShelfLife, cboHoldShelfLife})})})});
    return Tabs("tabMatrix", pages);
}

QStringList MatrixForm::Zeros() const {
    QStringList zeros;
    const auto look = [&](const NumberField& field, const QString& name) {
        if (field.IsUsable() && field.Value() == 0)
            zeros.append(name);
    };
    look(txtCourtesyInterval, tr("Courtesy Notice Interval"));
    look(txtMinLoanCourtesy, tr("Minimum Loan for Courtesy"));
    look(txtRecallNoticeCount, tr("Overdue Recall Notice Count"));
    return zeros;
}

} // namespace sysadmin
