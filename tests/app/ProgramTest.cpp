#include "app/Client.h"
#include "app/Programs.h"
#include "core/ScreenCatalogue.h"
#include "server/OperatorPasswords.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

/// A picture on which nothing was painted, or next to nothing, has few colours.
bool IsBlank(const QImage& picture) {
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); y += 2)
        for (int x = 0; x < picture.width() && colours.size() < 20; x += 2)
            colours.insert(picture.pixel(x, y));
    return colours.size() < 20;
}

/// A window in one of its states, as the program describes it.
struct Description {
    QString file;
    QString screen;
    QString state;
    int helpContext = 0;
    QList<QJsonObject> controls;

    bool Has(const QString& name, const QString& property) const {
        return std::any_of(controls.begin(), controls.end(), [&](const QJsonObject& control) {
            return control["name"] == name && control[property].toBool();
        });
    }
};

Description Read(const QFileInfo& file) {
    QFile json(file.filePath());
    EXPECT_TRUE(json.open(QIODevice::ReadOnly));
    const QJsonObject object = QJsonDocument::fromJson(json.readAll()).object();
    Description description{file.completeBaseName(),
                            object["screen"].toString(),
                            object["state"].toString(),
                            object["helpContext"].toInt(),
                            {}};
    EXPECT_EQ(object.keys(), QStringList({"controls", "helpContext", "screen", "state", "title"}));
    EXPECT_EQ(description.file, description.screen + '.' + description.state);
    EXPECT_TRUE(QRegularExpression("^(list|new|edit|view)(-table[0-9])?(-[0-9]+)?$")
                    .match(description.state)
                    .hasMatch());
    EXPECT_FALSE(object["title"].toString().isEmpty());
    const QStringList keys{"accessibleName", "class", "columns", "enabled", "items", "label",  "name",
                           "page",           "role",  "text",    "toolTip", "value", "visible"};
    for (const QJsonValue& control : object["controls"].toArray()) {
        description.controls.append(control.toObject());
        EXPECT_EQ(description.controls.last().keys(), keys);
    }
    EXPECT_FALSE(description.controls.isEmpty());
    return description;
}

void CheckStates(const QList<Description>& descriptions) {
    QMap<int, QMap<QString, Description>> byContext;
    QSet<QString> screens;
    for (const Description& description : descriptions) {
        if (description.helpContext != 0)
            byContext[description.helpContext].insert(description.state, description);
        screens.insert(description.screen);
    }
    for (const char* dialog : {"frmMain", "frmSignOn", "frmError", "frmAbout", "frmPrefs",
                               "frmChangePassword", "frmLoginInformation"})
        EXPECT_TRUE(screens.contains(dialog)) << dialog;

    ScreenCatalogue catalogue;
    AddAllScreens(catalogue);
    for (const ScreenEntry& entry : catalogue.Entries()) {
        if (!entry.screen.make)
            continue;
        SCOPED_TRACE(entry.key.toStdString());
        const QMap<QString, Description> states = byContext[entry.screen.helpContext];
        EXPECT_TRUE(states.contains("edit"));
        if (!states.contains("list"))
            continue;
        EXPECT_TRUE(states.contains("view"));
        EXPECT_TRUE(states.contains("new") || !states["list"].Has("cmdNew", "visible"));
        // The states are what they are called.
        EXPECT_FALSE(states["list"].Has("cmdCancel", "enabled"));
        EXPECT_FALSE(states["edit"].Has("cmdNew", "enabled"));
        EXPECT_FALSE(states["view"].Has("cmdSave", "visible"));
    }
}

TEST(ProgramTest, DescribesEveryScreenAndAllOfThemCanBeUsed) {
    const QTemporaryDir folder;
    const ProgramResult result = RunProgram(SYSADMIN_PROGRAM, {"--describe", folder.filePath("all")});
    ASSERT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    QList<Description> descriptions;
    for (const QFileInfo& file :
         QDir(folder.filePath("all")).entryInfoList({"*.json"}, QDir::Files, QDir::Name)) {
        SCOPED_TRACE(file.fileName().toStdString());
        descriptions.append(Read(file));
        const QImage picture(file.path() + '/' + file.completeBaseName() + ".png");
        EXPECT_GE(picture.width(), 150);
        EXPECT_GE(picture.height(), 80);
        EXPECT_FALSE(IsBlank(picture));
    }
    CheckStates(descriptions);

    // Every item of the navigation leads to a topic of its own, which is a described window's.
    QFile navigation(folder.filePath("all/declarations/navigation.json"));
    ASSERT_TRUE(navigation.open(QIODevice::ReadOnly));
    QSet<QString> topics;
    for (const QJsonValue& group : QJsonDocument::fromJson(navigation.readAll()).array())
        for (const QJsonValue& item : group["items"].toArray()) {
            const QString topic = item["topic"].toString();
            SCOPED_TRACE(item["caption"].toString().toStdString());
            EXPECT_FALSE(topics.contains(topic));
            EXPECT_TRUE(std::any_of(descriptions.begin(), descriptions.end(), [&](const Description& window) {
                return QString::number(window.helpContext) == topic;
            }));
            topics.insert(topic);
        }
    EXPECT_GT(topics.size(), 70);
}

/// The password that a clear text of a trace line would give away.
QString PasswordIn(const QByteArray& text) {
    for (const server::SampleOperator& sample : server::SampleOperators())
        if (text.contains(sample.password.toUtf8()))
            return sample.password;
    return {};
}

TEST(ProgramTest, TheTourMakesItsChangeAndTheTraceTellsItWithoutPasswords) {
    const QTemporaryDir folder;
    const QString traceFile = folder.filePath("trace.jsonl");
    const QDir pictures(folder.filePath("tour"));
    const ProgramResult result =
        RunProgram(SYSADMIN_PROGRAM, {"--tour", pictures.path(), "--library", folder.filePath("library"),
                                      "--trace", traceFile});
    ASSERT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_TRUE(result.output.contains(pictures.path()));
    const QStringList names = pictures.entryList({"*.png"}, QDir::Files, QDir::Name);
    EXPECT_GE(names.size(), 10);
    for (const QString& name : names)
        EXPECT_FALSE(IsBlank(QImage(pictures.filePath(name)))) << name.toStdString();

    QFile trace(traceFile);
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    QStringList requests;
    while (!trace.atEnd()) {
        const QByteArray line = trace.readLine();
        SCOPED_TRACE(line.toStdString());
        EXPECT_EQ(PasswordIn(line), "");
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        EXPECT_EQ(object.keys(), QStringList({"ms", "put", "reply", "request", "status", "time"}));
        EXPECT_TRUE(QDateTime::fromString(object["time"].toString(), Qt::ISODateWithMs).isValid());
        EXPECT_TRUE(object["ms"].isDouble() && object["status"].isDouble());
        for (const char* fields : {"put", "reply"})
            for (const QJsonValue& field : object[fields].toArray()) {
                EXPECT_EQ(field.toArray().size(), 2);
                const QString tag = field.toArray().at(0).toString();
                if (tag == "PW" || tag == "OPW" || tag == "SID") {
                    EXPECT_EQ(field.toArray().at(1).toString(), "***");
                }
            }
        requests.append(object["request"].toString() + ' ' + QString::number(object["status"].toInt()));
    }
    EXPECT_EQ(requests, QStringList({"Hello 0", "Hello 0", "SignOn 0", "SAInit 0", "CheckMasterProfile 0",
                                     "LstMarcFieldOrderRules 0", "LstVenTp 0", "UpdVenTp 0", "AddVenTp 8",
                                     "AddVenTp 0", "DelVenTp 13", "DelVenTp 0", "UpdVenTp 0", "SignOff 0"}));
}

TEST(ProgramTest, BadOptionsGetOneLine) {
    const QStringList cases[] = {{"--bogus"},
                                 {"--server"},
                                 {"--server", "host:port"},
                                 {"--server", "host", "--library", "folder"},
                                 {"--appearance", "pink"},
                                 {"stray"}};
    for (const QStringList& arguments : cases) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const ProgramResult result = RunProgram(SYSADMIN_PROGRAM, arguments);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_TRUE(result.IsOneLineOfErrors() && result.errors.startsWith("sysadmin: "))
            << result.output.toStdString() << result.errors.toStdString();
    }
    for (const char* option : {"--help", "--version"}) {
        const ProgramResult result = RunProgram(SYSADMIN_PROGRAM, {option});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_TRUE(result.errors.isEmpty() && !result.output.isEmpty());
    }
    for (const char* option : {"--describe", "--tour"}) {
        const ProgramResult result = RunProgram(SYSADMIN_PROGRAM, {option, "/dev/null/x"});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_TRUE(result.errors.contains("cannot write to /dev/null/x")) << result.errors.toStdString();
    }
}

} // namespace
} // namespace sysadmin
