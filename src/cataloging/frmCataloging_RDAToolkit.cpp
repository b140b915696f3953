#include "cataloging/frmCataloging_RDAToolkit.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "core/data/RemoteOutcome.h"
#include "framework/WaitDialog.h"
#include "wire/RdaToolkit.h"
#include "wire/Status.h"
#include "wire/WebAddress.h"

namespace sysadmin {

namespace status = wire::status;
namespace toolkit = wire::rdatoolkit;

namespace {

const char* const TestCaption = "Test Cataloging RDA Toolkit";

/// What an answer means, in a sentence.
QString SentenceOf(const RemoteOutcome& answer) {
    const auto tr = [](const char* text) { return frmCataloging_RDAToolkit::tr(text); };
    if (answer.outcome == u"connected")
        return tr("%1 answers: %2").arg(answer.place, answer.detail);
    if (answer.outcome == u"no-address")
        return tr("No address is stored.");
    if (answer.outcome == u"sign-on-refused")
        return tr("%1 answers, but refuses the account or its password: %2").arg(answer.place, answer.detail);
    if (answer.outcome == u"search-refused")
        return tr("%1 answers, but not with the toolkit: %2").arg(answer.place, answer.detail);
    if (answer.outcome == u"other-protocol")
        return tr("What answers at %1 is no web server, or none that encrypts.").arg(answer.place);
    if (answer.outcome == u"new-certificate")
        return tr("No authority vouches for the certificate of %1. Nothing was sent to it.")
            .arg(answer.place);
    const QString sentence = answer.Sentence();
    return sentence.isEmpty() ? answer.outcome : sentence;
}

} // namespace

RdaToolkitForm::RdaToolkitForm()
    : chkEnabled(*this, {.name = "chkEnabled", .tag = "On", .caption = tr("Use the RDA Toolkit")})
    , txtAddress(
          *this,
          {.name = "txtAddress", .tag = "Ad", .caption = tr("Address:"), .maxLength = wire::WebAddressLength},
          wire::IsWebAddress, tr("Please enter an address that begins with http:// or https://."))
    , txtAccount(
          *this,
          {.name = "txtAccount", .tag = "Us", .caption = tr("Account:"), .maxLength = toolkit::AccountLength})
    , txtPassword(*this,
                  {.name = "txtPassword",
                   .tag = "PW",
                   .caption = tr("Password:"),
                   .maxLength = toolkit::PasswordLength},
                  "PC") {}

std::optional<Form::Finding> RdaToolkitForm::FormProblem() {
    if (chkEnabled.IsOn() && txtAddress.IsBlank())
        return Finding{&txtAddress, tr("Please enter the address of the RDA Toolkit.")};
    if ((!txtAccount.IsBlank() || !txtPassword.IsBlank()) && !wire::IsEncryptedAddress(txtAddress.Draft()))
        return Finding{&txtAddress,
                       tr("An account needs an address that begins with https://, so that nobody "
                          "reads its password on the way.")};
    return {};
}

frmCataloging_RDAToolkit::frmCataloging_RDAToolkit(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmCataloging_RDAToolkit", tr("Cataloging RDA Toolkit"),
                         Area::Cataloging, parent) {
    Build({.subject = tr("Cataloging RDA Toolkit"),
           .word = "RdaTk",
           .plural = "Cataloging RDA Toolkit",
           .frameNoun = tr("RDA Toolkit")},
          m_form,
          Below({m_form.chkEnabled, m_form.txtAddress, m_form.txtAccount, m_form.txtPassword,
                 Button(
                     "cmdTest", tr("&Test"), [this] { Test(); },
                     [this] { return !IsReadOnly() && !m_form.IsChanged() && !m_form.txtAddress.IsBlank(); }),
                 Note(tr("The server asks the address as it is stored."))}));
}

void frmCataloging_RDAToolkit::Test() {
    RequestChannel& channel = App().channel;
    const auto send = [&](const QString& goesOn) {
        if (!goesOn.isEmpty())
            channel.PutField("55", goesOn);
        return channel.SendRequest("TstRdaTk");
    };
    const auto result =
        SendAndWait(App().prompter, this, windowTitle(), tr("The address is being asked..."), send);
    if (!result)
        return;
    if (*result != status::Ok) {
        App().ReportRequestFailure(*result, TestCaption, tr("Cataloging RDA Toolkit"));
        return;
    }
    const RemoteOutcome answer{.outcome = channel.GetField("RES"),
                               .detail = channel.GetField("DT"),
                               .place = channel.GetField("AT"),
                               .timeout = channel.GetField("TO")};
    const bool isRight = answer.outcome == u"connected";
    App().prompter.ShowBox(this, {.text = SentenceOf(answer),
                                  .icon = isRight ? Box::Icon::Information : Box::Icon::Exclamation});
}

} // namespace sysadmin

#include "moc_frmCataloging_RDAToolkit.cpp"
