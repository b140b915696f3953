#include "circulation/frmCirculation_Matrix.h"

#include "circulation/MatrixDialog.h"
#include "circulation/MatrixList.h"
#include "core/Application.h"
#include "framework/forms/ReadList.h"

namespace sysadmin {

MatrixPages::MatrixPages(Application& application, QObject* parent)
    : QObject(parent)
    , m_application(application) {}

QString MatrixPages::Caption(MatrixKind kind) {
    return kind == MatrixKind::ShortLoan ? tr("Sh&ort Loan Matrix") : tr("&Matrix");
}

QWidget* MatrixPages::MakePage(MatrixKind kind, QWidget* parent) {
    return new MatrixList(m_application, *this, kind, parent);
}

void MatrixPages::SetGroup(const std::optional<MatrixGroup>& group) {
    m_group = group;
    m_regular.clear();
    m_shortLoans.clear();
    emit Loaded();
}

const QList<MatrixEntry>& MatrixPages::Entries(MatrixKind kind) const {
    return kind == MatrixKind::ShortLoan ? m_shortLoans : m_regular;
}

bool MatrixPages::AskShortLoans() {
    const std::optional<MatrixChoices> choices = ReadMatrixChoices(m_application, *m_group);
    if (choices)
        m_group->shortLoans = choices->ShortLoans();
    return choices.has_value();
}

bool MatrixPages::Load() {
    if (!m_group || (!m_group->shortLoans && !AskShortLoans()))
        return false;
    QList<MatrixEntry> regular;
    QList<MatrixEntry> shortLoans;
    const qint16 status = ReadList(
        m_application.channel,
        {.request = "LstMatPatronItem",
         .putKey =
             [this](RequestChannel& channel) {
                 channel.PutField("ID", m_group->id);
                 channel.PutField("CID", m_group->clusterId);
             },
         .report =
             [this](qint16 failure) {
                 m_application.ReportRequestFailure(failure, "Edit Policy Matrix Definitions",
                                                    "Circulation Policy Matrix");
             }},
        {{"MI", [&](RequestChannel& channel) {
              const MatrixEntry entry{channel.GetField("MI"), channel.GetField("MP"), channel.GetField("MII"),
                                      channel.GetField("MPN"), channel.GetField("MIN")};
              (m_group->shortLoans->contains(entry.itemType) ? shortLoans : regular).append(entry);
          }}});
    if (status)
        return false;
    m_regular = regular;
    m_shortLoans = shortLoans;
    emit Loaded();
    return true;
}

} // namespace sysadmin

#include "moc_frmCirculation_Matrix.cpp"
