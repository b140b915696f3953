#pragma once

#include <QByteArray>
#include <QVariant>

namespace sysadmin::server {

/// The text in which the history keeps a record's fields: a JSON object, by column [before, after], each a
/// text or null. It is written by the thousand in one request, and so without the objects of a JSON library.
class FieldsText {
public:
    /// What stands in front of a field's values. Names are plain: letters, digits and underscores.
    static QByteArray KeyOf(const QString& name) { return '"' + name.toLatin1() + "\":["; }

    /// Appends a field with the key that belongs to its name.
    void Append(const QByteArray& key, const QVariant& before, const QVariant& after);
    /// The whole object; the next one begins after it.
    QByteArray Take();

private:
    /// Where so many more bytes can be written.
    char* Room(qsizetype bytes);
    void Append(QByteArrayView bytes);
    void AppendValue(const QVariant& value);
    void AppendText(const QString& text);
    void AppendNumber(qint64 number);

    QByteArray m_text; ///< behind the first m_size bytes is room for more
    qsizetype m_size = 0;
};

} // namespace sysadmin::server
