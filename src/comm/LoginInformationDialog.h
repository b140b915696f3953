#pragma once

#include <QDateTime>
#include <QDialog>

namespace sysadmin {

/// What "Login Information" shows.
struct LoginInformation {
    QString operatorId;
    QString operatorName;
    QString library;
    QString server;
    QString connection;
    QDateTime since;
};

/// Tells who is signed on, where and since when, and how the connection is protected.
class LoginInformationDialog : public QDialog {
    Q_OBJECT

public:
    explicit LoginInformationDialog(const LoginInformation& information, QWidget* parent = nullptr);
};

} // namespace sysadmin
