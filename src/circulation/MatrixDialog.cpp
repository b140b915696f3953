#include "circulation/MatrixDialog.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/forms/ReadList.h"

#include <QFontMetrics>
#include <QScreen>

namespace sysadmin {

namespace {

constexpr int UsualWidth = 160;   // average characters
constexpr int UsualHeight = 44;   // lines
constexpr int FrameOfWindow = 40; // what a window's frame and a task bar take at the most
const QString ScreenName = "Circulation Policy Matrix Record Settings";

} // namespace

QSet<QString> MatrixChoices::ShortLoans() const {
    QSet<QString> types;
    for (const Choice& type : itemTypes)
        if (type.isShortLoan)
            types.insert(type.id);
    return types;
}

MatrixDialog::MatrixDialog(Application& application, MatrixForm& rule, const MatrixGroup& group,
                           const FormDialogSpec& spec, const Layout& layout, QWidget* parent)
    : FormDialog(application.prompter, rule, layout, spec, parent)
    , m_application(application)
    , m_rule(rule)
    , m_group(group)
    , m_readOnly(spec.readOnly) {
    const QFontMetrics metrics(font());
    const QSize usual(metrics.averageCharWidth() * UsualWidth, metrics.height() * UsualHeight);
    resize(usual.boundedTo(screen()->availableSize() - QSize(FrameOfWindow, FrameOfWindow)));
}

void MatrixDialog::done(int result) {
    if (result == Accepted && !m_readOnly && !Save())
        return;
    FormDialog::done(result);
}

bool MatrixDialog::ConfirmZeros() {
    const QStringList zeros = m_rule.Zeros();
    return zeros.isEmpty() ||
           m_application.prompter.ShowBox(
               this, {.text = tr("The following item(s) have a value of zero:") + "\r\n\r\n" +
                              zeros.join("\r\n") + "\r\n\r\n" +
                              tr("Click OK to complete the save or\r\nClick Cancel to change these values."),
                      .buttons = Box::Buttons::OkCancel,
                      .title = tr("Zero Fields")});
}

bool MatrixDialog::Send(const QString& request, const QString& caption) {
    const qint16 status = m_application.channel.SendRequest(request);
    if (status)
        Report(status, caption);
    return status == 0;
}

void MatrixDialog::Report(qint16 status, const QString& caption) {
    m_application.ReportRequestFailure(status, caption, ScreenName);
}

void MatrixDialog::Announce(const QString& what) {
    emit m_application.notices.SubjectChanged("Mat");
    emit m_application.notices.Done(what);
}

bool ReadMatrixRule(Application& application, const MatrixGroup& group, const MatrixEntry& entry,
                    MatrixForm& rule) {
    application.channel.PutField("ID", group.id);
    application.channel.PutField("MI", entry.id);
    if (const qint16 status = application.channel.SendRequest("GetMat")) {
        application.ReportRequestFailure(status, "Edit Policy Matrix Definitions", ScreenName);
        return false;
    }
    rule.Load(application.channel);
    return true;
}

std::optional<MatrixChoices> ReadMatrixChoices(Application& application, const MatrixGroup& group) {
    MatrixChoices choices;
    const qint16 status =
        ReadList(application.channel,
                 {.request = "LstMatSettings",
                  .putKey =
                      [&](RequestChannel& channel) {
                          channel.PutField("CID", group.clusterId);
                          channel.PutField("ID", group.id);
                      },
                  .report =
                      [&](qint16 failure) {
                          application.ReportRequestFailure(
                              failure, "Policy Matrix Record Settings - Load Patron Item", ScreenName);
                      }},
                 {{"P",
                   [&](RequestChannel& channel) {
                       choices.patronGroups.append({channel.GetField("P"), channel.GetField("N")});
                   }},
                  {"II", [&](RequestChannel& channel) {
                       choices.itemTypes.append(
                           {channel.GetField("II"), channel.GetField("IN"), channel.GetFlag("I5")});
                   }}});
    return status ? std::nullopt : std::optional(choices);
}

} // namespace sysadmin

#include "moc_MatrixDialog.cpp"
