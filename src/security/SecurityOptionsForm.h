#pragma once

#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"
#include "wire/PasswordRules.h"

namespace sysadmin {

/// A span of time in minutes, hours or days that stays the same when the operator chooses another unit. What
/// does not come out even is rounded up, so that no span becomes shorter or nothing.
class TimeSpanField : public IntervalField {
public:
    /// `units`: their letters ("MHD").
    TimeSpanField(Form& form, const FieldSpec& spec, const QString& units);

    void ChangeUnit(const QString& unit) override;
    int Amount() const { return Number().toInt(); }
    qint64 Minutes() const;
    /// Sets the number and leaves the unit.
    void SetAmount(qint64 amount) { SetParts(QString::number(amount), Unit()); }
};

/// A number that may not be left blank.
class CountField : public NumberField {
public:
    CountField(Form& form, const FieldSpec& spec);
};

/// The rules for passwords and sign-on, with the dependencies between them.
class SecurityOptionsForm : public Form {
public:
    static constexpr int LeastPasswordLength = 8;
    static constexpr int MostCharacters = 128;
    static constexpr int MostDays = 999;

    SecurityOptionsForm();

    /// Takes the options from the current reply.
    void LoadOptions(RequestChannel& channel);
    /// The expiry was changed elsewhere.
    void TakeExpiry(int days);
    /// "PGR": "0" for all requirements.
    QString GroupRequirement() const;
    /// The rules as they are drawn up now.
    wire::PasswordRules Rules() const;

    CountField fpMinPasswordLen{*this,
                                {.name = "fpMinPasswordLen",
                                 .tag = "PLM",
                                 .caption = tr("Minimum - at least:"),
                                 .most = MostCharacters}};
    CountField fpMaxPasswordLen{*this,
                                {.name = "fpMaxPasswordLen",
                                 .tag = "PLX",
                                 .caption = tr("Maximum - at most:"),
                                 .most = MostCharacters}};
    FlagField chkContainUserId{*this, {.name = "chkContainUserId", .tag = "PCI", .caption = tr("User's Id")}};
    FlagField chkContainUserName{*this,
                                 {.name = "chkContainUserName", .tag = "PCN", .caption = tr("User's name")}};
    LetterField optGroupReq{*this,
                            {.name = "optGroupReq",
                             .initial = "0",
                             .options = {{"0", tr("All requirements below")}, {"1", tr("At least")}}}};
    NumberField fpGroupReq{*this,
                           {.name = "fpGroupReq",
                            .required = true,
                            .unit = tr("of the requirements selected below"),
                            .accessible = tr("Number of requirements"),
                            .least = 1,
                            .most = 5}};
    CountField fpMinAlphaChar{*this,
                              {.name = "fpMinAlphaChar",
                               .tag = "PAL",
                               .caption = tr("At least"),
                               .unit = tr("alphabetic character(s)"),
                               .most = MostCharacters}};
    FlagField chkMinAlphaCharGrp{*this,
                                 {.name = "chkMinAlphaCharGrp",
                                  .tag = "PAG",
                                  .caption = tr("Include requirement"),
                                  .accessible = tr("Include requirement: alphabetic characters")}};
    CountField fpMinUpperChar{*this,
                              {.name = "fpMinUpperChar",
                               .tag = "PUL",
                               .caption = tr("At least"),
                               .unit = tr("uppercase character(s)"),
                               .most = MostCharacters}};
    FlagField chkMinUpperCharGrp{*this,
                                 {.name = "chkMinUpperCharGrp",
                                  .tag = "PUG",
                                  .caption = tr("Include requirement"),
                                  .accessible = tr("Include requirement: uppercase characters")}};
    CountField fpMinLowerChar{*this,
                              {.name = "fpMinLowerChar",
                               .tag = "PLL",
                               .caption = tr("At least"),
                               .unit = tr("lowercase character(s)"),
                               .most = MostCharacters}};
    FlagField chkMinLowerCharGrp{*this,
                                 {.name = "chkMinLowerCharGrp",
                                  .tag = "PLG",
                                  .caption = tr("Include requirement"),
                                  .accessible = tr("Include requirement: lowercase characters")}};
    CountField fpMinNumberChar{*this,
                               {.name = "fpMinNumberChar",
                                .tag = "PNL",
                                .caption = tr("At least"),
                                .unit = tr("number character(s)"),
                                .most = MostCharacters}};
    FlagField chkMinNumberCharGrp{*this,
                                  {.name = "chkMinNumberCharGrp",
                                   .tag = "PNG",
                                   .caption = tr("Include requirement"),
                                   .accessible = tr("Include requirement: number characters")}};
    CountField fpMinSpecialChar{*this,
                                {.name = "fpMinSpecialChar",
                                 .tag = "PSL",
                                 .caption = tr("At least"),
                                 .unit = tr("special character/symbol(s)"),
                                 .most = MostCharacters}};
    FlagField chkMinSpecialCharGrp{*this,
                                   {.name = "chkMinSpecialCharGrp",
                                    .tag = "PSG",
                                    .caption = tr("Include requirement"),
                                    .accessible = tr("Include requirement: special characters/symbols")}};
    TextField txtSpecialChar{*this,
                             {.name = "txtSpecialChar",
                              .tag = "PSC",
                              .caption = tr("Special / symbols:"),
                              .maxLength = NameLength}};

    CountField fpPreviousCnt{*this,
                             {.name = "fpPreviousCnt",
                              .tag = "PMC",
                              .caption = tr("New password cannot be same as previous"),
                              .unit = tr("passwords"),
                              .most = 24}};
    TimeSpanField fpMinPasswordAge{*this,
                                   {.name = "fpMinPasswordAge",
                                    .tag = "PAM",
                                    .caption = tr("Minimum password age:"),
                                    .required = true,
                                    .unitName = "cboMinPasswordAge"},
                                   "HD"};
    CountField fpMaxPasswordAge{*this,
                                {.name = "fpMaxPasswordAge",
                                 .tag = "PAX",
                                 .caption = tr("Maximum password age (expiration):"),
                                 .unit = tr("days"),
                                 .toolTip = tr("0: passwords never expire."),
                                 .most = MostDays}};
    CountField fpReminderDays{*this,
                              {.name = "fpReminderDays",
                               .tag = "ERD",
                               .caption = tr("Alert user"),
                               .unit = tr("days before password will expire"),
                               .most = MostDays}};
    CountField fpDisableDays{*this,
                             {.name = "fpDisableDays",
                              .tag = "PDD",
                              .caption = tr("Account will be disabled if not accessed within"),
                              .unit = tr("days of a password reset"),
                              .toolTip = tr("0: accounts are never disabled."),
                              .most = MostDays}};
    CountField fpLoginAttempts{*this,
                               {.name = "fpLoginAttempts",
                                .tag = "LGA",
                                .caption = tr("Account will be locked after"),
                                .unit = tr("invalid login attempts"),
                                .toolTip = tr("0: accounts are never locked."),
                                .most = 99}};
    TimeSpanField fpLockoutDuration{*this,
                                    {.name = "fpLockoutDuration",
                                     .tag = "LKD",
                                     .caption = tr("If locked out, the lockout period will be"),
                                     .required = true,
                                     .toolTip = tr("0: until an administrator unlocks the account."),
                                     .unitName = "cboLockoutDuration"},
                                    "MHD"};
    TimeSpanField fpLockoutCounter{*this,
                                   {.name = "fpLockoutCounter",
                                    .tag = "LKR",
                                    .caption = tr("Account lockout counter will be reset after"),
                                    .required = true,
                                    .toolTip = tr("0: only by a valid login."),
                                    .unitName = "cboLockoutCounter"},
                                   "MHD"};
    MultiLineField txtPasswordDisplay{
        *this,
        {.name = "txtPasswordDisplay",
         .tag = "PDT",
         .maxLength = NoteLength,
         .accessible = tr("Enter text that will be shown on the change password screen:")}};

    MultiLineField txtSecurityText{*this,
                                   {.name = "txtSecurityText",
                                    .tag = "SWT",
                                    .maxLength = NoteLength,
                                    .accessible = tr("Enter text that will be shown on the login screen:")}};

    FlagField chkLogingAtteptAuditTrail{
        *this,
        {.name = "chkLogingAtteptAuditTrail", .tag = "LAT", .caption = tr("Record invalid login attempts")}};
    RowsField vsfInvalidLogins{*this,
                               {.name = "vsfInvalidLogins", .accessible = tr("Invalid Login Attempts")},
                               {{tr("UserID"), 110},
                                {tr("Operator Name"), 160},
                                {.caption = tr("Date / Time"), .width = 140, .dateFormat = WireMoment},
                                {tr("Lockout Counter"), 110},
                                {.caption = tr("Lockout Time"), .width = 140, .dateFormat = WireMoment},
                                {tr("Workstation IP")}}};

private:
    void LeaveLength(bool maximum);

    int m_attemptsLeft = 0; // sign-on attempts when the field was loaded or left last
};

} // namespace sysadmin
