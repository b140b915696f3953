#include "framework/ConflictCheck.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/forms/Field.h"
#include "framework/forms/ShownDate.h"
#include "wire/Status.h"

#include <QSet>

namespace sysadmin {

namespace {

constexpr qsizetype EntriesInFull = 6;

struct Version {
    QString caption;
    QStringList words;
    bool operator==(const Version&) const = default;
};

QList<Version> VersionOf(const Form& form) {
    QList<Version> fields;
    for (const Field* field : form.Fields())
        fields.append({field->PlainCaption(), field->Words()});
    return fields;
}

/// A field in words: whole when it is short, else what sets it apart from the one it is compared with.
QString ChangedEntries(const QStringList& words, const QStringList& stored) {
    if (words.size() <= EntriesInFull)
        return words.join('\n');
    const QSet<QString> before(stored.begin(), stored.end());
    const QSet<QString> after(words.begin(), words.end());
    QStringList lines{words.size() == 1 ? Form::tr("1 entry")
                                        : Form::tr("%n entries", nullptr, int(words.size()))};
    for (const QString& entry : words)
        if (!before.contains(entry))
            lines << "+ " + entry;
    for (const QString& entry : stored)
        if (!after.contains(entry))
            lines << QChar(0x2212) + (' ' + entry);
    constexpr qsizetype MostLines = 12;
    if (lines.size() > MostLines)
        lines = lines.first(MostLines) << QString(QChar(0x2026));
    return lines.join('\n');
}

QList<Difference> Compare(const QList<Version>& stored, const QList<Version>& mine,
                          const QList<Version>& theirs) {
    QList<Difference> differences;
    for (qsizetype i = 0; i < stored.size(); ++i) {
        const QStringList& before = stored[i].words;
        if (mine[i].words != theirs[i].words || before != theirs[i].words)
            differences.append({stored[i].caption, ChangedEntries(before, before),
                                ChangedEntries(mine[i].words, before),
                                ChangedEntries(theirs[i].words, before)});
    }
    return differences;
}

ConflictAnswer Ask(Application& application, QWidget* parent, const Conflict& conflict,
                   const QList<Difference>& differences, bool canSave) {
    ConflictDialog dialog(conflict, differences, canSave, parent);
    application.prompter.RunDialog(dialog);
    return dialog.Answer();
}

} // namespace

std::optional<Conflict> ConflictOf(const RequestChannel& channel, qint16 status, const QString& subject) {
    const Conflict conflict{.subject = subject,
                            .by = channel.GetField("ChBy"),
                            .at = channel.GetField("ChAt"),
                            .removed = status == wire::status::NotFound};
    const bool isOne = status == wire::status::RecordChanged || (conflict.removed && !conflict.by.isEmpty());
    return isOne ? std::optional(conflict) : std::nullopt;
}

ConflictAnswer SettleSave(Application& application, QWidget* parent, const Conflict& conflict, Form& form,
                          bool canSave, const std::function<bool()>& readTheirs) {
    if (conflict.removed)
        return Ask(application, parent, conflict, {}, canSave);
    const QList<Version> mine = VersionOf(form);
    QList<Version> stored;
    QList<Version> theirs;
    bool isRead = false;
    {
        // The operator goes on seeing the edit; what the form holds meanwhile is nobody's business.
        const QSignalBlocker quiet(&form);
        const Form::Loading loading(form);
        const QList<std::any> draft = form.TakeDrafts();
        form.Revert();
        stored = VersionOf(form);
        isRead = readTheirs();
        theirs = VersionOf(form);
        form.GiveDrafts(draft); // from here on it is a change of theirs
        for (Field* field : form.Fields())
            if (isRead && field->Spec().displayOnly)
                field->Revert(); // it shows the record as it is now
    }
    for (Field* field : form.Fields())
        emit form.Changed(field); // the choices may be newer ones
    if (!isRead)
        return ConflictAnswer::BackToEditing;
    if (stored == theirs)
        return ConflictAnswer::SaveMine;
    return Ask(application, parent, conflict, Compare(stored, mine, theirs), canSave);
}

QString ChangedByOthers(RequestChannel& channel, const QString& keyTag,
                        const std::function<QString(const QString& key)>& nameOf) {
    QStringList lines;
    while (channel.NextRecord(keyTag))
        lines << Form::tr("%1 (%2, %3)")
                     .arg(nameOf(channel.GetField(keyTag)), channel.GetField("ChBy"),
                          ShownDate(channel.GetField("ChAt"), WireMoment));
    return Form::tr("Others have changed these records since the list was read:") + "\r\n\r\n" +
           lines.join("\r\n");
}

ConflictAnswer SettleDelete(Application& application, QWidget* parent, const Conflict& conflict,
                            const QList<GridColumn>& columns, const GridRow& seen, const GridRow& now) {
    QList<Difference> differences;
    for (qsizetype i = 0; i < columns.size(); ++i)
        if (!columns[i].hidden && seen.cells.value(i) != now.cells.value(i))
            differences.append(
                {columns[i].caption, seen.cells.value(i), seen.cells.value(i), now.cells.value(i)});
    Conflict asked = conflict;
    asked.deletes = true;
    return Ask(application, parent, asked, differences, true);
}

} // namespace sysadmin
