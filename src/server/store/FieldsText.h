#pragma once

#include <QByteArray>
#include <QVariant>

namespace sysadmin::server {

/// The text in which the history keeps a record's fields: a JSON object, by column [before, after], each a
/// text or null. It is written by the thousand in one request, and so without the objects of a JSON library.
class FieldsText {
public:
    /// Appends a field. Names are plain: letters, digits and underscores.
    void Append(const QString& name, const QVariant& before, const QVariant& after);
    /// The whole object.
    QByteArray Take() { return (m_text.isEmpty() ? QByteArray("{") : m_text) + '}'; }

private:
    void AppendValue(const QVariant& value);

    QByteArray m_text;
};

} // namespace sysadmin::server
