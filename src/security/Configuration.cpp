#include "security/Configuration.h"

#include "core/Application.h"
#include "framework/WaitDialog.h"
#include "wire/Status.h"
#include "wire/TextPieces.h"

#include <QDir>
#include <QSaveFile>
#include <QStringDecoder>

namespace sysadmin {

namespace {

ConfigurationDifferences ReadDifferences(const RequestChannel& channel) {
    ConfigurationDifferences read;
    ConfigurationTable* table = nullptr;
    QString tableName;
    ConfigurationColumn* column = nullptr;
    const auto last = [](auto& list) { return list.isEmpty() ? nullptr : &list.last(); };
    for (const wire::Field& field : channel.ReplyFields()) {
        const QString& value = field.value;
        ConfigurationDifference* difference = last(read.differences);
        ConfigurationDifference::Value* cell = difference ? last(difference->values) : nullptr;
        ConfigurationProblem* problem = last(read.problems);
        if (field.tag == u"T") {
            tableName = value;
            table = &read.tables[value];
        } else if (field.tag == u"W" && table)
            table->word = value;
        else if (field.tag == u"O" && table)
            table->whole = value;
        else if (field.tag == u"CC" && table)
            column = &table->columns[value];
        else if (field.tag == u"CG" && column)
            column->tag = value;
        else if (field.tag == u"CF" && column)
            column->isFlag = value == u"Y";
        else if (field.tag == u"D")
            read.differences.append({.kind = value.isEmpty() ? QChar() : value[0],
                                     .table = tableName,
                                     .key = {},
                                     .name = {},
                                     .wholeKey = {},
                                     .wholeName = {},
                                     .line = 0,
                                     .because = {}});
        else if (field.tag == u"K" && difference)
            difference->key = value;
        else if (field.tag == u"N" && difference)
            difference->name = value;
        else if (field.tag == u"U" && difference)
            difference->wholeKey = value;
        else if (field.tag == u"V" && difference)
            difference->wholeName = value;
        else if (field.tag == u"L" && difference)
            difference->line = value.toInt();
        else if (field.tag == u"Y" && difference)
            difference->because = value;
        else if (field.tag == u"C" && difference)
            difference->values.append({value, {}, {}});
        else if (field.tag == u"B" && cell)
            cell->before = value;
        else if (field.tag == u"A" && cell)
            cell->after = value;
        else if (field.tag == u"PT")
            read.problems.append({value, 0, {}});
        else if (field.tag == u"PL" && problem)
            problem->line = value.toInt();
        else if (field.tag == u"PX" && problem)
            problem->text = value;
        else if (field.tag == u"LO")
            read.leftOut << value;
        else if (field.tag == u"NV")
            read.notSeen = value.toInt();
        else if (field.tag == u"MS")
            read.missing << value;
        else if (field.tag == u"H")
            read.digest = value;
    }
    return read;
}

} // namespace

ConfigurationServer::ConfigurationServer(Application& application, RequestChannel& channel, QString library)
    : m_application(application)
    , m_channel(channel)
    , m_library(std::move(library)) {}

void ConfigurationServer::PutFiles(const ConfigurationFiles& files) {
    for (auto file = files.begin(); file != files.end(); ++file) {
        m_channel.PutField("F", file.key());
        for (const QString& piece : wire::TextPieces(*file))
            m_channel.PutField("X", piece);
    }
}

void ConfigurationServer::PutChosen(const QList<ConfigurationKey>& chosen) {
    for (const auto& [table, key] : chosen) {
        m_channel.PutField("CT", table);
        m_channel.PutField("CK", key);
    }
}

bool ConfigurationServer::Ask(QWidget* parent, const QString& request, const QString& text,
                              const std::function<void()>& putAll) {
    const std::optional<qint16> result = SendAndWait(
        m_application.prompter, parent, tr("Compare Configurations"), text, [&](const QString& goesOn) {
            if (goesOn.isEmpty())
                putAll();
            else
                m_channel.PutField("55", goesOn);
            return m_channel.SendRequest(request);
        });
    if (result && *result != wire::status::Ok)
        m_application.ReportRequestFailure(*result, tr("Compare Configurations"), m_library);
    return result == wire::status::Ok;
}

std::optional<ConfigurationFiles> ConfigurationServer::Export(QWidget* parent) {
    if (!Ask(parent, "ExpCfg", tr("Reading the settings of %1...").arg(m_library), [] {}))
        return {};
    ConfigurationFiles files;
    QString name;
    for (const wire::Field& field : m_channel.ReplyFields())
        if (field.tag == u"F")
            files[name = field.value];
        else if (field.tag == u"X")
            files[name] += field.value;
    return files;
}

std::optional<ConfigurationDifferences> ConfigurationServer::Compare(QWidget* parent,
                                                                     const ConfigurationFiles& files) {
    if (!Ask(parent, "CmpCfg", tr("Comparing with %1...").arg(m_library), [&] { PutFiles(files); }))
        return {};
    return ReadDifferences(m_channel);
}

std::optional<ConfigurationDifferences> ConfigurationServer::Try(QWidget* parent,
                                                                 const ConfigurationFiles& files,
                                                                 const QList<ConfigurationKey>& chosen) {
    const auto put = [&] {
        PutFiles(files);
        PutChosen(chosen);
    };
    if (!Ask(parent, "TryCfg", tr("Trying the copy..."), put))
        return {};
    return ReadDifferences(m_channel);
}

qint16 ConfigurationServer::Copy(const ConfigurationFiles& files, const QList<ConfigurationKey>& chosen,
                                 const QString& digest, QStringList& words) {
    PutFiles(files);
    PutChosen(chosen);
    m_channel.PutField("H", digest);
    const qint16 result = m_channel.SendRequest("CpyCfg");
    while (result == wire::status::Ok && m_channel.NextRecord("W"))
        words << m_channel.GetField("W");
    return result;
}

std::optional<ConfigurationFiles> ReadConfiguration(const QString& folder, QString& problem) {
    const auto tr = [](const char* text) { return QCoreApplication::translate("ConfigurationServer", text); };
    const QDir directory(folder);
    ConfigurationFiles files;
    for (const QString& name : directory.entryList({"*.csv"}, QDir::Files, QDir::Name)) {
        QFile file(directory.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            problem = tr("The file %1 cannot be read: %2").arg(name, file.errorString());
            return {};
        }
        QStringDecoder decode(QStringDecoder::Utf8); // leaves a byte order mark out
        const QString text = decode(file.readAll());
        if (decode.hasError()) {
            problem = tr("The file %1 is not UTF-8.").arg(name);
            return {};
        }
        files.insert(name.chopped(4), text);
    }
    if (files.isEmpty()) {
        problem = tr("There are no files of settings (*.csv) in the folder %1.")
                      .arg(QDir::toNativeSeparators(folder));
        return {};
    }
    return files;
}

QString WriteConfiguration(const ConfigurationFiles& files, const QString& folder) {
    const QDir directory(folder);
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QString name = directory.filePath(file.key() + ".csv");
        const QByteArray content = file->toUtf8();
        if (QFile there(name); there.open(QIODevice::ReadOnly) && there.readAll() == content)
            continue;
        QSaveFile written(name);
        if (!written.open(QIODevice::WriteOnly) || written.write(content) != content.size() ||
            !written.commit())
            return QDir::toNativeSeparators(name) + ": " + written.errorString();
    }
    return {};
}

} // namespace sysadmin
