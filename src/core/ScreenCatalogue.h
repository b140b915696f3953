#pragma once

#include <QList>
#include <QString>

#include <functional>

class QWidget;

namespace sysadmin {

class Application;
class Screen;

/// What a subsystem contributes for one navigation item: how its screen is made and what goes with it.
struct ScreenMaker {
    int helpContext = 0;
    bool needsCluster = false; ///< works inside the current circulation cluster
    std::function<Screen*(Application&, QWidget* parent)> make;
};

/// A row of the navigation table.
struct ScreenEntry {
    QString groupKey;   ///< "Acquisitions", "CallSlips", ...
    QString caption;    ///< as in the table: "&&" is one ampersand
    QString key;        ///< "Acquisitions_VendorTypes"
    QString icon;       ///< name of its picture below :/icons
    ScreenMaker screen; ///< `make` is empty while nobody contributed it
};

struct ScreenGroup {
    QString key;
    QString caption;
};

/// The navigation table: all groups and items in order. The navigation bar, the "Func&tions" menu, the
/// dispatcher, the help map and the describe output come from it. Items whose screen nobody contributed are
/// not shown.
class ScreenCatalogue {
public:
    /// Holds the whole table, without screens.
    ScreenCatalogue();

    /// Gives the item of this key its screen. A key that the table lacks is a programming error.
    void Contribute(const QString& key, ScreenMaker maker);
    template <class ScreenClass>
    void Contribute(const QString& key, int helpContext, bool needsCluster = false) {
        Contribute(key, ScreenMaker{helpContext, needsCluster,
                                    [](Application& application, QWidget* parent) -> Screen* {
                                        return new ScreenClass(application, parent);
                                    }});
    }
    /// Gives an item the screen that a declaration makes: its `head` names the key and the help topic.
    template <class Declaration>
    void Contribute(const Declaration& screen) {
        Contribute(screen.head.key, ScreenMaker{screen.head.helpContext, false,
                                                [screen](Application& application, QWidget* parent) {
                                                    return screen.MakeScreen(application, parent);
                                                }});
    }

    const QList<ScreenGroup>& Groups() const { return m_groups; }
    /// All items of the table.
    const QList<ScreenEntry>& Entries() const { return m_entries; }
    /// The item of a key, or null.
    const ScreenEntry* Find(const QString& key) const;

private:
    QList<ScreenGroup> m_groups;
    QList<ScreenEntry> m_entries;
};

} // namespace sysadmin
