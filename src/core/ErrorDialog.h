#pragma once

#include <QDialog>

class QFrame;
class QPushButton;

namespace sysadmin {

/// A request that failed seriously: what the error dialog tells about it.
struct Failure {
    QString message;    ///< line breaks are CR LF
    QString operation;  ///< what was being done
    QString screenName; ///< the screen that asked
    int status = 0;
    QString cause = {}; ///< why it failed, where more is known than the status says
};

/// The window in which serious failures are shown, with details for whoever looks into them (`frmError`).
class ErrorDialog : public QDialog {
    Q_OBJECT

public:
    explicit ErrorDialog(const Failure& failure, QWidget* parent = nullptr);

private:
    void BuildDetails(const Failure& failure);
    void ShowDetails(bool shown);

    QFrame* fraDetails = nullptr;
    QPushButton* cmdOKCompress = nullptr;
    QPushButton* cmdDetailsExpand = nullptr;
    QPushButton* cmdDetailsCompress = nullptr;
};

} // namespace sysadmin
