// Peers of all bad kinds against a real server, which has to be the same process in the end and to serve
// whoever behaves. Each attack is bounded in count and time.
//
//   attack_peers messages [COUNT [SECONDS]]   malformed, senseless and refused messages (5000000, 3600 s)
//   attack_peers resets [ROUNDS]              pipelined messages with a reset in the middle (5000)
//   attack_peers memory [PEERS [SECONDS]]     signed-on peers that send messages as large as can be (200, 60
//   s)

#include "app/Programs.h"
#include "attack/AttackLibrary.h"
#include "attack/RawPeer.h"
#include "server/store/Database.h"
#include "wire/Codec.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <atomic>
#include <random>
#include <thread>

using namespace sysadmin;

namespace {

using Random = std::mt19937;

constexpr int Attackers = 4; // threads

struct Figures {
    std::atomic<qint64> messages = 0;
    std::atomic<qint64> connections = 0;
    std::atomic<qint64> refusedConnections = 0;
};

/// The server that is attacked, on a sample library that goes with it.
class Target {
public:
    bool Start() {
        return m_process.Start(m_library.ServerArguments() + QStringList{"--listen", "127.0.0.1:0"});
    }
    quint16 Port() const { return m_process.Port(); }
    QStringList Names() const { return m_library.GetLibrary().GetRegistry().RequestNames(); }
    qint64 PeakMebibytes() const { return m_process.PeakMemory() / 1024; }
    /// Whether the process that was started still serves whoever behaves.
    bool IsServing() const {
        RawPeer client(Port());
        if (!client.SignOn("SYSADMIN"))
            return false;
        const auto reply = client.Ask(1, "LstVenTp");
        return reply && reply->status == 0 && !reply->fields.isEmpty();
    }

private:
    AttackLibrary m_library{"sqlite"};
    ServerProcess m_process;
};

QString RandomText(Random& random, int most) {
    QString text;
    for (int i = int(random() % unsigned(most + 1)); i > 0; --i)
        text += QChar(ushort(random() % 4 == 0 ? random() % 0xd7ff + 1 : random() % 96 + 32));
    return text;
}

wire::Request RandomRequest(Random& random, const QStringList& names, quint64 number) {
    static const QStringList tags{"ID", "Cd", "Nm", "OCd", "NCd", "NNm", "OI", "PW", "SID", "LSt", "SOI", ""};
    static const QStringList session{"Hello", "SignOn", "Resume", "SignOff", "ChgOwnPwd", "hello", ""};
    wire::Request request;
    request.number = number;
    if (number == 0)
        request.name = random() % 64 == 0 ? session[qsizetype(random() % 7)] : RandomText(random, 12);
    else
        request.name = names[qsizetype(random() % unsigned(names.size()))];
    for (int i = int(random() % 6); i > 0; --i)
        request.fields.append({tags[qsizetype(random() % 12)], RandomText(random, 40)});
    return request;
}

/// Something at which the server should cut its peer off, or nearly.
QByteArray Damaged(Random& random, QByteArray message) {
    switch (random() % 4) {
    case 0:
        for (unsigned flips = random() % 4 + 1; flips > 0; --flips)
            message[qsizetype(random() % unsigned(message.size()))] ^= char(1 << random() % 8);
        return message;
    case 1:
        return message.left(qsizetype(random() % unsigned(message.size())));
    case 2:
        return QByteArray::fromHex("83006548656c6c6f9b") + QByteArray(8, char(random()));
    default: {
        QByteArray noise(qsizetype(random() % 300 + 1), '\0');
        for (char& byte : noise)
            byte = char(random());
        return noise;
    }
    }
}

void SendMessages(const Target& target, unsigned seed, qint64 count, const QElapsedTimer& time,
                  qint64 seconds, Figures& figures) {
    Random random(seed);
    const QStringList names = target.Names();
    qint64 told = 0;
    while (figures.messages < count && time.elapsed() < seconds * 1000) {
        if (seed == 1 && time.elapsed() / 60'000 > told) // it takes long: say once a minute that it goes on
            Report(QString("%1 min: %2 messages").arg(told = time.elapsed() / 60'000).arg(figures.messages));
        RawPeer peer(target.Port());
        ++figures.connections;
        if (!peer.IsConnected()) {
            ++figures.refusedConnections;
            continue;
        }
        quint64 number = 0;
        if (random() % 8 == 0 && peer.SignOn(random() % 2 ? "VIEWER" : "SYSADMIN"))
            number = 1;
        // Each batch is answered before the next; the last one is damaged, and sometimes nobody waits for it.
        const int batches = int(random() % 12 + 1);
        for (int batch = 0; batch < batches && peer.IsConnected(); ++batch) {
            QByteArray bytes;
            const int size = int(random() % (number == 0 ? 100 : 20) + 1);
            for (int i = 0; i < size; ++i)
                bytes += wire::Encode(RandomRequest(random, names, number == 0 ? 0 : number++));
            const bool last = batch == batches - 1;
            if (last)
                bytes += Damaged(random, wire::Encode(RandomRequest(random, names, number)));
            peer.Write(bytes);
            figures.messages += size + last;
            if (last && random() % 2 == 0)
                break;
            if (!peer.ReadAll(size))
                break;
        }
        peer.Reset();
    }
}

void SendResets(const Target& target, unsigned seed, qint64 rounds, Figures& figures) {
    Random random(seed);
    const QByteArray hello = wire::Encode(wire::Request{0, "Hello", {}});
    while (figures.connections < rounds) {
        RawPeer peer(target.Port());
        ++figures.connections;
        peer.Write(hello.repeated(20));
        figures.messages += 20;
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000));
        peer.Reset();
    }
}

/// 63 MiB of text; the most empty fields that the server lends memory for; and more than that, which it
/// refuses when it has seen the number.
enum class LargeKind { Text, ManyFields, TooManyFields };

/// Sends one message after the other, slice by slice, as fast as the server takes them.
void SendLarge(const Target& target, LargeKind kind, const QElapsedTimer& time, qint64 seconds,
               Figures& figures) {
    const QByteArray start = QByteArray::fromHex("8301684c737456656e5470"); // [1, "LstVenTp",
    const QByteArray value = QByteArray::fromHex("61567a000fffff") + QByteArray(0xfffff, 'x');
    while (time.elapsed() < seconds * 1000) {
        RawPeer peer(target.Port());
        ++figures.connections;
        if (!peer.SignOn("VIEWER")) {
            ++figures.refusedConnections;
            continue;
        }
        const bool text = kind == LargeKind::Text;
        // 63 fields, 3 Mi or 4 Mi.
        peer.Write(start + QByteArray::fromHex(text                            ? "9a0000007e"
                                               : kind == LargeKind::ManyFields ? "9a00600000"
                                                                               : "9a00800000"));
        const QByteArray slice = text ? value : QByteArray(64 * 1024, char(0x60));
        const int slices = text ? 63 : 96;
        for (int i = 0; i < slices && peer.IsConnected() && time.elapsed() < seconds * 1000; ++i)
            peer.Write(slice);
        if (peer.IsConnected() && peer.Read())
            ++figures.messages;
        else // what was refused is tried again, but the handshakes are not the attack
            std::this_thread::sleep_for(std::chrono::seconds(1));
    }
}

int Judge(const QString& attack, const Target& target, const Figures& figures, const QElapsedTimer& time) {
    const bool serving = target.IsServing();
    Report(QString(
               "%1: %2 messages on %3 connections (%4 not accepted) in %5 s; the server's peak memory was %6 "
               "MiB, and it is %7")
               .arg(attack)
               .arg(figures.messages)
               .arg(figures.connections)
               .arg(figures.refusedConnections)
               .arg(time.elapsed() / 1000)
               .arg(target.PeakMebibytes())
               .arg(serving ? "still serving" : "NOT SERVING"));
    return serving ? 0 : 1;
}

template <class Work>
void InThreads(int threads, const Work& work) {
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i)
        running.emplace_back([&work, i] { work(i); });
    for (std::thread& thread : running)
        thread.join();
}

int AttackMemory(const Target& target, int peers, qint64 seconds, const QElapsedTimer& time,
                 Figures& figures) {
    // First, since all come from one address, whose strangers make room for each other.
    RawPeer normal(target.Port());
    bool served = normal.SignOn("SYSADMIN");
    std::thread attack([&] {
        InThreads(peers, [&](int i) { SendLarge(target, LargeKind(i % 3), time, seconds, figures); });
    });
    qint64 slowest = 0;
    quint64 requests = 0;
    while (served && time.elapsed() < seconds * 1000) {
        QElapsedTimer one;
        one.start();
        const auto reply = normal.Ask(++requests, "LstVenTp");
        served = reply && reply->status == 0;
        slowest = qMax(slowest, one.elapsed());
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    attack.join();
    Report(QString("normal client: %1 requests, %2, the slowest took %3 ms")
               .arg(requests)
               .arg(served ? "all answered" : "NOT SERVED")
               .arg(slowest));
    const bool small = target.PeakMebibytes() < 512;
    return Judge("memory", target, figures, time) == 0 && served && small ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const QString attack = arguments.value(1);
    const auto number = [&](int index, qint64 otherwise) {
        const qint64 given = arguments.value(index).toLongLong();
        return given > 0 ? given : otherwise;
    };
    if (attack != "messages" && attack != "resets" && attack != "memory") {
        Report("attack_peers messages [COUNT [SECONDS]] | resets [ROUNDS] | memory [PEERS [SECONDS]]");
        return 2;
    }
    Target target;
    if (!target.Start()) {
        Report("The server to be attacked does not start.");
        return 2;
    }
    Figures figures;
    QElapsedTimer time;
    time.start();
    if (attack == "memory")
        return AttackMemory(target, int(number(2, 200)), number(3, 60), time, figures);
    InThreads(Attackers, [&](int i) {
        if (attack == "messages")
            SendMessages(target, unsigned(i + 1), number(2, 5'000'000), time, number(3, 3600), figures);
        else
            SendResets(target, unsigned(i + 1), number(2, 5000), figures);
    });
    return Judge(attack, target, figures, time);
}
