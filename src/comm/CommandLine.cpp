#include "comm/CommandLine.h"

#include "core/data/Tr.h"

#include <QCommandLineParser>
#include <QStandardPaths>

namespace sysadmin {

namespace {

constexpr char Server[] = "server";
constexpr char Library[] = "library";
constexpr char Operator[] = "operator";
constexpr char Trace[] = "trace";
constexpr char Describe[] = "describe";
constexpr char Tour[] = "tour";
constexpr char Appearance[] = "appearance";
constexpr char Components[] = "components";
constexpr char Help[] = "help";
constexpr char Version[] = "version";

void AddOptions(QCommandLineParser& parser) {
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(Tr("System administration of the library system."));
    parser.addOptions({
        {Server,
         Tr("Signs on to the shared settings server HOST, at port %1 unless told otherwise.")
             .arg(ServerAddress::DefaultPort),
         "HOST[:PORT]"},
        {Library, Tr("Opens the library in the folder DIR on this computer, without a server."), "DIR"},
        {Operator, Tr("The operator that the sign-on dialog starts with."), "ID"},
        {Trace, Tr("Writes each request and reply to FILE as a line of JSON, passwords masked."), "FILE"},
        {Describe, Tr("Writes a picture and a description of each screen to the folder DIR and ends."),
         "DIR"},
        {Tour, Tr("Makes a typical change and saves a picture of each step in the folder DIR, then ends."),
         "DIR"},
        {Components,
         Tr("The folder of this computer's components, instead of \"System\" beside the program. With "
            "/nocheck their versions are not checked."),
         "DIR"},
        {Appearance, Tr("light, dark, or system for the desktop's own."), "WHICH"},
        {QStringList{"h", Help}, Tr("Tells the options and ends.")},
        {QStringList{"v", Version}, Tr("Tells the version and ends.")},
    });
}

// The first thing wrong with what the parser found; empty when there is nothing.
QString FindMisuse(const QCommandLineParser& parser) {
    for (const char* name : {Server, Library, Operator, Trace, Describe, Tour, Components, Appearance}) {
        const QString option = name;
        const QStringList values = parser.values(option);
        if (values.size() > 1)
            return Tr("--%1 is given twice; give it once.").arg(option);
        if (!values.isEmpty() && (values.front().trimmed().isEmpty() || values.front().startsWith("--")))
            return Tr("--%1 needs a value after it.").arg(option);
    }
    if (const QStringList others = parser.positionalArguments(); !others.isEmpty())
        return Tr("\"%1\" is not an option; options begin with two hyphens.").arg(others.front());
    if (parser.isSet(Server) && parser.isSet(Library))
        return Tr("--server and --library exclude each other; give one of them.");
    if (parser.isSet(Describe) && parser.isSet(Tour))
        return Tr("--describe and --tour exclude each other; give one of them.");
    if (parser.isSet(Server) && !ParseServerAddress(parser.value(Server)))
        return Tr("--server does not understand \"%1\"; write HOST or HOST:PORT, as in "
                  "library.example.org:7443.")
            .arg(parser.value(Server));
    if (parser.isSet(Appearance) &&
        !QStringList{"light", "dark", "system"}.contains(parser.value(Appearance)))
        return Tr("--appearance does not know \"%1\"; choose light, dark or system.")
            .arg(parser.value(Appearance));
    return {};
}

} // namespace

ParsedCommandLine ParseCommandLine(const QStringList& arguments) {
    ParsedCommandLine parsed;
    // The parser takes the first one for the program's name.
    QStringList rest{"sysadmin"};
    for (const QString& argument : arguments) {
        if (argument.compare("/nocheck", Qt::CaseInsensitive) == 0)
            parsed.commandLine.noCheck = true;
        else
            rest.append(argument);
    }
    QCommandLineParser parser;
    AddOptions(parser);
    parsed.error = parser.parse(rest) ? FindMisuse(parser) : parser.errorText();
    if (!parsed.error.isEmpty()) {
        parsed.error += " " + Tr("\"sysadmin --help\" lists the options.");
        return parsed;
    }
    CommandLine& line = parsed.commandLine;
    if (parser.isSet(Server))
        line.server = ParseServerAddress(parser.value(Server));
    line.library = parser.value(Library);
    line.operatorId = parser.value(Operator);
    line.traceFile = parser.value(Trace);
    line.describeDir = parser.value(Describe);
    line.tourDir = parser.value(Tour);
    line.components = parser.value(Components);
    if (parser.isSet(Appearance))
        line.appearance = parser.value(Appearance);
    line.help = parser.isSet(Help);
    line.version = parser.isSet(Version);
    return parsed;
}

QString CommandLineHelp() {
    QCommandLineParser parser;
    AddOptions(parser);
    // Asked for before there is a program object, which would know the name.
    return parser.helpText().replace("<executable_name>", "sysadmin");
}

QString SampleLibraryFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/sysadmin/sample-library";
}

} // namespace sysadmin
