#pragma once

#include "framework/forms/Field.h"

namespace sysadmin {

/// One text that travels and that other fields of the form make up together. What they do not say stays in
/// it, and a text that nobody edited goes back as it came. It is declared in front of its parts, which have
/// no tags of their own.
class ComposedText : public Field {
public:
    /// `initial`: the text of a new record.
    ComposedText(Form& form, const QString& tag, const QString& initial)
        : Field(form, Kind::Own, {.tag = tag, .initial = initial}) {}

    QList<const Field*> parts{};
    /// Gives the parts what the text says, as what the server has.
    std::function<void(const QString& text)> split{};
    /// The text that the parts' drafts make of the one that was loaded.
    std::function<QString(const QString& former)> join{};

    /// The text as it would travel now.
    QString Text() const;
    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override { m_loaded = Spec().initial; }
    bool IsChanged() const override;
    bool IsBlank() const override { return Text().trimmed().isEmpty(); }
    void Accept() override { m_loaded = Text(); }
    void Revert() override {}
    QStringList Words() const override { return {}; } // its parts say it

private:
    QString m_loaded;
};

} // namespace sysadmin
