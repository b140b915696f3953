#include "exact/ExactTables.h"

#include "support/Words.h"

#include <QDate>
#include <QDir>
#include <QFile>

#include <stdexcept>

namespace sysadmin::exact {

namespace {

/// The words of a line, taken one after the other.
class LineReader {
public:
    explicit LineReader(const QString& text)
        : m_text(text)
        , m_words(testing::SplitWords(text)) {}
    bool AtEnd() const { return m_words.isEmpty(); }
    QString Take() {
        if (m_words.isEmpty())
            throw std::runtime_error("too short: " + m_text.toStdString());
        return m_words.takeFirst();
    }
    QStringList Rest() { return std::exchange(m_words, {}); }
    [[noreturn]] void Fail(const QString& word) const {
        throw std::runtime_error("unknown word " + word.toStdString() + " in: " + m_text.toStdString());
    }

private:
    QString m_text;
    QStringList m_words;
};

Put ReadPut(const QString& word) {
    using Kind = Put::Kind;
    if (const qsizetype at = word.indexOf('='); at > 0)
        return word.mid(at + 1) == "@" ? Put{Kind::Key, word.left(at), {}}
                                       : Put{Kind::Constant, word.left(at), word.mid(at + 1)};
    if (const qsizetype at = word.indexOf('~'); at > 0)
        return {Kind::Changed, word.left(at), word.mid(at + 1)};
    if (const qsizetype at = word.indexOf('^'); at > 0)
        return {Kind::Also, word.left(at), word.mid(at + 1)};
    if (const qsizetype at = word.indexOf('>'); at > 0)
        return {Kind::WhenOn, word.left(at), word.mid(at + 1)};
    if (const qsizetype at = word.indexOf('/'); at > 0)
        return {word.endsWith('-') ? Kind::Out : Kind::In, word.left(at), word.mid(at + 1).chopped(1)};
    return {Kind::Value, word, {}};
}

QList<Put> ReadPuts(const QStringList& words) {
    QList<Put> puts;
    for (const QString& word : words)
        puts.append(ReadPut(word));
    return puts;
}

Field ReadField(const QString& kind, LineReader& line) {
    static const QHash<QString, QString Field::*> texts{
        {"initial", &Field::initial}, {"unit", &Field::unit},     {"by", &Field::by},
        {"suffix", &Field::suffix},   {"format", &Field::format}, {"loads", &Field::loads},
        {"tip", &Field::tip}};
    static const QHash<QString, QString Source::*> sourceTexts{{"from", &Source::request},
                                                               {"none", &Source::none},
                                                               {"pick", &Source::pickList},
                                                               {"report", &Source::caption},
                                                               {"unable", &Source::unable}};
    static const QHash<QString, int Field::*> numbers{{"max", &Field::max},
                                                      {"server-max", &Field::serverMax}};
    static const QHash<QString, bool Field::*> flags{
        {"required", &Field::required}, {"shown", &Field::shown}, {"edit-only", &Field::editOnly}};
    Field field;
    field.kind = kind;
    field.control = line.Take();
    if (kind == u"picked") {
        field.caption = line.Take();
        field.available = line.Take();
        field.selectedCaption = line.Take();
        field.selected = line.Take();
        field.tags = line.Take().split('/');
        field.buttons = line.Rest();
        return field;
    }
    field.tag = line.Take();
    if (kind == u"grid") {
        field.parts = line.Rest();
        return field;
    }
    field.caption = line.Take();
    while (!line.AtEnd()) {
        const QString word = line.Take();
        const QString name = word.section('=', 0, 0);
        const QString value = word.section('=', 1);
        if (const auto text = texts.find(name); text != texts.end())
            field.*(*text) = value;
        else if (const auto own = sourceTexts.find(name); own != sourceTexts.end())
            field.source.*(*own) = value;
        else if (const auto number = numbers.find(name); number != numbers.end())
            field.*(*number) = value.toInt();
        else if (const auto flag = flags.find(name); flag != flags.end())
            field.*(*flag) = true;
        else if (name == u"unique")
            field.unique = value.toShort();
        else if (name == u"range") {
            field.least = value.section("..", 0, 0).toInt();
            field.most = value.section("..", 1).toInt();
        } else if (name == u"values")
            field.values = value.split('|');
        else if (name == u"entry")
            field.entries.append({value.section(':', 0, 0), value.section(':', 1)});
        else if (name == u"tags") {
            field.source.id = value.section('/', 0, 0);
            field.source.text = value.section('/', 1);
        } else
            line.Fail(word);
    }
    return field;
}

void ReadTableLine(Table& table, const QString& word, LineReader& line) {
    const auto dash = [](const QString& text) { return text == u"-" ? QString() : text; };
    static const QStringList kinds{"text",  "flag",     "letter", "choice", "number",   "date",
                                   "lines", "interval", "picked", "other",  "password", "grid"};
    static const QHash<QString, QString Table::*> texts{
        {"frame", &Table::frame},   {"list-frame", &Table::listFrame}, {"view-frame", &Table::viewFrame},
        {"stored", &Table::stored}, {"question", &Table::question},    {"notice", &Table::notice},
        {"finds", &Table::finds}};
    if (kinds.contains(word)) {
        table.fields.append(ReadField(word, line));
    } else if (const auto text = texts.find(word); text != texts.end()) {
        table.*(*text) = line.Take();
    } else if (word == u"tab") {
        table.tab = line.Take();
        table.grid = line.Take();
    } else if (word == u"list") {
        table.list = line.Take();
        table.record = line.Take();
        for (const QString& how : line.Rest())
            if (how == u"strict" || how == u"continuing")
                table.strict = how == u"strict";
            else if (how == u"unable")
                table.unable = true;
            else if (how == u"unsorted")
                table.sorted = false;
            else if (how == u"open")
                table.open = true;
            else if (how == u"shared")
                table.sharesList = true;
            else
                line.Fail(how);
    } else if (word == u"column") {
        Column column;
        column.tag = line.Take();
        column.caption = line.Take();
        for (const QString& how : line.Rest())
            if (how == u"hidden")
                column.hidden = true;
            else if (how.startsWith("yes-no"))
                column.marks = how;
            else
                column.field = how;
        table.columns.append(column);
    } else if (word == u"get") {
        table.get = line.Take();
        if (!line.AtEnd())
            table.getKey = line.Take();
    } else if (word == u"add") {
        table.add = line.Take();
        table.adds = ReadPuts(line.Rest());
    } else if (word == u"update") {
        table.update = line.Take();
        table.updates = ReadPuts(line.Rest());
    } else if (word == u"delete") {
        table.remove = line.Take();
        table.getKey = line.Take();
    } else if (word == u"follows") {
        table.follow = line.Take();
        table.follows = ReadPuts(line.Rest());
    } else if (word == u"captions") {
        table.loadCaption = dash(line.Take());
        table.editCaption = dash(line.Take());
        table.saveCaption = dash(line.Take());
        table.deleteCaption = dash(line.Take());
    } else if (word == u"failures") {
        table.loadFailure = line.Take();
        table.saveFailure = line.Take();
    } else if (word == u"exists-as") {
        table.existsAs = line.Rest();
    } else if (word == u"picks") {
        table.pickTag = line.Take();
        table.pickLists = line.Rest();
    } else if (word == u"available") {
        Available available;
        available.request = line.Take();
        const QString tags = line.Take();
        available.id = tags.section('/', 0, 0);
        available.name = tags.section('/', 1);
        available.control = line.Take();
        available.continuing = !line.AtEnd() && line.Take() == u"continuing";
        table.available.append(available);
    } else if (word == u"words") {
        Words words;
        words.onDelete = line.Take() == u"delete";
        words.status = line.Take().toShort();
        words.text = line.Take();
        words.title = line.Take();
        table.words.append(words);
    } else if (word == u"refuses") {
        Refusal refusal;
        refusal.status = line.Take().toShort();
        refusal.kind = line.Take();
        if (!line.AtEnd()) {
            refusal.table = line.Take();
            refusal.column = line.Take();
        }
        table.refusals.append(refusal);
    } else if (word == u"gives") {
        const QString request = line.Take();
        table.given.append({request, testing::FieldsOf(line.Rest())});
    } else if (word == u"box") {
        const QString name = line.Take();
        table.frames.append({name, line.Take()});
    } else if (word == u"pages") {
        table.pages = line.Rest();
    } else if (word == u"note") {
        table.notes.append(line.Take());
    } else {
        line.Fail(word);
    }
}

void Finish(Table& table) {
    if (table.frame.isEmpty())
        table.frame = table.subject;
    if (table.getKey.isEmpty())
        table.getKey = table.record;
    if (table.notice.isEmpty())
        table.notice = table.update.mid(3);
}

} // namespace

QList<Screen> ReadTables(const QString& subsystem) {
    QFile file(QString(SYSADMIN_SOURCE_DIR) + "/tests/exact/" + subsystem + ".txt");
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + file.fileName().toStdString());
    QList<Screen> screens;
    for (const QString& text : QString::fromUtf8(file.readAll()).split('\n')) {
        if (text.trimmed().isEmpty() || text.startsWith('#'))
            continue;
        LineReader line(text.trimmed());
        const QString word = line.Take();
        if (word == u"screen") {
            Screen screen;
            screen.key = line.Take();
            screen.name = line.Take();
            screen.caption = line.Take();
            screen.area = line.Take();
            screen.told = !line.AtEnd() && line.Take() == u"told";
            screens.append(screen);
        } else if (word == u"asks") {
            const QString request = line.Take();
            screens.last().asksFirst.append({request, testing::FieldsOf(line.Rest())});
        } else if (word == u"list-puts") {
            screens.last().listPuts = testing::FieldsOf(line.Rest());
        } else if (word == u"table" || word == u"record") {
            screens.last().tables.append(Table());
            screens.last().tables.last().subject = line.Take();
            screens.last().tables.last().single = word == u"record";
        } else {
            ReadTableLine(screens.last().tables.last(), word, line);
        }
    }
    for (Screen& screen : screens)
        for (Table& table : screen.tables)
            Finish(table);
    return screens;
}

const QList<Screen>& AllScreens() {
    static const QList<Screen> screens = [] {
        QList<Screen> all;
        for (const QString& file : QDir(QString(SYSADMIN_SOURCE_DIR) + "/tests/exact")
                                       .entryList({"*.txt"}, QDir::Files, QDir::Name))
            all += ReadTables(file.chopped(4));
        return all;
    }();
    return screens;
}

const Screen& FindScreen(const QString& key) {
    for (const Screen& screen : AllScreens())
        if (screen.key == key)
            return screen;
    throw std::runtime_error("no rows for " + key.toStdString());
}

wire::Fields FieldsOf(const QList<Put>& puts, const Saving& saving) {
    using Kind = Put::Kind;
    wire::Fields fields;
    for (const Put& put : puts) {
        switch (put.kind) {
        case Kind::Value:
            fields.append(wire::Field{put.tag, saving.value(put.tag)});
            break;
        case Kind::Also:
            fields.append(wire::Field{put.tag, saving.value(put.other)});
            break;
        case Kind::Constant:
            fields.append(wire::Field{put.tag, put.other});
            break;
        case Kind::Changed:
            fields.append(wire::Field{put.tag, saving.isChanged(put.other) ? "Y" : "N"});
            break;
        case Kind::Key:
            fields.append(wire::Field{put.tag, saving.key});
            break;
        case Kind::WhenOn:
            fields.append(wire::Field{put.tag, saving.value(put.tag)});
            if (saving.value(put.tag) == u"Y")
                fields.append(wire::Field{put.other, saving.value(put.other)});
            break;
        case Kind::Out:
        case Kind::In:
            for (const QString& id : (put.kind == Kind::Out ? saving.out : saving.in)[put.tag])
                fields += {{put.tag, id}, {put.other, put.kind == Kind::Out ? "3" : "1"}};
            break;
        }
    }
    return fields;
}

QString ValueOf(const Table& table, const Field& field, int record) {
    if (!field.values.isEmpty())
        return field.values.value(record - 1);
    if (field.kind == u"flag") {
        qsizetype place = 0;
        while (&table.fields[place] != &field)
            ++place;
        return (place + record) % 2 ? "Y" : "N";
    }
    if (field.kind == u"number")
        return QString::number(field.least + record);
    if (field.kind == u"date")
        return QDate(2040, record, 10 + record).toString(field.format) + field.suffix;
    if (field.kind == u"interval")
        return field.entries.value(record % field.entries.size()).id + QString::number(record);
    if (field.kind == u"letter")
        return field.entries.value(record % field.entries.size()).id;
    if (field.kind == u"choice")
        return field.entries.isEmpty() ? QString::number(10 + record % 2)
                                       : field.entries.value(record % field.entries.size()).id;
    QString text = QString("%1 %2").arg(record).arg(field.tag);
    return field.max > 0 ? text.left(field.max) : text;
}

} // namespace sysadmin::exact
