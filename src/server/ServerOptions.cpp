#include "server/ServerOptions.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace sysadmin::server {

namespace {

const char HelpText[] = R"(sysadmin-server keeps a library's settings and serves them to the clients over TLS.

  --library DIR           directory of the library (default: %1)
  --database URL          keep the data in PostgreSQL: postgresql://USER@HOST:PORT/DATABASE
  --database-password-file FILE
                          file whose first line is the database user's password; else it is taken from the
                          environment variable %2, from the URL, or from where PostgreSQL's
                          own programs look (PGPASSWORD, the password file)
  --listen ADDRESS[:PORT] where to listen (default 127.0.0.1:7443; port 0 takes any free one)
  --certificate FILE      certificate chain in PEM form (default: the server makes its own)
  --key FILE              private key of that certificate in PEM form
  --sessions N            how many operators may be signed on at once (default 10000); past it the one
                          that did nothing for the longest time is signed off
  --database-connections N
                          how many requests may work with the database at once (default: four for each
                          core, from 12 to 32); a third of them are for requests that change something
  --name TEXT             what the library is called from now on, in titles and at sign-on
  --colour COLOUR         the colour that marks the library from now on in every client's window, so that a
                          test library is not taken for the live one: red, orange, yellow, green, blue,
                          purple, grey, #RRGGBB, or none
  --create-sample [partner]
                          make the sample library when there is no library yet, or a second one that the
                          first reaches at 127.0.0.1:7444
  --export DIR            write all settings as files into the directory, one for each table, and end
  --compare DIR           tell in what the library's settings differ from the files, and end; the exit
                          status is 1 when they do
  --import DIR            make the library's settings what the files say, or change nothing and tell what
                          stands against it, and end
  --dry-run               with --import: only tell what would be added, changed and removed
  --only NAME,...         with these three: only these settings, by the names of their files
  --history-keep DAYS     remove entries of the history that are older, now and once a day (default: keep
                          them for ever)
  --history-export FILE   write all changes that the history knows into a CSV file, newest first, and end
  --check                 look whether library and certificate are sound, tell what was found, and end
  --help                  show this text
  --version               show the version
)";

constexpr int MostOfLibraryName = 100;
constexpr int MostHistoryDays = 36'500;
const QStringList ColourNames{"red", "orange", "yellow", "green", "blue", "purple", "grey", "none"};

bool IsColour(const QString& text) {
    static const QRegularExpression code("^#[0-9a-f]{6}$");
    return ColourNames.contains(text) || code.match(text).hasMatch();
}

PrintAndExit Bad(const QString& text) {
    return {text + " \"sysadmin-server --help\" lists the options.", 2};
}

ServerOptions::Task TaskOf(const QString& option) {
    using Task = ServerOptions::Task;
    return option == "--export"           ? Task::Export
           : option == "--compare"        ? Task::Compare
           : option == "--import"         ? Task::Import
           : option == "--history-export" ? Task::ExportHistory
                                          : Task::None;
}

/// "127.0.0.1", "127.0.0.1:7443", "::1" or "[::1]:7443".
bool ReadListenAddress(const QString& text, ServerOptions& options) {
    QString host = text;
    QString port;
    if (text.startsWith('[')) {
        const qsizetype end = text.indexOf(']');
        host = text.mid(1, end - 1);
        const QString rest = end < 0 ? QString("?") : text.mid(end + 1);
        if (!rest.isEmpty() && !rest.startsWith(':'))
            return false;
        port = rest.mid(1);
        if (rest == ":")
            return false;
    } else if (text.count(':') == 1) {
        host = text.section(':', 0, 0);
        port = text.section(':', 1);
        if (port.isEmpty())
            return false;
    }
    if (!options.address.setAddress(host == "localhost" ? QString("127.0.0.1") : host))
        return false;
    if (port.isEmpty())
        return true;
    bool valid = false;
    options.port = port.toUShort(&valid);
    return valid;
}

/// The first line of the file; none, with one line, when it cannot be had.
std::optional<QString> ReadPasswordFile(const QString& fileName, QString* error) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = "The password file " + fileName + " cannot be read: " + file.errorString() + '.';
        return std::nullopt;
    }
    QString line = QString::fromUtf8(file.readLine(4096));
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    if (line.isEmpty()) {
        *error = "The first line of the password file " + fileName + " is empty.";
        return std::nullopt;
    }
    return line;
}

/// Finds the password of the database; an empty text, or why there is none.
QString FindPassword(StoreAddress& address, const QString& passwordFile) {
    if (!passwordFile.isEmpty()) {
        if (!address.password.isEmpty())
            return "Either --database or --database-password-file tells the password, not both.";
        QString error;
        const auto password = ReadPasswordFile(passwordFile, &error);
        if (!password)
            return error;
        address.password = *password;
    } else if (address.password.isEmpty()) {
        address.password = qEnvironmentVariable(DatabasePasswordVariable);
    }
    return {};
}

} // namespace

std::variant<ServerOptions, PrintAndExit> ReadOptions(const QStringList& arguments,
                                                      const QString& defaultDirectory) {
    ServerOptions options;
    QString directory;
    QString database;
    QString passwordFile;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        QString name = arguments[i];
        if (name == "--help")
            return PrintAndExit{
                QString(HelpText)
                    .arg(QDir::toNativeSeparators(defaultDirectory), QString(DatabasePasswordVariable))
                    .trimmed(),
                0};
        if (name == "--version")
            return PrintAndExit{"sysadmin-server " SYSADMIN_VERSION, 0};
        if (name == "--dry-run") {
            options.dryRun = true;
            continue;
        }
        if (name == "--create-sample" || name == "--check") {
            (name == "--check" ? options.check : options.createSample) = true;
            if (name == "--create-sample" && arguments.value(i + 1) == u"partner") {
                options.createPartner = true;
                ++i;
            }
            continue;
        }
        static const QStringList withValue{"--library",
                                           "--database",
                                           "--database-password-file",
                                           "--listen",
                                           "--certificate",
                                           "--key",
                                           "--sessions",
                                           "--database-connections",
                                           "--name",
                                           "--colour",
                                           "--export",
                                           "--compare",
                                           "--import",
                                           "--only",
                                           "--history-keep",
                                           "--history-export"};
        QString value;
        if (const qsizetype equals = name.indexOf('='); name.startsWith("--") && equals > 0) {
            value = name.mid(equals + 1);
            name.truncate(equals);
        } else if (withValue.contains(name) && i + 1 < arguments.size() &&
                   !arguments[i + 1].startsWith("--")) {
            value = arguments[++i];
        }
        if (!withValue.contains(name))
            return Bad(name.startsWith('-')
                           ? "The option \"" + name + "\" is not known."
                           : '"' + name + "\" is not an option; options begin with two hyphens.");
        if (value.isEmpty())
            return Bad("The option " + name + " needs a value after it.");
        if (name == "--library")
            directory = value;
        else if (name == "--database")
            database = value;
        else if (name == "--database-password-file")
            passwordFile = value;
        else if (const auto task = TaskOf(name); task != ServerOptions::Task::None) {
            if (options.task != ServerOptions::Task::None)
                return Bad(
                    "Only one of --export, --compare, --import and --history-export can be done at a time.");
            options.task = task;
            (task == ServerOptions::Task::ExportHistory ? options.historyFile : options.folder) = value;
        } else if (name == "--only")
            options.only = value.split(',', Qt::SkipEmptyParts);
        else if (name == "--certificate")
            options.certificateFile = value;
        else if (name == "--key")
            options.keyFile = value;
        else if (name == "--history-keep") {
            options.historyKeep = value.toInt();
            if (options.historyKeep < 1 || options.historyKeep > MostHistoryDays)
                return Bad(
                    QString("--history-keep needs a number of days from 1 to %1.").arg(MostHistoryDays));
        } else if (name == "--sessions") {
            options.sessions = value.toInt();
            if (options.sessions < 1 || options.sessions > 100'000)
                return Bad("--sessions needs a number from 1 to 100000.");
        } else if (name == "--database-connections") {
            options.databaseConnections = value.toInt();
            if (options.databaseConnections < 4 || options.databaseConnections > 200)
                return Bad("--database-connections needs a number from 4 to 200.");
        } else if (name == "--name") {
            options.name = value.trimmed();
            if (options.name.isEmpty() || options.name.size() > MostOfLibraryName)
                return Bad(QString("--name needs 1 to %1 characters.").arg(MostOfLibraryName));
        } else if (name == "--colour") {
            options.colour = value.toLower();
            if (!IsColour(options.colour))
                return Bad("--colour needs one of " + ColourNames.join(", ") + ", or #RRGGBB.");
        } else if (!ReadListenAddress(value, options))
            return Bad("--listen needs an address and maybe a port, as in 0.0.0.0:7443 or [::1]:7443.");
    }
    if (!directory.isEmpty() && !database.isEmpty())
        return Bad("Either --library or --database says where the library is, not both.");
    if (database.isEmpty() && !passwordFile.isEmpty())
        return Bad("--database-password-file belongs to --database, which is not given.");
    if (options.check && options.createSample)
        return Bad("--check changes nothing, so it does not go with --create-sample.");
    if (options.check && !(options.name + options.colour).isEmpty())
        return Bad("--check changes nothing, so it does not go with --name and --colour.");
    const bool isOfHistory = options.task == ServerOptions::Task::ExportHistory;
    if ((options.task == ServerOptions::Task::None || isOfHistory) && !options.only.isEmpty())
        return Bad("--only belongs to --export, --compare or --import, and none of them is given.");
    if (options.task != ServerOptions::Task::Import && options.dryRun)
        return Bad("--dry-run belongs to --import, which is not given; --compare changes nothing anyway.");
    if (options.task != ServerOptions::Task::None &&
        (options.check || options.createSample || !(options.name + options.colour).isEmpty()))
        return Bad("--export, --compare, --import and --history-export do only that: leave --check, "
                   "--create-sample, --name and --colour out.");
    if (options.historyKeep != 0 && (options.check || options.task != ServerOptions::Task::None))
        return Bad(
            "--history-keep is for a server that serves: leave --check, --export, --compare, --import and "
            "--history-export out.");
    if (options.certificateFile.isEmpty() != options.keyFile.isEmpty())
        return Bad("--certificate and --key go together.");
    if (database.isEmpty()) {
        options.library = StoreAddress::InDirectory(directory.isEmpty() ? defaultDirectory : directory);
        return options;
    }
    QString error;
    auto address = StoreAddress::FromUrl(database, &error);
    if (!address)
        return Bad(error);
    if (error = FindPassword(*address, passwordFile); !error.isEmpty())
        return Bad(error);
    options.library = *address;
    return options;
}

} // namespace sysadmin::server
