#include "circulation/MatrixRemoval.h"

#include "core/Application.h"
#include "wire/Status.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace sysadmin {

MatrixRemoval::MatrixRemoval(Application& application, const MatrixGroup& group,
                             const QList<MatrixEntry>& entries)
    : m_application(application)
    , m_group(group)
    , m_entries(entries) {}

bool MatrixRemoval::Step() {
    if (m_done >= m_entries.size() || m_isLost)
        return false;
    const MatrixEntry& entry = m_entries[m_done++];
    m_application.channel.PutField("MI", entry.id);
    m_application.channel.PutField("ID", m_group.id);
    m_application.channel.PutField("CID", m_group.clusterId);
    if (const qint16 status = m_application.channel.SendRequest("DelMat")) {
        m_refused.append(entry.id);
        ++m_statuses[status];
        m_isLost = status == wire::status::CommunicationsFailure;
    }
    return m_done < m_entries.size() && !m_isLost;
}

void MatrixRemoval::ReportRefusals() {
    for (auto status = m_statuses.begin(); status != m_statuses.end(); ++status)
        m_application.ReportRequestFailure(
            status.key(), "Delete Policy Matrix Definition", "Circulation Policy Matrix",
            status.value() > 1 ? frmCirculation_MatrixRemoval::tr("%1 entries:  ").arg(status.value())
                               : QString());
}

frmCirculation_MatrixRemoval::frmCirculation_MatrixRemoval(MatrixRemoval& removal, QWidget* parent)
    : QDialog(parent)
    , m_removal(removal)
    , m_bar(new QProgressBar(this))
    , m_next(new QTimer(this)) {
    setObjectName("frmCirculation_MatrixRemoval");
    setWindowTitle(tr("Remove"));
    auto* label = new QLabel(tr("Removing matrix entries..."), this);
    m_bar->setObjectName("barRemoved");
    m_bar->setRange(0, int(removal.Count()));
    m_bar->setFormat(tr("%v of %m"));
    m_bar->setAccessibleName(label->text());
    auto* buttons = new QDialogButtonBox(this);
    auto* stop = buttons->addButton(tr("&Stop"), QDialogButtonBox::RejectRole);
    stop->setObjectName("cmdStop");
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(label);
    whole->addWidget(m_bar);
    whole->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    m_next->setSingleShot(true);
    connect(m_next, &QTimer::timeout, this, &frmCirculation_MatrixRemoval::Step);
    connect(this, &QDialog::rejected, m_next, &QTimer::stop);
    m_next->start(0);
}

// One at a time between two looks at what the operator does.
void frmCirculation_MatrixRemoval::Step() {
    const bool more = m_removal.Step();
    m_bar->setValue(int(m_removal.Done()));
    if (more)
        m_next->start(0);
    else
        accept();
}

} // namespace sysadmin

#include "moc_MatrixRemoval.cpp"
