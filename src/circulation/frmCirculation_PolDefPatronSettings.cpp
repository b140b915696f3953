#include "circulation/frmCirculation_PolDefPatronSettings.h"

#include "framework/forms/Rules.h"

namespace sysadmin {

/// A count and whether it applies, with their tags in the order in which they travel: for short loans the
/// count comes first.
struct PatronLimit {
    const char* flag;
    const char* count;
    const char* caption;
    const char* limit; ///< what the message about a wrong count calls it
    const char* flagTag;
    const char* countTag;
    bool countFirst = false;
    const char* column = nullptr;
};

template <class Kind, class... More>
Kind& PatronRulesForm::Add(const FieldSpec& spec, const More&... more) {
    m_owned.push_back(std::make_unique<Kind>(*this, spec, more...));
    return static_cast<Kind&>(*m_owned.back());
}

void PatronRulesForm::AddLimits(std::initializer_list<PatronLimit> limits) {
    for (const PatronLimit& limit : limits) {
        const FieldSpec flag{.name = limit.flag, .tag = limit.flagTag, .caption = tr(limit.caption)};
        if (!limit.countFirst)
            Add<FlagField>(flag);
        LimitField& count = Add<LimitField>({.name = limit.count,
                                             .tag = limit.countTag,
                                             .initial = "0",
                                             .accessible = tr(limit.limit),
                                             .enabledBy = limit.flag,
                                             .most = wire::MostCount},
                                            tr(limit.limit));
        if (limit.countFirst)
            Add<FlagField>(flag);
        TellWhenLeft(count);
    }
}

PatronRulesForm::PatronRulesForm() {
    Add<FlagField>({.name = "chkFineLostItemFeeApply",
                    .tag = "1C",
                    .caption = tr("Fines/Lost Item Fees Apply"),
                    .column = {tr("Fines Apply"), 90}});
    Add<MoneyField>({.name = "txtMaxOutstandingBalance",
                     .tag = "1D",
                     .caption = tr("Max Outstanding Balance:"),
                     .initial = "0.00",
                     .column = {tr("Max Balance"), 90}});
    Add<FlagField>({.name = "chkOverdueNoticeApply",
                    .tag = "1E",
                    .caption = tr("Overdue Notice Apply"),
                    .column = {tr("Overdue Notice"), 110}});
    Add<FlagField>({.name = "chkCourtesyNoticeApply",
                    .tag = "1X",
                    .caption = tr("Courtesy Notice Apply"),
                    .column = {tr("Courtesy Notice"), 110}});
    Add<MoneyField>({.name = "txtMinBalanceForNotice",
                     .tag = "1F",
                     .caption = tr("Min Balance For Notice:"),
                     .initial = "0.00"});
    AddLimits(
        {{"chkMaxItemsBorrowedApply", "txtMaxItemBorrowed",
          QT_TR_NOOP("Max Items Borrowed in this Policy Group"), QT_TR_NOOP("Max Items Borrowed"), "1G", "1H",
          false},
         {"chkMaxOverdueItemsApply", "txtMaxOverdueItems", QT_TR_NOOP("Max Overdue Items Apply"),
          QT_TR_NOOP("Max Overdue Items"), "1I", "1J", false},
         {"chkMaxOverdueRecalledItemsApply", "txtMaxOverdueRecalledItems",
          QT_TR_NOOP("Max Overdue Recalled Items Apply"), QT_TR_NOOP("Max Overdue Recall Items"), "1K", "1L",
          false},
         {"chkMaxNumberOfRecallsApply", "txtMaxNumberOfRecalls", QT_TR_NOOP("Max Number Of Recalls Apply"),
          QT_TR_NOOP("Max Number of Recalls"), "1M", "1N", false},
         {"chkMaxSelfShelfReturnsApply", "txtMaxSelfShelfReturns", QT_TR_NOOP("Max Self-Shelf Returns Apply"),
          QT_TR_NOOP("Max Self-Shelf Returns"), "1O", "1P", false},
         {"chkMaxClaimedReturnsApply", "txtMaxClaimedReturns", QT_TR_NOOP("Max Claimed Returns Apply"),
          QT_TR_NOOP("Max Claimed Returns"), "1Q", "1R", false},
         {"chkMaxLostItemsApply", "txtMaxLostItems", QT_TR_NOOP("Max Lost Items Apply"),
          QT_TR_NOOP("Max Lost Items"), "1S", "1T", false},
         {"chkMaxCallSlipRequestsApply", "txtMaxCallSlipRequests", QT_TR_NOOP("Max Call Slip Requests Apply"),
          QT_TR_NOOP("Max Call Slip Requests"), "12", "13", false}});
    const auto addFlag = [this](const char* name, const char* tag, const QString& caption) {
        Add<FlagField>({.name = name, .tag = tag, .caption = caption});
    };
    addFlag("chkOPACHolds", "1U", tr("Place Holds Using The OPAC"));
    addFlag("chkOPACRecalls", "1V", tr("Place Recalls Using The OPAC"));
    addFlag("chkOPACCallSlips", "11", tr("Place Call Slip Requests Using The OPAC"));
    addFlag("chkEmailCourtesy", "14", tr("Email Courtesy Notices"));
    addFlag("chkEmailCancellation", "15", tr("Email Cancellation Notices"));
    addFlag("chkEmailItemAvailable", "16", tr("Email Item Available Notices"));
    addFlag("chkEmailOverdue", "17", tr("Email Overdue Notices"));
    addFlag("chkEmailOtherOverdue", "18", tr("Email (Other) Overdue Notices"));
    addFlag("chkEmailOtherRecall", "19", tr("Email (Other) Recall Notices"));
    addFlag("chkEmailRecall", "20", tr("Email Recall Notices"));
    addFlag("chkOPACShortLoans", "21", tr("Place Short Loans Using The OPAC"));
    AddLimits(
        {{"chkMaxShortLoanApply", "txtMaxShortLoan", QT_TR_NOOP("Max Short Loan Apply"),
          QT_TR_NOOP("Max Short Loans"), "23", "22", true},
         {"chkMaxShortLoanTitlesApply", "txtMaxShortLoanTitles", QT_TR_NOOP("Max Short Loan Titles Apply"),
          QT_TR_NOOP("Max Short Loan Titles"), "25", "24", true},
         {"chkMaxShortLoanPerDayApply", "txtMaxShortLoanPerDay", QT_TR_NOOP("Max Short Loan Per Day Apply"),
          QT_TR_NOOP("Max Short Loans Per Day"), "27", "26", true},
         {"chkMaxHoldRequestsApply", "txtMaxHoldRequests", QT_TR_NOOP("Max Hold Requests Apply"),
          QT_TR_NOOP("Max Number of Holds"), "MHR", "HRL", false}});
    Add<FlagField>({.name = "chkIncludePendingHolds",
                    .tag = "HBL",
                    .caption = tr("Include Pending Hold Requests In The Max Borrowed Items Limit"),
                    .enabledBy = "chkMaxItemsBorrowedApply"});
    auto& borrowed = dynamic_cast<FlagField&>(*Find("chkMaxItemsBorrowedApply"));
    When([&borrowed] { return !borrowed.IsOn(); })
        .Set(dynamic_cast<ValueField&>(*Find("txtMaxItemBorrowed")), "0")
        .Set(dynamic_cast<ValueField&>(*Find("chkIncludePendingHolds")), "N");
}

Layout PatronRulesForm::Draw() {
    const auto limits = [](const char* role, const char* other) {
        const auto controls = [](const QString& limit) {
            return QStringList{"chk" + limit + "Apply", "txt" + limit};
        };
        QList<Layout> line;
        for (const QString& name : controls(role) + controls(other))
            line.append(name == u"txtMaxItemsBorrowed" ? Layout("txtMaxItemBorrowed")
                                                       : Layout(name.toUtf8().constData()));
        return Beside(line);
    };
    return Headed({Tabs(
        "tabPatronRules",
        {Page(
             tr("&Fines and Limits"),
             {Frame("fraFines", tr("Fines and Notices"),
                    {Beside({"txtMaxOutstandingBalance", "txtMinBalanceForNotice"}),
                     Beside({"chkFineLostItemFeeApply", "chkOverdueNoticeApply", "chkCourtesyNoticeApply"})}),
              Frame("fraLimits", tr("Limits"),
                    {limits("MaxItemsBorrowed", "MaxSelfShelfReturns"),
                     limits("MaxOverdueItems", "MaxClaimedReturns"),
                     limits("MaxOverdueRecalledItems", "MaxLostItems"),
                     limits("MaxNumberOfRecalls", "MaxCallSlipRequests"),
                     limits("MaxHoldRequests", "MaxShortLoan"),
                     limits("MaxShortLoanTitles", "MaxShortLoanPerDay"), "chkIncludePendingHolds"})}),
         Page(tr("&Requests and Email"),
              {Frame("fraOPAC", tr("Public Catalogue"),
                     {"chkOPACHolds", "chkOPACRecalls", "chkOPACCallSlips", "chkOPACShortLoans"}),
               Frame("fraEmail", tr("Email"),
                     {"chkEmailCourtesy", "chkEmailCancellation", "chkEmailItemAvailable", "chkEmailOverdue",
                      "chkEmailOtherOverdue", "chkEmailRecall", "chkEmailOtherRecall"})})})});
}

RowAsker AskPatronRules(const QList<GridColumn>& columns, std::shared_ptr<PatronRulesForm> form) {
    return AskInForm({.name = "frmCirculation_PolDefPatronSettings",
                      .title = Form::tr("Patron Rules"),
                      .helpContext = 50524,
                      .okName = "cmdSavePatrons",
                      .cancelName = "cmdCancelPatrons"},
                     columns, std::move(form));
}

} // namespace sysadmin
