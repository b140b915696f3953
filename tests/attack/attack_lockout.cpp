// Strangers who guess an operator's password as fast as they can, from a few addresses, while the operator
// works and signs on from an address of their own: what the strangers get looked at, and what it costs the
// operator. The connections are inside this process, since on one machine all peers would have one address.

#include "attack/AttackLibrary.h"
#include "server/store/Database.h"
#include "support/TestServer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>

#include <atomic>
#include <thread>

using namespace sysadmin;

namespace {

struct Stranger {
    qint64 tries = 0;
    qint64 lookedAt = 0;
};

void Guess(const AttackLibrary& library, const QString& peer, const std::atomic<bool>& over,
           Stranger& stranger) {
    // Ten tries are what a connection is good for.
    while (!over) {
        sysadmin::testing::TestClient client(library.Get(), peer);
        const QString guess = client.Seal("guess", wire::PasswordPurpose::SignOn);
        while (!over) {
            const auto reply = client.Ask("SignOn", {{"OI", "SYSADMIN"}, {"PW", guess}});
            if (!reply)
                break;
            ++stranger.tries;
            stranger.lookedAt += wire::FirstValue(reply->fields, "WAIT").isEmpty() ? 1 : 0;
            if (reply->status != wire::status::InvalidSignOn)
                qFatal("A stranger was let in.");
        }
    }
}

struct Operator {
    int signOns = 0;
    int refused = 0;
    int requests = 0;
    int failed = 0;
    qint64 longestSignOn = 0; ///< milliseconds
    qint64 longestRequest = 0;
};

/// One session that goes on, and one sign-on after another.
Operator Work(const AttackLibrary& library, const QString& peer, double seconds) {
    Operator figures;
    sysadmin::testing::TestClient working(library.Get(), peer);
    if (working.SignOn("SYSADMIN", sysadmin::testing::SamplePassword("SYSADMIN")) != 0)
        qFatal("The operator cannot sign on before the attack.");
    QElapsedTimer all;
    all.start();
    while (double(all.elapsed()) < seconds * 1000) {
        QElapsedTimer one;
        one.start();
        figures.failed += working.Send("LstVenTp").status != 0 ? 1 : 0;
        ++figures.requests;
        figures.longestRequest = qMax(figures.longestRequest, one.restart());
        sysadmin::testing::TestClient another(library.Get(), peer);
        const bool isIn = another.SignOn("SYSADMIN", sysadmin::testing::SamplePassword("SYSADMIN")) == 0;
        ++(isIn ? figures.signOns : figures.refused);
        figures.longestSignOn = qMax(figures.longestSignOn, one.elapsed());
        another.Ask("SignOff");
    }
    return figures;
}

void Run(const AttackLibrary& library, const QString& name, const QString& peer, int strangers,
         double seconds) {
    std::atomic<bool> over = false;
    std::vector<Stranger> figures{size_t(strangers)};
    std::vector<std::thread> threads;
    Operator worked;
    std::thread desk([&] { worked = Work(library, peer, seconds); });
    for (int i = 0; i < strangers; ++i)
        threads.emplace_back(
            [&, i] { Guess(library, QString("203.0.113.%1").arg(i % 4 + 1), over, figures[size_t(i)]); });
    desk.join();
    over = true;
    for (std::thread& thread : threads)
        thread.join();
    Stranger all;
    for (const Stranger& stranger : figures) {
        all.tries += stranger.tries;
        all.lookedAt += stranger.lookedAt;
    }
    Report(QString("%1: %2 strangers, %3 tries, %4 looked at; the operator: %5 sign-ons, %6 refused, longest "
                   "%7 ms; %8 requests, %9 failed, longest %10 ms; locked: %11")
               .arg(name)
               .arg(strangers)
               .arg(all.tries)
               .arg(all.lookedAt)
               .arg(worked.signOns)
               .arg(worked.refused)
               .arg(worked.longestSignOn)
               .arg(worked.requests)
               .arg(worked.failed)
               .arg(worked.longestRequest)
               .arg(library.Connect()
                            ->FirstValue("SELECT locked_at FROM operators WHERE operator_id='SYSADMIN'")
                            .toString()
                            .isEmpty()
                        ? "no"
                        : "yes"));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription("Guessed passwords while the operator works.");
    options.addHelpOption();
    options.addOptions({{"engine", "sqlite or postgresql.", "engine", "sqlite"},
                        {"strangers", "How many guess at once, from four addresses.", "number", "8"},
                        {"seconds", "How long each run takes.", "seconds", "10"}});
    options.process(application);
    const double seconds = qBound(1.0, options.value("seconds").toDouble(), 600.0);
    const int strangers = qBound(1, options.value("strangers").toInt(), 64);
    // The security options as they are in a new library, and without a lock.
    for (const int attempts : {5, 0}) {
        for (const char* peer : {"local", "198.51.100.7"}) {
            const AttackLibrary library(options.value("engine"));
            library.Connect()->Run("UPDATE security_options SET sign_on_attempts=?", {attempts});
            Run(library, QString("lock after %1, operator at %2").arg(attempts).arg(peer), peer, strangers,
                seconds);
        }
    }
}
