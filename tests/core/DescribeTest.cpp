#include "core/Describe.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

template <class Widget>
Widget* Named(Widget* widget, const QString& name) {
    widget->setObjectName(name);
    return widget;
}

/// A window with one of everything, its tab order against the order of making.
class DescribeTest : public testing::Test {
protected:
    DescribeTest() {
        window.setObjectName("frmTest");
        window.setWindowTitle("Test");
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(grid);
        layout->addWidget(frame);
        layout->addWidget(tabs);
        auto* inFrame = new QVBoxLayout(frame);
        inFrame->addWidget(lblCode);
        inFrame->addWidget(txtCode);
        inFrame->addWidget(cboUnit);
        inFrame->addWidget(spnCount);
        lblCode->setBuddy(txtCode);
        lblCode->setProperty("caption", "Code:");
        txtCode->setText("AB");
        txtCode->setToolTip("Up to ten characters");
        cboUnit->addItems({"Day", "Hour"});
        cboUnit->setCurrentIndex(1);
        cboUnit->setEnabled(false);
        cmdSave->hide();
        chkHolds->setChecked(true);
        chkThird->setTristate(true);
        chkThird->setCheckState(Qt::PartiallyChecked);
        tabs->addTab(new QWidget, "&First");
        auto* second = new QWidget;
        second->setProperty("caption", "Second");
        auto* onSecond = new QVBoxLayout(second);
        onSecond->addWidget(chkHolds);
        onSecond->addWidget(chkThird);
        onSecond->addWidget(cmdSave);
        tabs->addTab(second, "Se&cond");
        grid->setHorizontalHeaderLabels({"Codes", "Names", "Secret"});
        grid->setColumnHidden(2, true);
        for (int column = 0; column < 3; ++column)
            grid->setItem(0, column, new QTableWidgetItem(QString("cell %1").arg(column)));
        QWidget::setTabOrder(txtCode, grid);
        window.show();
        description = DescribeWindow(window, "edit", 50300);
        for (const QJsonValue& control : description["controls"].toArray())
            controls.append(control.toObject());
    }

    QStringList Names() const {
        QStringList names;
        for (const QJsonObject& control : controls)
            names.append(control["name"].toString());
        return names;
    }
    QJsonObject Control(const QString& name) const { return controls.value(Names().indexOf(name)); }

    QWidget window;
    QTableWidget* grid = Named(new QTableWidget(1, 3), "vsf");
    QGroupBox* frame = Named(new QGroupBox("Edit:"), "fraEdit");
    QLabel* lblCode = Named(new QLabel("C&ode:"), "lblCode");
    QLineEdit* txtCode = Named(new QLineEdit, "txtCode");
    QComboBox* cboUnit = Named(new QComboBox, "cboUnit");
    QSpinBox* spnCount = Named(new QSpinBox, "spnCount");
    QTabWidget* tabs = Named(new QTabWidget, "tabMain");
    QCheckBox* chkHolds = Named(new QCheckBox("Allow holds"), "chkHolds");
    QCheckBox* chkThird = Named(new QCheckBox("Either"), "chkThird");
    QPushButton* cmdSave = Named(new QPushButton("&Save"), "cmdSave");
    QJsonObject description;
    QList<QJsonObject> controls;
};

TEST_F(DescribeTest, ListsEveryControlOnceInTabOrder) {
    EXPECT_EQ(description["screen"].toString(), "frmTest");
    EXPECT_EQ(description["state"].toString(), "edit");
    EXPECT_EQ(description["helpContext"].toInt(), 50300);
    QStringList names = Names();
    EXPECT_LT(names.indexOf("txtCode"), names.indexOf("vsf"));
    EXPECT_LT(names.indexOf("cboUnit"), names.indexOf("chkHolds"));
    EXPECT_LT(names.indexOf("fraEdit"), names.indexOf("lblCode")) << "what takes no focus goes by its place";
    names.sort();
    EXPECT_EQ(names, QStringList({"cboUnit", "chkHolds", "chkThird", "cmdSave", "fraEdit", "lblCode",
                                  "spnCount", "tabMain", "txtCode", "vsf"}));
}

TEST_F(DescribeTest, TellsCaptionsAsDeclared) {
    EXPECT_EQ(Control("lblCode")["text"].toString(), "Code:");
    EXPECT_EQ(Control("txtCode")["label"].toString(), "Code:");
    EXPECT_EQ(Control("txtCode")["toolTip"].toString(), "Up to ten characters");
    EXPECT_EQ(Control("cmdSave")["text"].toString(), "&Save");
    EXPECT_EQ(Control("fraEdit")["text"].toString(), "Edit:");
    EXPECT_EQ(Control("tabMain")["items"].toArray(), QJsonArray({"&First", "Second"}));
    EXPECT_EQ(Control("chkHolds")["page"].toString(), "Second");
    EXPECT_EQ(Control("txtCode")["page"].toString(), "");
}

TEST_F(DescribeTest, TellsValuesAndState) {
    EXPECT_EQ(Control("txtCode")["value"].toString(), "AB");
    EXPECT_EQ(Control("cboUnit")["value"].toString(), "Hour");
    EXPECT_EQ(Control("cboUnit")["items"].toArray(), QJsonArray({"Day", "Hour"}));
    EXPECT_FALSE(Control("cboUnit")["enabled"].toBool());
    EXPECT_EQ(Control("spnCount")["value"].toString(), "0");
    EXPECT_EQ(Control("chkHolds")["value"], QJsonValue(true));
    EXPECT_EQ(Control("chkThird")["value"], QJsonValue("partial"));
    EXPECT_TRUE(Control("chkHolds")["visible"].toBool()) << "a tab that is not chosen hides nothing";
    EXPECT_FALSE(Control("cmdSave")["visible"].toBool());
    EXPECT_EQ(Control("vsf")["columns"].toArray(), QJsonArray({"Codes", "Names"}));
    EXPECT_EQ(Control("vsf")["value"].toArray(), QJsonArray({QJsonArray({"cell 0", "cell 1"})}));
}

TEST_F(DescribeTest, WritesPictureAndDescription) {
    QTemporaryDir folder;
    EXPECT_EQ(WriteDescription(window, folder.path(), "list", 7), "");
    QFile file(folder.filePath("frmTest.list.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QJsonDocument::fromJson(file.readAll()).object()["state"].toString(), "list");
    EXPECT_EQ(QImage(folder.filePath("frmTest.list.png")).size(), window.size());
    EXPECT_NE(WriteDescription(window, folder.filePath("nowhere"), "list", 7), "");
}

} // namespace

} // namespace sysadmin
