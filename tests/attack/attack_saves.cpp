// Clients that all save records of their own at the same time, on a real server: how long each save takes,
// whether everybody gets the same share, and whether anybody's save fails because of others. Beside it, in
// the same run, the bare engine: one connection that commits the same change as often as it can.

#include "app/Programs.h"
#include "attack/AttackLibrary.h"
#include "attack/RawPeer.h"
#include "server/store/Database.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>

#include <barrier>
#include <mutex>
#include <thread>

using namespace sysadmin;

namespace {

struct Figures {
    std::vector<double> milliseconds;
    int failures = 0;

    QString Line(const QString& name, double seconds) {
        std::sort(milliseconds.begin(), milliseconds.end());
        if (milliseconds.empty())
            return name + ": none";
        const auto at = [&](double part) {
            return milliseconds[size_t(part * double(milliseconds.size() - 1))];
        };
        return QString("%1: %2/s, p50 %3 ms, p99 %4 ms, longest %5 ms, failed %6")
            .arg(name, -28)
            .arg(double(milliseconds.size()) / seconds, 0, 'f', 0)
            .arg(at(0.5), 0, 'f', 1)
            .arg(at(0.99), 0, 'f', 1)
            .arg(milliseconds.back(), 0, 'f', 0)
            .arg(failures);
    }
    void Add(const Figures& other) {
        milliseconds.insert(milliseconds.end(), other.milliseconds.begin(), other.milliseconds.end());
        failures += other.failures;
    }
};

/// Does the work again and again for so long.
template <class Work>
Figures Repeat(double seconds, const Work& work) {
    Figures figures;
    QElapsedTimer all;
    all.start();
    while (double(all.elapsed()) < seconds * 1000) {
        QElapsedTimer one;
        one.start();
        if (!work())
            ++figures.failures;
        figures.milliseconds.push_back(double(one.nsecsElapsed()) / 1e6);
    }
    return figures;
}

void BareEngine(const AttackLibrary& library, double seconds) {
    const auto database = library.Connect();
    int count = 0;
    Figures figures = Repeat(seconds, [&] {
        RunInTransaction(*database, [&] {
            database->Run("UPDATE vendor_types SET name=? WHERE code=?",
                          {QString("Name %1").arg(++count), "ONE"});
        });
        return true;
    });
    Report(figures.Line("bare engine, one connection", seconds));
}

void Run(const AttackLibrary& library, const QString& program, int writers, int readers, double seconds) {
    ServerProcess server;
    if (!server.Start(library.ServerArguments() + QStringList{"--listen", "127.0.0.1:0"}, program))
        qFatal("The server does not start.");
    std::vector<Figures> saves{size_t(writers)};
    std::vector<Figures> lists{size_t(readers)};
    std::barrier begin(writers + readers);
    std::mutex signingOn;
    std::vector<std::thread> threads;
    for (int i = 0; i < writers + readers; ++i)
        threads.emplace_back([&, i] {
            // One after the other: the server keeps only so many connections on which nobody has signed on.
            std::unique_lock turn(signingOn);
            RawPeer peer(server.Port());
            if (!peer.SignOn("SYSADMIN"))
                qFatal("Sign-on failed.");
            turn.unlock();
            quint64 number = 0;
            const auto send = [&](const QString& name, const wire::Fields& fields) {
                const auto reply = peer.Ask(++number, name, fields);
                if (!reply)
                    qFatal("%s was not answered.", qPrintable(name));
                return reply->status == 0;
            };
            const QString code = QString("S%1").arg(i);
            if (i < writers)
                send("AddVenTp", {{"Cd", code}, {"Nm", code}});
            begin.arrive_and_wait();
            if (i >= writers) {
                lists[size_t(i - writers)] = Repeat(seconds, [&] { return send("LstVenTp", {}); });
                return;
            }
            saves[size_t(i)] = Repeat(seconds, [&] {
                return send("UpdVenTp", {{"Cd", code},
                                         {"Nm", QString("%1 %2").arg(code).arg(number)},
                                         {"NCd", "N"},
                                         {"NNm", "Y"},
                                         {"OCd", code}});
            });
        });
    for (std::thread& thread : threads)
        thread.join();
    Figures all;
    size_t least = SIZE_MAX;
    size_t most = 0;
    for (const Figures& figures : saves) {
        all.Add(figures);
        least = qMin(least, figures.milliseconds.size());
        most = qMax(most, figures.milliseconds.size());
    }
    Report(all.Line(QString("%1 clients save").arg(writers), seconds) +
           QString(", saves per client %1 to %2").arg(least).arg(most));
    Figures reading;
    for (const Figures& figures : lists)
        reading.Add(figures);
    if (readers > 0)
        Report(reading.Line(QString("%1 clients list meanwhile").arg(readers), seconds));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription("Saves of many clients at once, beside the bare engine.");
    options.addHelpOption();
    options.addOptions({{"engine", "sqlite or postgresql.", "engine", "sqlite"},
                        {"clients", "How many save at once, one run for each.", "list", "1,16,64"},
                        {"readers", "How many others read lists meanwhile.", "number", "0"},
                        {"seconds", "How long each run takes.", "seconds", "10"},
                        {"server", "The server program.", "file", SYSADMIN_SERVER_PROGRAM}});
    options.process(application);
    const AttackLibrary library(options.value("engine"));
    const double seconds = qBound(1.0, options.value("seconds").toDouble(), 600.0);
    library.Connect()->Run("INSERT INTO vendor_types (code, name) VALUES (?, ?)", {"ONE", "One"});
    BareEngine(library, qMin(seconds, 10.0));
    const QStringList runs = options.value("clients").split(',');
    for (const QString& clients : runs)
        Run(library, options.value("server"), qBound(1, clients.toInt(), 1000),
            qBound(0, options.value("readers").toInt(), 1000), seconds);
}
