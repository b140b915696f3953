#pragma once

#include "server/store/Records.h"

#include <QRandomGenerator>

#include <functional>

namespace sysadmin::testing {

/// Changes records of a library at random, as requests do: with an author, so that the history knows, and
/// behind the back of the rules that requests keep.
class RecordChanger {
public:
    RecordChanger(server::Database& database, const server::Tables& tables);

    /// Changes something of the record or of its parts; false when there was nothing that could be.
    bool Change(const server::RecordName& record);
    /// Does the work as one request; false when the database refused it.
    bool Try(const std::function<void(server::Records&)>& work);

private:
    void AddParts(const server::RecordName& record, QList<server::RecordName>& rows);
    QVariant NewValue(const server::Table& table, const server::Column& column, const QVariant& value);
    bool TryTo(const server::RecordName& row, bool isPart);

    server::Database& m_database;
    const server::Tables& m_tables;
    QRandomGenerator m_random;
};

} // namespace sysadmin::testing
