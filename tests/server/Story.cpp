#include "Story.h"

#include "server/Context.h"
#include "support/Words.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <stdexcept>

namespace sysadmin::testing {

namespace {

/// "seal(text)" and the like: the text between the brackets.
std::optional<QString> Inside(const QString& text, const QString& function) {
    if (!text.startsWith(function + "(") || !text.endsWith(')'))
        return {};
    return text.mid(function.size() + 1).chopped(1);
}

/// The words up to the first of these; they and it are taken away.
QStringList TakeUntil(QStringList& words, const QString& end) {
    const qsizetype place = words.indexOf(end);
    const QStringList taken = words.mid(0, place);
    words = place < 0 ? QStringList() : words.mid(place + 1);
    return taken;
}

} // namespace

void Teller::Tell() {
    QString name;
    QStringList values{{}};
    for (const auto& [number, line] : m_story.lines) {
        m_line = number;
        try {
            if (line.startsWith("each ")) { // repeats the next line
                values = SplitWords(Named(line.mid(5)));
                name = values.takeFirst();
                continue;
            }
            for (const QString& value : values) {
                if (!name.isEmpty())
                    m_names[name] = value;
                Do(line);
            }
        } catch (const std::exception& error) {
            Fail(error.what());
        }
        values = QStringList{QString()};
        name.clear();
    }
}

void Teller::Do(const QString& line) {
    m_names["now"] = server::StoredTime(m_server.Now());
    m_names["shown"] = server::ShownTime(m_names["now"]);
    const QString word = line.section(' ', 0, 0);
    const QString rest = Named(line.section(' ', 1));
    const auto valueOf = [this](const QString& text) {
        return text.startsWith("SELECT ") ? m_server.Value(text) : text;
    };
    if (word == u"as")
        m_server.SignOnAs(rest);
    else if (word == u"restart")
        m_server.Restart();
    else if (word == u"advance")
        m_server.Advance(rest.toLongLong());
    else if (word == u"sql")
        m_server.GetDatabase().Run(rest);
    else if (word == u"let")
        m_names[rest.section(' ', 0, 0)] = valueOf(rest.section(' ', 1));
    else if (word == u"check")
        Same(rest, m_server.Value(rest.mid(rest.indexOf("SELECT "))), SplitWords(rest).first());
    else if (word == u"guess")
        Guess(rest.section(' ', 0, 0), rest.section(' ', 1).toInt());
    else if (word == u"sign")
        SignOn(SplitWords(rest));
    else
        Request(SplitWords(Pasted(line)));
}

/// From addresses of their own, which do not have to wait.
void Teller::Guess(const QString& operatorId, int times) {
    for (int i = 0; i < times; ++i)
        Same("a guess",
             QString::number(
                 m_server.Connect(QString("203.0.113.%1").arg(++m_guesses))->SignOn(operatorId, "guess")),
             QString::number(wire::status::InvalidSignOn));
}

/// [NAME:] OPERATOR [PASSWORD] [from PEER] [! STATUS] [-> ...]
void Teller::SignOn(QStringList words) {
    QStringList behind = words;
    QStringList taken = TakeUntil(behind, "->");
    QStringList how = taken;
    taken = TakeUntil(how, "!");
    const qint16 status = how.isEmpty() ? 0 : how.first().toShort();
    const qsizetype from = taken.indexOf("from");
    const QString peer = from < 0 ? QString("local") : taken.value(from + 1);
    taken = taken.mid(0, from < 0 ? taken.size() : from);
    const QString name = taken.first().endsWith(':') ? taken.takeFirst().chopped(1) : QString();
    auto client = m_server.Connect(peer);
    const auto reply =
        client->TrySignOn(taken.first(), taken.size() > 1 ? taken[1] : SamplePassword(taken.first()));
    if (!reply)
        throw std::runtime_error("cut off");
    Same("sign-on of " + taken.first(), QString::number(reply->status), QString::number(status));
    Expect(*reply, behind);
    if (!name.isEmpty())
        m_clients[name] = std::move(client);
}

/// [@NAME] [ask] REQUEST TAG=VALUE ... [! STATUS] [-> ...]
void Teller::Request(QStringList words) {
    TestClient& client = ClientOf(words.first().startsWith('@') ? words.takeFirst().mid(1) : QString());
    const bool outside = words.first() == u"ask";
    if (outside)
        words.removeFirst();
    QStringList behind = words;
    QStringList before = TakeUntil(behind, "->");
    QStringList how = before;
    before = TakeUntil(how, "!");
    const QString name = before.takeFirst();
    wire::Fields fields = FieldsOf(before);
    for (wire::Field& field : fields)
        field.value = ValueOf(field.value, client);
    auto reply = outside ? client.Ask(name, fields) : client.Send(name, fields);
    // What the server does beside the requests.
    static const QRegularExpression save("^(Add|Upd|Exp|Cmp|Try)");
    while (reply && reply->status == wire::status::Continues && name.contains(save) && how.value(0) != u"55")
        reply = client.Send(name, fields + wire::Fields{{"55", "Y"}});
    if (!reply)
        throw std::runtime_error("cut off");
    Same("status of " + name + " " + before.join(' '), QString::number(reply->status),
         Named(how.value(0, "0")));
    Expect(*reply, behind);
}

void Teller::Expect(const wire::Reply& reply, const QStringList& words) {
    QString recordTag;
    QString recordValue;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        if (word == u"all") { // the whole reply
            wire::Fields wanted = FieldsOf(words.mid(i + 1));
            QStringList lines[2];
            for (wire::Field& field : wanted)
                lines[0] << field.tag + "=" + Named(field.value);
            for (const wire::Field& field : reply.fields)
                lines[1] << field.tag + "=" + field.value;
            return Same("the reply", lines[1].join(' '), lines[0].join(' '));
        }
        if (const auto record = word.startsWith('[') ? std::optional(word.mid(1).chopped(1)) : std::nullopt) {
            recordTag = record->section('=', 0, 0);
            recordValue = Named(record->section('=', 1));
            continue;
        }
        static const QRegularExpression form("^(\\w+)(>|=|:|#|~|!|\\^)(.*)$",
                                             QRegularExpression::DotMatchesEverythingOption);
        const auto parts = form.match(word);
        if (!parts.hasMatch())
            throw std::runtime_error("no expectation: " + word.toStdString());
        const QString tag = parts.captured(1);
        const QChar how = parts.captured(2)[0];
        const QString value = how == '>' ? parts.captured(3) : Named(parts.captured(3));
        const QStringList values = tag == u"changed" ? reply.changed : ValuesOf(reply.fields, tag);
        const QString first =
            recordTag.isEmpty() ? values.value(0) : InRecord(reply.fields, recordTag, recordValue, tag);
        if (how == '>')
            m_names[value.section('@', 0, 0)] =
                value.contains('@') ? values.value(value.section('@', 1).toInt()) : first;
        else if (how == '=')
            Same(tag, first, value);
        else if (how == ':')
            Same(tag, values.join('|'), value);
        else if (how == '^')
            Same("last " + tag, values.value(values.size() - 1), value);
        else if (how == '#')
            Same("number of " + tag, QString::number(values.size()), value);
        else if (values.contains(value) != (how == '~'))
            Fail(tag + (how == '~' ? " lacks " : " holds ") + value);
    }
}

void Teller::Same(const QString& what, const QString& is, const QString& wanted) {
    if (is != wanted)
        Fail(what + "\n    is     " + is + "\n    wanted " + wanted);
}

void Teller::Fail(const QString& what) {
    ADD_FAILURE_AT(qPrintable(m_story.file), m_line) << what.toStdString();
}

/// With the words that stand for {names}.
QString Teller::Pasted(QString line) const {
    for (auto name = m_names.begin(); name != m_names.end(); ++name)
        line.replace("{" + name.key() + "}", *name);
    return line;
}

/// With what stands for $names.
QString Teller::Named(QString text) const {
    for (auto name = m_names.end(); name != m_names.begin();) { // longer names before their beginnings
        --name;
        text.replace("$" + name.key(), *name);
    }
    return text;
}

QString Teller::ValueOf(const QString& text, TestClient& client) const {
    const QString value = Named(text);
    if (const auto password = Inside(value, "seal"))
        return client.Seal(*password);
    if (const auto password = Inside(value, "confirm"))
        return client.Seal(*password, wire::PasswordPurpose::Confirm);
    if (const auto length = Inside(value, "letters"))
        return QString(length->toInt(), 'x');
    return value;
}

TestClient& Teller::ClientOf(const QString& name) {
    if (name.isEmpty())
        return m_server.Client();
    if (!m_clients.contains(name))
        throw std::runtime_error("nobody is called " + name.toStdString());
    return *m_clients[name];
}

} // namespace sysadmin::testing
