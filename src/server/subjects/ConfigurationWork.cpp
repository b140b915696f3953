#include "server/subjects/ConfigurationWork.h"

#include "server/files/LibrarySettings.h"
#include "server/files/TableFile.h"

#include <QCryptographicHash>

namespace sysadmin::server {

namespace {

QString TagAmong(const QList<SubjectField>& fields, const QString& column) {
    for (const SubjectField& field : fields)
        if (field.column == column && field.kind != SubjectField::Kind::Joined)
            return field.tag;
    return {};
}

QString TagInRows(const QList<Children>& all, const QString& table, const QString& column) {
    for (const Children& rows : all) {
        const QString tag =
            rows.table == table ? TagAmong(rows.fields, column) : TagInRows(rows.children, table, column);
        if (!tag.isEmpty())
            return tag;
    }
    return {};
}

} // namespace

QString TablePlaces::WholeOf(QString table) const {
    for (;;) {
        const Table& declared = m_registry.GetTables().find(table).value();
        if (!declared.partOf.isEmpty())
            table = declared.partOf;
        else if (const Column* owner = declared.Find(declared.owner))
            table = owner->target;
        else
            return table;
    }
}

QString TablePlaces::WordOf(const QString& table) const {
    const RequestRule* rule = m_registry.ReadRuleOf(WholeOf(table));
    return rule ? rule->Word() : QString();
}

Area TablePlaces::AreaOf(const QString& table) const {
    const QString whole = WholeOf(table);
    const Subject* subject = m_registry.SubjectOf(whole);
    const RequestRule* rule = m_registry.ReadRuleOf(whole);
    const Area area = subject ? subject->area : rule ? rule->area : Area::AnyOperator;
    return area == Area::AnyOperator ? Area::System : area;
}

QString TablePlaces::TagOf(const QString& table, const QString& column) const {
    const Subject* subject = m_registry.SubjectOf(WholeOf(table));
    if (!subject)
        return {};
    return subject->table == table ? TagAmong(subject->fields, column)
                                   : TagInRows(subject->children, table, column);
}

ConfigurationWork::ConfigurationWork(const Library& opened, const Rights& held, std::shared_ptr<void> memory)
    : library(opened)
    , form(opened.GetRegistry().GetTables())
    , places(opened.GetRegistry())
    , rights(held)
    , share(std::move(memory)) {}

void ConfigurationWork::ReadFiles(const wire::Fields& request) {
    QMap<QString, QString> sent;
    QString name;
    for (const wire::Field& field : request)
        if (field.tag == u"F")
            sent[name = field.value];
        else if (field.tag == u"X")
            sent[name] += field.value;
        else if (field.tag == u"CT")
            chosen.append({field.value, {}});
        else if (field.tag == u"CK" && !chosen.isEmpty())
            chosen.last().key = field.value;
    for (auto file = sent.begin(); file != sent.end(); ++file) {
        const auto table = form.GetTables().constFind(file.key());
        if (table == form.GetTables().constEnd())
            fileProblems.append({file.key(), 0, "No settings are called so."});
        else if (table->content != Content::Settings)
            leftOut << file.key();
        else if (!rights.MayView(places.AreaOf(file.key())))
            notSeen.insert(file.key());
        else
            settings.insert(file.key(), ReadTableFile(form, file.key(), file->toUtf8(), fileProblems));
        file->clear();
    }
}

Settings ConfigurationWork::Present(LibrarySettings& present) const {
    Settings before;
    for (auto table = settings.constBegin(); table != settings.constEnd(); ++table)
        before.insert(table.key(), present.Read(table.key()));
    return before;
}

void ConfigurationWork::AddRightProblems() {
    for (const Difference& difference : plan.comparison.differences)
        if (!rights.MayEdit(places.AreaOf(difference.table)))
            plan.comparison.problems.append(
                {difference.table, difference.line,
                 '"' + difference.name + "\": you have no right to change these settings."});
}

QString DigestOf(const Comparison& comparison) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const auto add = [&](const QString& text) {
        hash.addData(QByteArray::number(text.size()) + ' ' + text.toUtf8());
    };
    for (const Difference& difference : comparison.differences) {
        hash.addData(QByteArray::number(int(difference.kind)));
        add(difference.table);
        add(difference.key);
        for (const ChangedCell& cell : difference.cells) {
            add(cell.column->name);
            add(cell.before);
            add(cell.after);
        }
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace sysadmin::server
