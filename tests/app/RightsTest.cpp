#include "support/ClientTest.h"

#include "core/Navigation.h"
#include "framework/FormScreen.h"
#include "security/RightsHeld.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

/// What the page about rights says of an operator is what the program offers him and lets him change.
class RightsTest : public ClientTest {
protected:
    RightsHeld Read() {
        RightsHeld rights;
        EXPECT_EQ(rights.Read(App().channel, App().catalogue), wire::status::Ok);
        return rights;
    }
    /// Keys of the screens that are offered, and of those whose area the operator may change.
    QPair<QSet<QString>, QSet<QString>> OfferedTo(const QString& operatorId) {
        SignOn(operatorId);
        Navigation navigation(App().catalogue);
        navigation.TrimToRights(App().profile);
        QPair<QSet<QString>, QSet<QString>> keys;
        for (const NavigationGroup& group : navigation.ShownGroups())
            for (const ScreenEntry& entry : group.items) {
                keys.first.insert(entry.key);
                const std::unique_ptr<Screen> screen(entry.screen.make(App(), nullptr));
                const auto* form = dynamic_cast<const FormScreen*>(screen.get());
                if (form && App().profile.MayEdit(form->Declaration().area))
                    keys.second.insert(entry.key);
            }
        return keys;
    }
    static QSet<QString> HeldBy(const RightsHeld& rights, const QString& kind, const QString& operatorId) {
        QSet<QString> keys;
        for (const KnownRight& right : rights.Rights())
            if (right.key.startsWith(kind + ' ') && rights.WhoHas(right).contains(operatorId))
                keys.insert(right.key.mid(kind.size() + 1));
        return keys;
    }
};

TEST_F(RightsTest, TheScreensOfAnOperatorAreThoseThatTheProgramOffersHim) {
    SignOn("SYSADMIN");
    const RightsHeld rights = Read();
    // Offered to everybody who may use the program, and by a flag.
    const QSet<QString> free{"Tools_Health"};
    for (const char* operatorId : {"SYSADMIN", "VIEWER", "CIRC"}) {
        SCOPED_TRACE(operatorId);
        const auto [offered, changed] = OfferedTo(operatorId);
        const QSet<QString> viewed = HeldBy(rights, "view", operatorId);
        const QSet<QString> held = HeldBy(rights, "change", operatorId);
        for (const ScreenEntry& entry : App().catalogue.Entries()) {
            if (free.contains(entry.key) || entry.groupKey == "WebServices")
                continue;
            EXPECT_EQ(viewed.contains(entry.key), offered.contains(entry.key)) << entry.key.toStdString();
            // Tools change nothing; clusters have rights of their own.
            if (entry.groupKey != "Tools" && entry.key != "Circ_Clusters") {
                EXPECT_EQ(held.contains(entry.key), changed.contains(entry.key)) << entry.key.toStdString();
            }
        }
    }
}

} // namespace

} // namespace sysadmin
