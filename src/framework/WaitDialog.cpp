#include "framework/WaitDialog.h"

#include "core/Prompter.h"
#include "wire/Status.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

WaitDialog::WaitDialog(const QString& title, const QString& text, std::function<bool()> poll, QWidget* parent)
    : QDialog(parent)
    , m_poll(std::move(poll)) {
    constexpr int Pause = 150; // milliseconds
    setObjectName("frmWait");
    setWindowTitle(title);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(new QLabel(text, this));
    auto* progress = new QProgressBar(this);
    progress->setRange(0, 0);
    progress->setTextVisible(false);
    progress->setAccessibleName(text);
    progress->setMinimumWidth(320);
    whole->addWidget(progress);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cmdCancel");
    whole->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (m_poll())
            accept();
        else if (isVisible())
            m_timer.start(Pause);
    });
    m_timer.start(Pause);
}

std::optional<qint16> SendAndWait(Prompter& prompter, QWidget* parent, const QString& title,
                                  const QString& text,
                                  const std::function<qint16(const QString& goesOn)>& send) {
    qint16 result = send({});
    if (result != wire::status::Continues)
        return result;
    WaitDialog dialog(
        title, text,
        [&] {
            result = send("Y");
            return result != wire::status::Continues;
        },
        parent);
    if (prompter.RunDialog(dialog))
        return result;
    send("N");
    return std::nullopt;
}

} // namespace sysadmin

#include "moc_WaitDialog.cpp"
