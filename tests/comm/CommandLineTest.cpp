#include "comm/CommandLine.h"

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

TEST(CommandLine, TakesEveryOptionApart) {
    const ParsedCommandLine parsed = ParseCommandLine(
        {"--server", "Library.example.org:7500", "--operator=SYSADMIN", "--trace", "/t/x y.jsonl", "/NoCheck",
         "--describe", "out", "--appearance", "dark", "--components", "c:/controls"});
    ASSERT_EQ(parsed.error, QString());
    const CommandLine& line = parsed.commandLine;
    EXPECT_EQ(line.server, (ServerAddress{"library.example.org", 7500}));
    EXPECT_EQ(line.operatorId, "SYSADMIN");
    EXPECT_EQ(line.traceFile, "/t/x y.jsonl");
    EXPECT_EQ(line.describeDir, "out");
    EXPECT_EQ(line.appearance, "dark");
    EXPECT_EQ(line.components, "c:/controls");
    EXPECT_TRUE(line.noCheck);
    EXPECT_FALSE(line.help || line.version);

    const CommandLine other =
        ParseCommandLine({"--library", "/srv/nocheck", "--tour", "t", "-h"}).commandLine;
    EXPECT_EQ(other.library, "/srv/nocheck");
    EXPECT_EQ(other.tourDir, "t");
    EXPECT_TRUE(other.help);
    EXPECT_FALSE(other.noCheck || other.server);
    EXPECT_TRUE(other.appearance.isEmpty());
    EXPECT_EQ(ParseCommandLine({}).error, QString());
}

TEST(CommandLine, SaysInOneLineWhatIsWrongAndHowToDoItRight) {
    const std::pair<QStringList, QString> wrong[] = {
        // the line names the second
        {{"--sever", "x"}, "sever"},
        {{"--operator", "/nocheck"}, "operator"},
        {{"--trace", "--operator", "X"}, "--trace needs"},
        {{"--library", ""}, "--library needs"},
        {{"--server", "a", "--server", "b"}, "twice"},
        {{"--server", "a", "--library", "b"}, "exclude"},
        {{"--describe", "a", "--tour", "b"}, "exclude"},
        {{"--appearance", "blue"}, "light, dark or system"},
        {{"--help=now"}, "help"},
    };
    for (const auto& [arguments, named] : wrong) {
        const QString error = ParseCommandLine(arguments).error;
        EXPECT_TRUE(error.contains(named))
            << arguments.join(' ').toStdString() << ": " << error.toStdString();
        EXPECT_TRUE(error.contains("--help")) << error.toStdString();
        EXPECT_FALSE(error.contains('\n'));
    }
}

TEST(ServerAddress, IsHostOrHostAndPort) {
    const std::pair<QString, QString> cases[] = {
        {"localhost", "localhost:7443"}, {" 10.0.0.7:1 ", "10.0.0.7:1"},
        {"h:65535", "h:65535"},          {"[::1]:7500", "[::1]:7500"},
        {"[fe80::1]", "[fe80::1]:7443"}, {"bücherei.example", "xn--bcherei-n2a.example:7443"},
    };
    for (const auto& [text, shown] : cases) {
        const std::optional<ServerAddress> address = ParseServerAddress(text);
        ASSERT_TRUE(address) << text.toStdString();
        EXPECT_EQ(address->Text(), shown);
        EXPECT_EQ(ParseServerAddress(shown), address);
    }
    for (const char* none : {"h:0", "h:65536", "h:-1", "h:x", "h:", ":7443", "::1", "h/path", "user@h",
                             "https://h", "two words", ""})
        EXPECT_FALSE(ParseServerAddress(none)) << none;
}

} // namespace
} // namespace sysadmin
