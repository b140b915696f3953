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

/// A record of the library, found by what stands in it.
struct FoundRecord {
    QString word; ///< of its requests
    QString key;
    QString name;
    QString control; ///< of the field in which it was found; empty: none of its own
    QString detail;  ///< that field and what stands there
    QString screen;  ///< the screen's caption, with its group's
    QString icon;    ///< the screen's
};

/// Where the records of a subject are maintained.
struct SubjectPlace {
    QString key;                       ///< of the screen, in the navigation table
    QString screen;                    ///< the screen's caption, with its group's
    QHash<QString, ScreenWord> fields; ///< by tag
    QString icon;                      ///< the screen's
};

/// Knows the captions of everything on the screens that the operator may use. It learns them from the screens
/// themselves, one by one while nobody asks, and the rest when it is asked; the server is not asked.
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
    /// Learns one more screen; false when there is none left.
    bool LearnNext();

private:
    Application& m_application;
    QList<FoundWord> m_words;
    QHash<QString, SubjectPlace> m_places;         // by word
    QList<std::pair<QString, ScreenEntry>> m_left; // group and screen, still to be learned
};

} // namespace sysadmin
