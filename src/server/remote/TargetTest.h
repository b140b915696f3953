#pragma once

#include "server/Passwords.h"
#include "server/remote/RemoteResult.h"

#include <optional>

namespace sysadmin::server {

/// The attributes with which a search code is searched; 0: the type is not sent.
struct SearchAttributes {
    int use = 0;
    int relation = 0;
    int position = 0;
    int structure = 0;
    int truncation = 0;
    int completeness = 0;
    bool joinsWords = false; ///< each word is searched by itself, and all of them must be there
};

/// A Z39.50 target and what is to be tried there.
struct TargetCall {
    QString host;
    quint16 port = 0;
    QString database;
    QString user;
    std::shared_ptr<const Secret> password{}; ///< null: none
    QString characterSet;                     ///< of the records, as converters know it; empty: as they say
    SearchAttributes attributes;
    QString term; ///< empty: nothing is searched
};

/// Opens an association with the target, searches, and gets the first record.
RemoteResult TryTarget(const TargetCall& call, const Patience& patience);

/// The query in prefix notation.
QString PrefixQuery(const SearchAttributes& attributes, const QString& term);

} // namespace sysadmin::server
