#pragma once

#include "framework/forms/Field.h"

#include <QHash>

#include <memory>

namespace sysadmin {

class Application;
class FormScreen;
class RequestChannel;

/// A record of which the history is asked for.
struct HistoryRecord {
    QString word; ///< of its requests: "Loc" of "GetLoc"
    QString key;  ///< by which its screen knows it; empty: it is gone, or there is one of the kind
    QString name; ///< for people
    /// Puts what the server finds it by.
    std::function<void(RequestChannel&)> putKey;
};

/// What a field of a form holds, in words and as a draft.
struct FieldState {
    QString caption;
    QStringList words;
    std::any draft{};
};
/// A record in a form, field by field.
using RecordState = QList<FieldState>;

RecordState StateOf(const Form& form);
/// Makes what the fields of these numbers held the draft of the form; all fields when no number is given.
/// Passwords stay, and what is only shown.
void BringBackInto(Form& form, const RecordState& state, const QList<int>& fields);

/// A request that changed the record.
struct HistoryEntry {
    qint64 number = 0;
    QString at; ///< in the form in which moments travel
    QString operatorId;
    QString by; ///< for people; empty: the operator is gone
    QString peer;
    QString request;
    QChar kind = 'C'; ///< added, changed, removed
};

/// A field that a request changed, in words.
struct FieldChange {
    int field = 0; ///< its number in the form
    QString caption;
    QString before;
    QString after;
};

/// The history of one record: reads the entries page by page, and what the record was between them with a
/// screen of its own that nobody sees, so that an open edit stays as it is.
class RecordHistory {
public:
    RecordHistory(Application& application, const HistoryRecord& record);
    ~RecordHistory();

    const HistoryRecord& Record() const { return m_record; }
    /// Reads the next entries; the status of the request.
    qint16 ReadMore();
    bool HasMore() const { return m_hasMore; }
    /// When the history of the record begins, in the form in which moments travel, where older changes were
    /// removed; empty when all of it is there, or there is more to be read.
    const QString& KeptFrom() const { return m_keptFrom; }
    /// Newest first.
    const QList<HistoryEntry>& Entries() const { return m_entries; }
    /// What the request of this place changed; none when that could not be read.
    std::optional<QList<FieldChange>> ChangesOf(qsizetype entry);
    /// The record before that request; none when it was not there, or could not be read.
    std::optional<RecordState> Before(qsizetype entry);
    /// Whether the operator may make that what is to be saved.
    bool MayBringBack(qsizetype entry) const;

private:
    std::optional<RecordState> StateAfter(qint64 number);

    Application& m_application;
    HistoryRecord m_record;
    QString m_row; // the server's number of the record
    QString m_key;
    std::unique_ptr<FormScreen> m_reader;
    RecordState m_blank; // what a form without a record shows
    QList<HistoryEntry> m_entries;
    QHash<qint64, RecordState> m_states; // by the request after which it was so
    bool m_hasMore = false;
    QString m_keptFrom;
};

} // namespace sysadmin
