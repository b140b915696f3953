#include "support/FakeCommunication.h"

namespace sysadmin {

bool FakeCommunication::PreCheck() {
    calls.append("PreCheck");
    return preCheckResult;
}

void FakeCommunication::ShowSignOn() {
    calls.append("ShowSignOn");
}

void FakeCommunication::CloseSignOn() {
    calls.append("CloseSignOn");
}

bool FakeCommunication::PostSignOn() {
    calls.append("PostSignOn");
    return postSignOnResult;
}

void FakeCommunication::ShowLoginInformation(QWidget*) {
    calls.append("ShowLoginInformation");
}

void FakeCommunication::ChangePassword(QWidget*) {
    calls.append("ChangePassword");
}

QString FakeCommunication::EncodePassword(const QString& plain) const {
    return "sealed(" + plain + ")";
}

} // namespace sysadmin
