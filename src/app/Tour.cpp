#include "app/Tour.h"

#include "app/Robot.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QTest>

namespace sysadmin {

namespace {

/// Chooses a screen in the navigation bar by typing its name.
void OpenScreen(Robot& robot, const QString& caption) {
    robot.Type("txtFindScreen", caption);
    robot.Press("txtFindScreen", Qt::Key_Return);
}

} // namespace

void PlanTour(Robot& robot) {
    robot.Picture("frmSignOn", "sign-on");
    robot.Type("txtOperator", "SYSADMIN");
    robot.Type("txtPassword", "sample-admin-1");
    robot.Click("cmdOK");
    robot.Then("frmMain", [](QWidget& window) { window.resize(1180, 760); });
    robot.Picture("txtFindScreen", "main-window");
    OpenScreen(robot, "Vendor Types");
    robot.Picture("vsf", "vendor-types");

    robot.SelectRow("vsf", "BOOK");
    robot.Click("cmdEdit");
    robot.Type("txtName", "Bookseller and Bookshop");
    robot.Picture("cmdSave", "edit");
    robot.Click("cmdSave");
    robot.Picture("cmdNew", "saved");

    robot.Click("cmdNew");
    robot.Type("txtCode", "BOOK");
    robot.Type("txtName", "Second-hand Books");
    robot.Press("txtName", Qt::Key_S, Qt::ControlModifier);
    robot.Picture("msgBox", "duplicate-code");
    robot.Answer("OK");
    robot.Type("txtCode", "USED");
    robot.Picture("cmdSave", "new");
    robot.Click("cmdSave");

    robot.SelectRow("vsf", "PUB");
    robot.Press("vsf", Qt::Key_Delete);
    robot.Picture("msgBox", "delete-question");
    robot.Answer("Yes");
    robot.Picture("msgBox", "in-use");
    robot.Answer("OK");
    robot.SelectRow("vsf", "USED");
    robot.Press("vsf", Qt::Key_Delete);
    robot.Answer("Yes");
    robot.Picture("cmdNew", "deleted");

    robot.SelectRow("vsf", "BOOK");
    robot.Press("vsf", Qt::Key_Return);
    robot.Type("txtName", "Bookseller");
    robot.Click("cmdSave");
    robot.Picture("cmdNew", "name-as-before");
    robot.Then("frmMain", [](QWidget& window) { window.close(); });
}

} // namespace sysadmin
