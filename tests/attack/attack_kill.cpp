// Kills a real server again and again, or one of several on one library, and tears its database away now and
// then, while clients add, change and delete records and repeat requests that were answered already. In the
// end exactly what was acknowledged must be there, once.

#include "app/Programs.h"
#include "attack/AttackLibrary.h"
#include "attack/RawPeer.h"
#include "server/store/Database.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>

#include <atomic>
#include <mutex>
#include <random>
#include <thread>

using namespace sysadmin;

namespace {

/// What all clients share.
struct Attack {
    static constexpr int MostServers = 4;
    std::array<std::atomic<quint16>, MostServers> ports{}; ///< 0 while the server is down
    int servers = 1;
    std::atomic<bool> over = false;
    std::atomic<qint64> acknowledged = 0;
    std::atomic<qint64> sentAgain = 0; ///< their answer was lost
    std::atomic<qint64> replayed = 0;  ///< their answer was there already
    std::atomic<qint64> resumed = 0;
    std::atomic<int> faults = 0;

    void Fault(const QString& text) {
        ++faults;
        Report("FAULT: " + text);
    }
};

/// One client with a session of its own, which lasts through it all. Keeps a ledger of what the server has
/// acknowledged.
class Client {
public:
    Client(Attack& attack, int number)
        : m_attack(attack)
        , m_prefix(QString("K%1-").arg(number))
        , m_random(unsigned(number) + 20'261) {}

    void Work() {
        while (!m_attack.over && m_attack.faults == 0) {
            Change();
            if (m_random() % 64 == 0)
                Compare();
        }
        Compare();
    }

    const QMap<QString, QString>& Ledger() const { return m_ledger; }

private:
    void Change() {
        const unsigned dice = m_random() % 10;
        if (m_ledger.size() < 10 || dice < 4) {
            const QString code = m_prefix + QString::number(++m_added);
            if (Send("AddVenTp", {{"Cd", code}, {"Nm", "Added as " + code}}))
                m_ledger[code] = "Added as " + code;
            return;
        }
        auto record = m_ledger.begin();
        std::advance(record, m_random() % size_t(m_ledger.size()));
        if (dice < 8) {
            const QString name = QString("Changed %1 as %2").arg(record.key()).arg(m_number);
            if (Send("UpdVenTp",
                     {{"Cd", record.key()}, {"Nm", name}, {"NCd", "N"}, {"NNm", "Y"}, {"OCd", record.key()}}))
                *record = name;
            return;
        }
        if (Send("DelVenTp", {{"Cd", record.key()}}))
            m_ledger.erase(record);
    }

    /// Sends a change until it is answered, and sometimes once more after that.
    bool Send(const QString& name, const wire::Fields& fields) {
        const auto reply = Deliver(++m_number, name, fields);
        if (!reply)
            return false;
        if (reply->status != 0) {
            m_attack.Fault(QString("%1 of %2: status %3").arg(name, fields.first().value).arg(reply->status));
            return false;
        }
        ++m_attack.acknowledged;
        if (m_random() % 4 == 0) {
            if (m_random() % 4 == 0)
                m_peer.reset(); // over another connection
            if (const auto again = Deliver(m_number, name, fields); again && again != reply)
                m_attack.Fault(name + " sent again had another answer");
            ++m_attack.replayed;
        }
        return true;
    }

    void Compare() {
        const auto reply = Deliver(++m_number, "LstVenTp", {});
        if (!reply)
            return;
        QMap<QString, QString> stored;
        for (qsizetype i = 0; i + 1 < reply->fields.size(); ++i)
            if (reply->fields[i].tag == u"Cd" && reply->fields[i].value.startsWith(m_prefix))
                stored[reply->fields[i].value] = reply->fields[i + 1].value;
        if (stored != m_ledger)
            m_attack.Fault(m_prefix + "'s records are not what was acknowledged");
    }

    std::optional<wire::Reply> Deliver(quint64 number, const QString& name, const wire::Fields& fields) {
        const QDeadlineTimer patience(std::chrono::minutes(5));
        for (bool again = false; !patience.hasExpired(); again = true) {
            if (m_attack.faults > 0)
                return {};
            if (!m_peer && !Connect()) {
                QThread::msleep(10);
                continue;
            }
            m_attack.sentAgain += again ? 1 : 0;
            auto reply = m_peer->Ask(number, name, fields);
            if (reply)
                return reply;
            m_peer.reset();
        }
        m_attack.Fault(name + " is never answered");
        return {};
    }

    bool Connect() {
        const quint16 port = m_attack.ports[m_random() % size_t(m_attack.servers)];
        if (port == 0)
            return false;
        m_peer = std::make_unique<RawPeer>(port);
        if (m_token.isEmpty()) {
            if (m_peer->IsConnected() && m_peer->SignOn("SYSADMIN")) {
                m_token = m_peer->Token();
                return true;
            }
        } else if (m_peer->IsConnected()) {
            const auto reply = m_peer->Ask(0, "Resume", {{"SID", m_token}});
            if (reply && reply->status == 0) {
                ++m_attack.resumed;
                return true;
            }
            if (reply && reply->status == 11)
                m_attack.Fault("a session did not survive");
        }
        m_peer.reset();
        return false;
    }

    Attack& m_attack;
    QString m_prefix;
    std::mt19937 m_random;
    std::unique_ptr<RawPeer> m_peer;
    QString m_token;
    QMap<QString, QString> m_ledger; ///< code to name
    quint64 m_number = 0;
    int m_added = 0;
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription("Kills a server under load; nothing may be lost or doubled.");
    options.addHelpOption();
    options.addOptions({{"engine", "sqlite or postgresql.", "engine", "sqlite"},
                        {"kills", "How often the server is killed.", "number", "1000"},
                        {"crashes", "How often PostgreSQL is, too.", "number", "0"},
                        {"servers", "How many servers there are on the library.", "number", "1"},
                        {"clients", "How many clients work.", "number", "4"},
                        {"server", "The server program.", "file", SYSADMIN_SERVER_PROGRAM},
                        {"minutes", "How long it may take at the most.", "minutes", "60"}});
    options.process(application);
    const int kills = qBound(1, options.value("kills").toInt(), 100'000);
    const int clientCount = qBound(1, options.value("clients").toInt(), 64);
    const QDeadlineTimer limit(qint64(qBound(1, options.value("minutes").toInt(), 600)) * 60'000);

    AttackLibrary library(options.value("engine"));
    const int crashes = library.Postgres() ? qBound(0, options.value("crashes").toInt(), kills) : 0;
    const qint64 historyBefore =
        library.Connect()->FirstValue("SELECT COUNT(*) FROM history_records").toLongLong();
    Attack attack;
    attack.servers = qBound(1, options.value("servers").toInt(), Attack::MostServers);
    std::vector<ServerProcess> servers{size_t(attack.servers)};
    const auto start = [&](size_t which) {
        const QString port = QString::number(servers[which].Port()); // the one that it had; at first any
        const bool isStarted =
            servers[which].Start(library.ServerArguments() + QStringList{"--listen", "127.0.0.1:" + port},
                                 options.value("server"));
        attack.ports[which] = servers[which].Port();
        return isStarted;
    };
    for (size_t which = 0; which < servers.size(); ++which)
        if (!start(which))
            qFatal("The server does not start.");
    std::vector<std::unique_ptr<Client>> clients;
    std::vector<std::thread> threads;
    for (int i = 0; i < clientCount; ++i) {
        clients.push_back(std::make_unique<Client>(attack, i));
        threads.emplace_back([client = clients.back().get()] { client->Work(); });
    }
    QElapsedTimer timer;
    timer.start();
    std::mt19937 random(20'261);
    int killed = 0;
    int crashed = 0;
    int idle = 0; // kills before which nothing was acknowledged
    while (killed < kills && attack.faults == 0 && !limit.hasExpired()) {
        const qint64 before = attack.acknowledged;
        QDeadlineTimer load(3000); // a server under load is to be killed, not an idle one
        while (attack.acknowledged < before + clientCount && !load.hasExpired())
            QThread::msleep(1);
        idle += attack.acknowledged == before ? 1 : 0;
        QThread::msleep(random() % 150);
        if (crashed < crashes * (killed + 1) / kills) {
            library.Postgres()->Crash();
            QThread::msleep(random() % 300);
            library.Postgres()->Start();
            ++crashed;
            QThread::msleep(100 + random() % 200);
        }
        const size_t which = random() % servers.size();
        attack.ports[which] = 0;
        servers[which].Kill();
        if (!start(which))
            attack.Fault("the server does not start any more");
        if (++killed % 100 == 0)
            Report(QString("%1 kills, %2 acknowledged").arg(killed).arg(attack.acknowledged));
    }
    attack.over = true;
    for (std::thread& thread : threads)
        thread.join();
    servers.clear();

    const auto database = library.Connect();
    QMap<QString, QString> wanted;
    for (const auto& client : clients)
        wanted.insert(client->Ledger());
    QMap<QString, QString> stored;
    int rows = 0;
    database->Each("SELECT code, name FROM vendor_types WHERE code LIKE ?", {"K%-%"},
                   [&](const server::ResultRow& row) {
                       stored[row.value(0).toString()] = row.value(1).toString();
                       ++rows;
                   });
    if (stored != wanted || rows != stored.size())
        attack.Fault("what is stored is not what was acknowledged");
    const qint64 carriedOut =
        database->FirstValue("SELECT COUNT(*) FROM history_records").toLongLong() - historyBefore;
    if (carriedOut != attack.acknowledged)
        attack.Fault(QString("%1 changes were carried out").arg(carriedOut));
    Report(QString::number(attack.servers) + " on " +
           QString("%1, %2 clients, %3 s: a server killed %4 times (%5 times idle), PostgreSQL %6 times; "
                   "%7 changes acknowledged, %8 carried out; %9 requests sent again without an answer, ")
               .arg(options.value("engine"))
               .arg(clientCount)
               .arg(timer.elapsed() / 1000)
               .arg(killed)
               .arg(idle)
               .arg(crashed)
               .arg(attack.acknowledged)
               .arg(carriedOut)
               .arg(attack.sentAgain) +
           QString("%1 after one, %2 sessions resumed; faults: %3")
               .arg(attack.replayed)
               .arg(attack.resumed)
               .arg(attack.faults));
    return attack.faults == 0 ? 0 : 1;
}
