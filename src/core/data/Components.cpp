#include "core/data/Components.h"

#include "core/data/FileVersions.h"
#include "core/data/Tr.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>

namespace sysadmin {

namespace {

constexpr QChar Between = u'~';
constexpr int FieldsOfEntry = 4;

/// Four numbers with points between them; none for anything else.
std::optional<QVersionNumber> FourNumbers(const QString& text) {
    qsizetype end = 0;
    const QVersionNumber version = QVersionNumber::fromString(text, &end);
    if (version.segmentCount() != 4 || end != text.size())
        return std::nullopt;
    return version;
}

bool Suits(const RequiredComponent& component, const QVersionNumber& found) {
    return component.exact ? found == component.required : found >= component.minimum;
}

} // namespace

QString ComponentTable() {
    return "Tessary2010-30.dll~2010.30.0.2003~2010.30.0.2003~=~"
           "HeadingForge2009.11-151.dll~3.2.0.151~3.2.0.151~=~"
           "ActBar.OCX~1.0.6.5~1.0.6.5~+~"
           "Comdlg32.OCX~6.0.81.69~6.0.81.69~+~"
           "Ctmeter.OCX~2.0.0.1~2.0.0.1~+~"
           "Ctmonth.OCX~3.0.0.1~3.0.0.1~+~"
           "Ctruler.OCX~2.0.0.1~2.0.0.1~+~"
           "Ctsched.OCX~2.0.0.1~2.0.0.1~+~"
           "Ctyear.OCX~2.3.0.1~2.3.0.1~+~"
           "Edt32x30.OCX~3.0.0.35~3.0.0.35~+~"
           "KLV_UnicodeTree.ocx~1.0.0.92~1.0.0.92~=~"
           "KLVUCTBX.OCX~2.0.0.7~2.0.0.7~=~"
           "gttree32.OCX~1.0.0.55~1.0.0.55~+~"
           "Mscomctl.OCX~6.0.88.62~6.0.88.62~+~"
           "Mscomct2.OCX~6.0.88.4~6.0.88.4~+~"
           "MsgHook.OCX~2.0.0.0~2.0.0.0~+~"
           "VsFlex7L.OCX~7.0.1.165~7.0.1.165~+~"
           "VsVIEW6.OCX~6.0.0.61~6.0.0.61~+~"
           "SSLstBar.OCX~1.0.2.5~1.0.0.0~+~"
           "sstran30.OCX~3.0.0.34~3.0.0.0~+~"
           "sssplt30.OCX~3.0.0.34~3.0.0.0~+~"
           "SizerOne.OCX~7.0.0.16~7.0.0.16~+~"
           "Vsstr7.OCX~7.0.1.150~7.0.1.150~+~"
           "VsFlex7N.OCX~7.0.1.165~7.0.1.165~+";
}

ComponentList ReadComponentTable(const QString& table) {
    const QStringList fields = table.split(Between);
    ComponentList list;
    for (qsizetype i = 0; i + FieldsOfEntry <= fields.size(); i += FieldsOfEntry) {
        const auto required = FourNumbers(fields[i + 1]);
        const auto minimum = FourNumbers(fields[i + 2]);
        const QString& rule = fields[i + 3];
        if (!fields[i].isEmpty() && required && minimum && (rule == u"=" || rule == u"+"))
            list.components.append({fields[i], *required, *minimum, rule == u"="});
    }
    list.isWhole = fields.size() == list.components.size() * FieldsOfEntry;
    return list;
}

QString SystemFolder() {
    return QCoreApplication::applicationDirPath() + "/System";
}

QString FindComponent(const QString& folder, const QString& file) {
    const QDir dir(folder);
    for (const QString& each : dir.entryList(QDir::Files))
        if (each.compare(file, Qt::CaseInsensitive) == 0)
            return dir.filePath(each);
    return {};
}

QList<ComponentFinding> CheckComponents(const QList<RequiredComponent>& components, const QString& folder) {
    QList<ComponentFinding> findings;
    for (const RequiredComponent& component : components) {
        const auto find = [&](const QString& condition) { findings.append({component.file, condition}); };
        const QString path = FindComponent(folder, component.file);
        if (path.isEmpty()) {
            find(Tr("File is missing."));
            continue;
        }
        QFile file(path);
        const auto versions = file.open(QIODevice::ReadOnly) ? ReadFileVersions(file) : std::nullopt;
        if (!versions) {
            find(Tr("No version Info."));
            continue;
        }
        if (!Suits(component, versions->file))
            find(Tr("Wrong File Version:  (") + versions->file.toString() + ")");
        if (!Suits(component, versions->product))
            find(Tr("Wrong Product Version:  (") + versions->product.toString() + ")");
    }
    return findings;
}

// A program that cannot be run is no reason to stay away: the check says what it left undone.
void RunAndWait(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    if (process.waitForStarted(-1))
        process.waitForFinished(-1);
}

void RegisterComponents(const QString& folder, const ProgramRunner& run) {
    const QDir dir(folder);
    QStringList paths;
    for (const char* control : {"KLV_UnicodeTree.ocx", "KLVUCTBX.ocx"})
        if (const QString path = FindComponent(folder, control); !path.isEmpty())
            paths.append(path);
    // Names are compared regardless of case.
    for (const char* library : {"Tessary", "HeadingForge", "Vardle"})
        for (const QString& file : dir.entryList({QString(library) + "*dll"}, QDir::Files, QDir::Name))
            paths.append(dir.filePath(file));
    for (const QString& path : paths)
        run(dir.filePath("ComUtil.exe"), {"/c", QDir::toNativeSeparators(path)});
}

} // namespace sysadmin
