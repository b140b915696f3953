#pragma once

#include "core/Application.h"
#include "core/Screen.h"
#include "support/FakeCommunication.h"
#include "support/ScriptedChannel.h"
#include "support/StoryTeller.h"

namespace sysadmin {

/// A screen under test with a scripted server and operator. Rights: all areas may be edited unless
/// `SetRights` says otherwise before `Open`.
class ScreenTest : public StoryTeller {
protected:
    ScreenTest();
    ~ScreenTest() override;

    /// Whether every area may be edited, or viewed only.
    void SetRights(bool mayEdit);
    /// Makes, loads and shows the screen. Script its load requests first.
    template <class ScreenClass>
    ScreenClass& Open() {
        auto* screen = new ScreenClass(application, nullptr);
        m_screen.reset(screen);
        ShowScreen();
        return *screen;
    }

    /// The same for a screen of the navigation table; `contribute` is its subsystem's contribution.
    Screen& Open(void (*contribute)(ScreenCatalogue&), const QString& key);

    ScriptedChannel channel;
    FakeCommunication comm{channel};
    Application application{comm, prompter};

private:
    void ShowScreen();
    std::unique_ptr<Screen> m_screen;
};

} // namespace sysadmin
