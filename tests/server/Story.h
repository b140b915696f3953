#pragma once

#include "support/Stories.h"
#include "support/TestServer.h"

#include <map>

namespace sysadmin::testing {

/// Carries out a story of what passes between a server and its clients (`tests/server/stories`, README.md
/// there); each line that goes otherwise fails the test at its place in the file.
class Teller {
public:
    Teller(const Story& story, TestServer& server)
        : m_story(story)
        , m_server(server) {}
    void Tell();

private:
    void Do(const QString& line);
    void Request(QStringList words);
    void SignOn(QStringList words);
    void Guess(const QString& operatorId, int times);
    /// Compares what a reply holds with the words behind "->".
    void Expect(const wire::Reply& reply, const QStringList& words);
    void Same(const QString& what, const QString& is, const QString& wanted);
    void Fail(const QString& what);
    QString Pasted(QString line) const;
    QString Named(QString text) const;
    QString ValueOf(const QString& text, TestClient& client) const;
    TestClient& ClientOf(const QString& name);

    const Story& m_story;
    TestServer& m_server;
    std::map<QString, std::unique_ptr<TestClient>> m_clients;
    QMap<QString, QString> m_names;
    int m_line = 0;
    int m_guesses = 0;
};

} // namespace sysadmin::testing
