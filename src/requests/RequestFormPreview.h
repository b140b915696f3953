#pragma once

#include <QTextBrowser>

class QTimer;

namespace sysadmin {

struct RequestFormForm;

/// The form as a patron will see it in the public catalogue, drawn from what is being entered.
class RequestFormPreview : public QTextBrowser {
    Q_OBJECT

public:
    /// The form outlives the preview.
    RequestFormPreview(const RequestFormForm& form, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Draw();

    const RequestFormForm& m_form;
    QTimer* m_later = nullptr;
};

} // namespace sysadmin
