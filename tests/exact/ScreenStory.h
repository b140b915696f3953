#pragma once

#include "support/ScreenTest.h"
#include "support/Stories.h"

namespace sysadmin::exact {

/// Carries out a story of what an operator does on a screen and what becomes of it (`tests/exact/stories`,
/// README.md there). The server and the boxes are scripted; each line that goes otherwise fails the test and
/// is named.
class ScreenStory : public ScreenTest, public ::testing::WithParamInterface<testing::Story> {
protected:
    void Tell() { TellLines(GetParam().lines); }

private:
    using Lines = QList<std::pair<int, QString>>;
    using Words = QStringList;

    void TellLines(const Lines& lines);
    void Do(const QString& line);
    bool Prepare(const QString& command, const Words& words);
    bool Act(const QString& command, const Words& words);
    bool Look(const QString& command, const Words& words);
    void ExpectBox(Words words);
    void ExpectDialog(const QString& name, const Lines& inside);
    void Sent(const Words& words);

    /// The control of this name that is to be seen; where none is, the first one.
    QWidget& Seen(const QString& name);
    QWidget& Around(const QString& name) { return *Seen(name).parentWidget(); }
    QString Shown(const QString& name);

    qsizetype m_looked = 0; ///< requests that were looked at
};

} // namespace sysadmin::exact
