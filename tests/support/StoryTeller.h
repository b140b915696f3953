#pragma once

#include "support/ControlTest.h"
#include "support/ScriptedChannel.h"
#include "support/Stories.h"

namespace sysadmin {

/// Carries out a story of what an operator does and what becomes of it, line by line; each line that goes
/// otherwise fails the test and is named. tests/exact/stories/README.md says what the lines mean.
class StoryTeller : public ControlTest {
protected:
    using Words = QStringList;

    void Tell(const testing::Story& story);
    /// Does what only this stage knows; says no to any other command.
    virtual bool OnStage(const QString&, const Words&) { return false; }
    /// What was sent so far.
    virtual QList<ScriptedChannel::Sent> Traffic() const { return {}; }

private:
    using Lines = QList<std::pair<int, QString>>;

    void TellLines(const Lines& lines);
    void ExpectDialog(const QString& name, const Lines& inside);
    void Do(const QString& line);
    bool ComesUp(const QString& command, const Words& words);
    bool Act(const QString& command, const Words& words);
    bool Look(const QString& command, const Words& words);
    bool LookAtTraffic(const QString& command, const Words& words);

    /// The control of this name that is to be seen; where none is, the first one.
    QWidget& Seen(const QString& name);
    QWidget& Around(const QString& name) { return *Seen(name).parentWidget(); }
    QString Shown(const QString& name);

    QString m_file;
    qsizetype m_looked = 0; ///< requests that were looked at
};

} // namespace sysadmin
