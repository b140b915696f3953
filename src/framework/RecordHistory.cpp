#include "framework/RecordHistory.h"

#include "core/Application.h"
#include "core/MainWindow.h"
#include "framework/FormScreen.h"
#include "wire/Status.h"

#include <QSet>

#include <algorithm>

namespace sysadmin {

namespace {

/// Of a list what the other one does not have; of one value that.
QString DifferenceOf(const QStringList& words, const QStringList& other) {
    if (words.size() <= 1 && other.size() <= 1)
        return words.value(0);
    const QSet<QString> known(other.begin(), other.end());
    QStringList own;
    for (const QString& entry : words)
        if (!known.contains(entry))
            own << entry;
    const bool isOrder = own.isEmpty() && words.size() == other.size();
    return (isOrder ? words : own).join("; ");
}

} // namespace

RecordState StateOf(const Form& form) {
    RecordState state;
    for (const Field* field : form.Fields())
        state.append({field->PlainCaption().isEmpty() ? field->Spec().accessible : field->PlainCaption(),
                      field->Words(), field->TakeDraft()});
    return state;
}

void BringBackInto(Form& form, const RecordState& state, const QList<int>& fields) {
    {
        const Form::Loading loading(form);
        for (int i = 0; i < qMin(form.Fields().size(), state.size()); ++i) {
            Field& field = *form.Fields()[i];
            const bool isKept = field.GetKind() == Field::Kind::Password || field.Spec().displayOnly;
            if (!isKept && state[i].draft.has_value() && (fields.isEmpty() || fields.contains(i)))
                field.GiveDraft(state[i].draft);
        }
    }
    for (Field* field : form.Fields())
        emit form.Changed(field);
}

RecordHistory::RecordHistory(Application& application, const HistoryRecord& record)
    : m_application(application)
    , m_record(record) {
    const SubjectPlace* place =
        application.mainWindow ? application.mainWindow->PlaceOf(record.word) : nullptr;
    const ScreenEntry* entry = place ? application.catalogue.Find(place->key) : nullptr;
    std::unique_ptr<Screen> screen(entry ? entry->screen.make(application, nullptr) : nullptr);
    if (auto* reader = dynamic_cast<FormScreen*>(screen.get())) {
        screen.release();
        m_reader.reset(reader);
        m_reader->LoadScreen();
        m_blank = m_reader->BlankState(record.word);
    }
}

RecordHistory::~RecordHistory() = default;

qint16 RecordHistory::ReadMore() {
    RequestChannel& channel = m_application.channel;
    channel.PutField("Sbj", m_record.word);
    m_record.putKey(channel);
    if (!m_entries.isEmpty())
        channel.PutField("Bef", QString::number(m_entries.last().number));
    const qint16 result = channel.SendRequest("LstHst");
    if (result != wire::status::Ok)
        return result;
    m_row = channel.GetField("HRow");
    m_key = m_record.key.isEmpty() ? channel.GetField("UK") : m_record.key;
    m_hasMore = channel.GetFlag("More");
    m_keptFrom = channel.GetField("Kept");
    while (channel.NextRecord("HN"))
        m_entries.append({channel.GetField("HN").toLongLong(), channel.GetField("HT"), channel.GetField("HO"),
                          channel.GetField("HB"), channel.GetField("HP"), channel.GetField("HR"),
                          channel.GetField("HK").isEmpty() ? QChar('C') : channel.GetField("HK")[0]});
    return result;
}

bool RecordHistory::MayBringBack(qsizetype entry) const {
    const bool isGone = !m_entries.isEmpty() && m_entries.first().kind == u'R';
    return m_reader && m_entries[entry].kind != u'A' && m_reader->MayBringBack(m_record.word, isGone);
}

std::optional<RecordState> RecordHistory::StateAfter(qint64 number) {
    if (!m_reader)
        return std::nullopt;
    if (const auto known = m_states.constFind(number); known != m_states.constEnd())
        return *known;
    m_application.channel.PutWithEvery(
        {{"AsOf", QString::number(number)}, {"AsSbj", m_record.word}, {"AsRow", m_row}});
    const std::optional<RecordState> state = m_reader->ReadState(m_record.word, m_key);
    m_application.channel.PutWithEvery({});
    if (state)
        m_states.insert(number, *state);
    return state;
}

std::optional<RecordState> RecordHistory::Before(qsizetype entry) {
    if (m_entries[entry].kind == u'A')
        return std::nullopt;
    const bool isLast = entry + 1 == m_entries.size();
    return StateAfter(isLast ? m_entries[entry].number - 1 : m_entries[entry + 1].number);
}

std::optional<QList<FieldChange>> RecordHistory::ChangesOf(qsizetype entry) {
    const QChar kind = m_entries[entry].kind;
    const auto before = kind == u'A' ? std::optional(m_blank) : Before(entry);
    const auto after = kind == u'R' ? std::optional(m_blank) : StateAfter(m_entries[entry].number);
    if (!before || !after)
        return std::nullopt;
    QList<FieldChange> changes;
    for (int i = 0; i < qMin(before->size(), after->size()); ++i) {
        const FieldState& was = (*before)[i];
        const FieldState& is = (*after)[i];
        if (was.words != is.words)
            changes.append({i, was.caption.isEmpty() ? is.caption : was.caption,
                            DifferenceOf(was.words, is.words), DifferenceOf(is.words, was.words)});
    }
    return changes;
}

} // namespace sysadmin
