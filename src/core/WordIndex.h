#pragma once

#include "core/Navigation.h"
#include "core/Screen.h"

#include <QStringList>

namespace sysadmin {

/// Something that a screen of the program holds, found by its caption.
struct FoundWord {
    QString key;     ///< of the screen, in the navigation table
    QString control; ///< its control there
    QString caption;
    QString screen; ///< the screen's caption, with its group's
    QString icon;   ///< the screen's
};

/// Where the records of a subject are maintained.
struct SubjectPlace {
    QString key;                       ///< of the screen, in the navigation table
    QString screen;                    ///< the screen's caption, with its group's
    QHash<QString, ScreenWord> fields; ///< by tag
};

/// Knows the captions of everything on the screens that the operator may use. It learns them when it is asked
/// for the first time, from the screens themselves; the server is not asked.
class WordIndex {
public:
    explicit WordIndex(Application& application)
        : m_application(application) {}

    void SetGroups(const QList<NavigationGroup>& groups);
    /// The captions that hold every word of the text, in whatever case: those that begin with it first, then
    /// those in which a word does.
    QList<FoundWord> Find(const QString& text, int most);
    /// The place of the records that the word stands for in requests; null when the operator may not see it.
    const SubjectPlace* PlaceOf(const QString& word);

private:
    void Learn();

    Application& m_application;
    QList<NavigationGroup> m_groups;
    QList<FoundWord> m_words;
    QHash<QString, SubjectPlace> m_places; // by word
    bool m_learned = false;
};

} // namespace sysadmin
