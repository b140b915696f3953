#pragma once

#include <QObject>
#include <QString>

namespace sysadmin {

/// Tells open screens that somebody changed data they may show.
class Notices : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    /// A record of the subject ("PatGp", "Loc", ...: the request names' own word) was saved or deleted.
    void SubjectChanged(const QString& subject);
    /// The same was done by somebody else, at another desk.
    void ChangedByOthers(const QString& subject);
    /// Another circulation cluster became the current one, or its name changed.
    void CurrentClusterChanged();
    /// Something that the operator asked for is done ("Saved Bookseller").
    void Done(const QString& text);
};

} // namespace sysadmin
