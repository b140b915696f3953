#include "core/Application.h"
#include "core/MainWindow.h"
#include "core/data/Tr.h"
#include "framework/WaitDialog.h"
#include "framework/forms/ReadList.h"
#include "search/ConnectionTest.h"
#include "search/FieldWeightWords.h"
#include "search/SearchScreens.h"
#include "wire/SearchDatabases.h"
#include "wire/Status.h"

#include <map>

namespace sysadmin {

namespace status = wire::status;

namespace {

qint16 CheckWeights(Application& application, QList<HealthFinding>& found) {
    QHash<QString, WeightedIndex> indexes;
    const qint16 result = ReadWeightedIndexes(application.channel, indexes);
    if (result != status::Ok)
        return result;
    QStringList codes = indexes.keys();
    codes.sort();
    for (const QString& code : codes)
        for (const QString& text : FindingsOf(indexes[code]))
            found.append(
                {code + ' ' + text, code + ": " + indexes[code].name, text, [&application](QWidget*) {
                     if (application.mainWindow)
                         application.mainWindow->OpenScreen("Search_FieldWeighting");
                 }});
    return result;
}

/// Calls all databases, some of them at the same time.
class Calls {
public:
    Calls(RequestChannel& channel, const QStringList& codes)
        : m_channel(channel)
        , m_waiting(codes) {}
    ~Calls() {
        for (auto& [code, test] : m_running)
            test.Cancel();
    }

    /// Goes on; true when all have answered or a request failed.
    bool Poll() {
        while (m_running.size() < ConnectionTest::AtOnce && !m_waiting.isEmpty()) {
            const QString code = m_waiting.takeFirst();
            m_running.try_emplace(code, m_channel, code);
        }
        for (auto test = m_running.begin(); test != m_running.end();) {
            const auto result = test->second.Poll();
            status = test->second.Status();
            if (status != status::Ok)
                return true;
            if (test->second.IsRunning()) {
                ++test;
                continue;
            }
            if (!result->IsConnected())
                failures.insert(test->first, result->Sentence());
            test = m_running.erase(test);
        }
        return m_running.empty() && m_waiting.isEmpty();
    }

    qint16 status = status::Ok;
    QMap<QString, QString> failures; ///< sentences by code

private:
    RequestChannel& m_channel;
    QStringList m_waiting;
    std::map<QString, ConnectionTest> m_running;
};

qint16 CheckDatabases(Application& application, QList<HealthFinding>& found) {
    QStringList codes;
    const auto readCode = [&](RequestChannel& reply) {
        if (const QString code = reply.GetField("C"); code != wire::databases::LocalCode)
            codes.append(code);
    };
    if (const qint16 result = ReadList(application.channel, {.request = "LstDB"}, {{"C", readCode}});
        result != status::Ok)
        return result;
    Calls calls(application.channel, codes);
    if (!calls.Poll()) {
        WaitDialog dialog(
            Tr("Health"), Tr("The search databases are called."), [&] { return calls.Poll(); },
            application.mainWindow);
        application.prompter.RunDialog(dialog);
    }
    for (auto failure = calls.failures.cbegin(); failure != calls.failures.cend(); ++failure)
        found.append(
            {failure.key(), failure.key(), failure.value(), [&application, code = failure.key()](QWidget*) {
                 if (application.mainWindow)
                     application.mainWindow->GoToRecord("DB", code, code);
             }});
    return calls.status;
}

} // namespace

QList<HealthCheck> SearchChecks() {
    return {{"weights", Tr("Field Weighting"), wire::Area::System, CheckWeights},
            {"databases", Tr("Search Databases"), wire::Area::System, CheckDatabases, true}};
}

} // namespace sysadmin
