#include "server/HistoryKeeper.h"

#include "server/Context.h"
#include "server/Library.h"
#include "server/store/Database.h"
#include "server/store/Schema.h"

namespace sysadmin::server {

namespace {

using namespace std::chrono_literals;

constexpr int RecordsAtOnce = 500;
constexpr int RequestsAtOnce = 100;
constexpr auto PieceSpacing = 20ms; ///< for others, between two pieces
const QString RemovedSetting = "history_removed";
const QString From = "history_from";

} // namespace

std::optional<HistoryBegin> ReadHistoryBegin(Database& database) {
    const qint64 removed = ReadSetting(database, RemovedSetting).toLongLong();
    return removed > 0 ? std::optional(HistoryBegin{removed, ReadSetting(database, From)}) : std::nullopt;
}

bool RemoveSomeHistory(Database& database, const QDateTime& before) {
    const QString from = StoredTime(before);
    bool isMore = false;
    RunInTransaction(database, [&] {
        // By number and not by time: numbers never go back, the clock may have.
        const QVariant kept = database.FirstValue("SELECT MIN(id) FROM history_requests WHERE at>=?", {from});
        const qint64 last = database.FirstValue("SELECT MAX(id) FROM history_requests").toLongLong();
        const QVariantList requests =
            database.FirstColumn("SELECT id FROM history_requests WHERE id<? ORDER BY id LIMIT ?",
                                 {kept.isNull() ? last : kept.toLongLong(), RequestsAtOnce});
        int left = RecordsAtOnce;
        qint64 removed = 0;
        for (const QVariant& request : requests) {
            removed = request.toLongLong();
            left -=
                database.Run("DELETE FROM history_records WHERE id IN (SELECT id FROM history_records WHERE "
                             "request_id=? ORDER BY id LIMIT ?)",
                             {request, left});
            if (left <= 0)
                break; // what is left of the request comes next
            database.Run("DELETE FROM history_requests WHERE id=?", {request});
        }
        isMore = left <= 0 || requests.size() == RequestsAtOnce;
        if (removed == 0)
            return;
        WriteSetting(database, RemovedSetting, QString::number(removed));
        WriteSetting(database, From, from);
    });
    return isMore;
}

HistoryKeeper::HistoryKeeper(std::shared_ptr<const Library> library, int days)
    : m_library(std::move(library))
    , m_thread([this, days] { Run(days); }) {}

HistoryKeeper::~HistoryKeeper() {
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
    }
    m_ends.notify_all();
    m_thread.join();
}

/// False when it is to end.
bool HistoryKeeper::WaitFor(std::chrono::milliseconds time) {
    std::unique_lock lock(m_mutex);
    return !m_ends.wait_for(lock, time, [this] { return m_isEnding; });
}

void HistoryKeeper::Run(int days) {
    std::chrono::milliseconds next = 0ms;
    while (WaitFor(next)) {
        next = 24h;
        try {
            const auto database = m_library->Connect();
            const QDateTime before = m_library->Now().addDays(-days);
            while (RemoveSomeHistory(*database, before))
                if (!WaitFor(PieceSpacing))
                    return;
        } catch (const std::exception& error) {
            m_library->Errors().Write(QString("Older entries of the history: ") + error.what());
            next = 10min;
        }
    }
}

} // namespace sysadmin::server
