#include "support/ScreenTest.h"

#include <QTest>

namespace sysadmin {

ScreenTest::ScreenTest() {
    SetRights(true);
}

ScreenTest::~ScreenTest() {
    EXPECT_TRUE(channel.AllAnswered()) << "some scripted answers were never asked for";
}

void ScreenTest::SetRights(bool mayEdit) {
    wire::Fields rights;
    for (const char* tag : {"ASPG", "CatPG", "CrcPG", "CrCnv", "Sec", "SysDf"})
        rights += {{tag, mayEdit ? "Y" : "N"}, {QString(tag) + "V", "Y"}};
    rights += {{"ChgPwd", mayEdit ? "Y" : "N"}, {"Dec", "2"}, {"PRB", "Y"}};
    channel.Answer("SAInit", 0, rights);
    channel.Answer("CheckMasterProfile", 0, {{"EditPatGrp", mayEdit ? "Y" : "N"}, {"PatGrpV", "Y"}});
    application.profile.Load(channel, "TESTER");
    channel.sent.clear();
}

Screen& ScreenTest::Open(void (*contribute)(ScreenCatalogue&), const QString& key) {
    contribute(application.catalogue);
    m_screen.reset(application.catalogue.Find(key)->screen.make(application, nullptr));
    ShowScreen();
    return *m_screen;
}

void ScreenTest::ShowScreen() {
    front = m_screen.get();
    m_screen->LoadScreen();
    m_screen->resize(900, 600);
    m_screen->show();
    QTest::qWait(0);
}

} // namespace sysadmin
