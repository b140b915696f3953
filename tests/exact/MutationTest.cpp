#include "exact/Mutants.h"
#include "exact/ScreenDriver.h"
#include "exact/ServerDriver.h"
#include "framework/Declaration.h"
#include "server/subjects/Registrations.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace sysadmin::exact {

namespace {

/// How many mutants of each kind are tried: a few hundred where nobody waits for them ("EXACT_MUTANTS=1000"),
/// else a sample.
size_t HowMany() {
    const int asked = qEnvironmentVariableIntValue("EXACT_MUTANTS");
    return asked > 0 ? size_t(asked) : 60;
}

/// Tries a sample of all (screen or subject, place) pairs and says which nobody noticed.
template <class Try>
void ExpectNoticed(std::vector<std::pair<QString, size_t>> all, const Try& tryOne) {
    std::mt19937 random(20260321);
    std::shuffle(all.begin(), all.end(), random);
    const size_t places = all.size();
    all.resize(std::min(places, HowMany()));
    QStringList missed;
    for (const auto& [key, place] : all) {
        QString what;
        if (!tryOne(key, place, what))
            missed.append(key + ": " + what);
    }
    ASSERT_FALSE(all.empty());
    const double share = 100.0 * double(all.size() - size_t(missed.size())) / double(all.size());
    std::printf("%zu mutants of %zu, %.1f %% noticed\n", all.size(), places, share);
    EXPECT_GE(share, 98.0);
    if (!missed.isEmpty())
        std::printf("not noticed:\n%s\n", qPrintable(missed.join('\n')));
}

TEST(MutationTest, AWrongLetterOfAScreenIsNoticed) {
    constexpr unsigned Seed = 7;
    std::vector<std::pair<QString, size_t>> all;
    for (const Screen& screen : AllScreens()) {
        size_t count = 0;
        Rig rig(screen, true);
        rig.Open([&](ScreenDeclaration& declaration) { count = MutantsOf(declaration, Seed).size(); });
        for (size_t place = 0; place < count; ++place)
            all.emplace_back(screen.key, place);
    }
    ExpectNoticed(all, [](const QString& key, size_t place, QString& what) {
        const auto alter = [&](ScreenDeclaration& declaration) {
            const std::vector<Mutant> mutants = MutantsOf(declaration, Seed);
            what = mutants[place].what;
            mutants[place].apply();
        };
        return !ScreenDriver(FindScreen(key), alter, true).Run().isEmpty();
    });
}

/// The rows of the subject's table, or null.
const std::pair<const Screen*, const Table*> RowsOf(const server::Subject& subject) {
    for (const Screen& screen : AllScreens())
        for (const Table& table : screen.tables)
            if (screen.area != u"Cluster" && !screen.told && table.update == subject.requests.update)
                return {&screen, &table};
    return {};
}

TEST(MutationTest, AWrongLetterOfASubjectIsNoticed) {
    if (!qEnvironmentVariableIsSet("EXACT_MUTANTS"))
        GTEST_SKIP() << "takes minutes: set EXACT_MUTANTS";
    constexpr unsigned Seed = 11;
    std::vector<std::pair<QString, size_t>> all;
    server::MakeRegistry([&](server::Subject& subject) {
        if (RowsOf(subject).first)
            for (size_t place = 0; place < MutantsOf(subject, Seed).size(); ++place)
                all.emplace_back(subject.requests.update, place);
    });
    ExpectNoticed(all, [](const QString& name, size_t place, QString& what) {
        const QTemporaryDir folder;
        sysadmin::testing::CopySample(folder.path());
        std::pair<const Screen*, const Table*> rows;
        const auto registry = server::MakeRegistry([&](server::Subject& subject) {
            if (subject.requests.update != name || !RowsOf(subject).first)
                return;
            rows = RowsOf(subject);
            const std::vector<Mutant> mutants = MutantsOf(subject, Seed);
            what = mutants[place].what;
            mutants[place].apply();
        });
        try {
            return !ServerDriver(*rows.first, *rows.second, registry, folder.path(), true).Run().isEmpty();
        } catch (const std::exception&) {
            return true; // it does not even start
        }
    });
}

} // namespace

} // namespace sysadmin::exact
