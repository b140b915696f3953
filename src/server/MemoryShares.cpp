#include "server/MemoryShares.h"

#include <algorithm>

namespace sysadmin::server {

namespace {

/// How many of a kind of share there are, and how many of them one account may have.
struct Stock {
    int all = 0;
    int ofAccount = 0;
};

Stock StockOf(MemoryShares::Share share) {
    switch (share) {
    case MemoryShares::Share::Large:
        return {16, 4};
    case MemoryShares::Share::Reply:
        return {1, 1};
    default:
        return {1, 1};
    }
}

} // namespace

MemoryShares::Share MemoryShares::ShareFor(qint64 received, qint64 decoded) {
    const qint64 bytes = received + decoded;
    if (received <= OwnReceivedBytes && bytes <= OwnBytes)
        return Share::Own;
    if (bytes <= LargeBytes)
        return Share::Large;
    return bytes <= HugeBytes ? Share::Huge : Share::Reply;
}

bool MemoryShares::IsFree(const Loan& wanted) const {
    const Stock stock = StockOf(wanted.share);
    int all = 0;
    int ofAccount = 0;
    for (const Loan& loan : m_lent) {
        if (loan.share != wanted.share)
            continue;
        ++all;
        ofAccount += loan.account == wanted.account;
    }
    return all < stock.all && ofAccount < stock.ofAccount;
}

bool MemoryShares::Ask(quint64 connection, const QString& account, Share share) {
    m_waiting.push_back({connection, account, share});
    return LendNext() == connection;
}

quint64 MemoryShares::LendNext() {
    auto next = m_waiting.end();
    const auto turnOf = [this](const Loan& loan) {
        const auto turn = m_turns.find(loan.account);
        return turn == m_turns.end() ? 0 : turn->second;
    };
    for (auto loan = m_waiting.begin(); loan != m_waiting.end(); ++loan)
        if (IsFree(*loan) && (next == m_waiting.end() || turnOf(*loan) < turnOf(*next)))
            next = loan;
    if (next == m_waiting.end())
        return 0;
    const Loan lent = *next;
    m_waiting.erase(next);
    m_lent.push_back(lent);
    m_turns[lent.account] = ++m_turn;
    return lent.connection;
}

void MemoryShares::Release(quint64 connection) {
    const auto isOfConnection = [&](const Loan& loan) { return loan.connection == connection; };
    std::erase_if(m_waiting, isOfConnection);
    if (std::erase_if(m_lent, isOfConnection) == 0)
        return;
    // Told only when all is settled: who is told may ask for more at once.
    std::vector<quint64> granted;
    while (const quint64 next = LendNext())
        granted.push_back(next);
    for (const quint64 next : granted)
        m_granted(next);
}

} // namespace sysadmin::server
