#pragma once

#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// A password for another system that the server keeps and never sends back: a reply only says under the mark
/// whether there is one. It stays until the operator enters another one or takes it away, and goes out
/// sealed: the mark says Y or N whether it changed, and only then the tag brings it (empty: it is taken
/// away).
class SecretField : public ValueField {
public:
    SecretField(Form& form, const FieldSpec& spec, const QString& mark)
        : ValueField(form, Kind::Password, spec)
        , m_mark(mark) {}

    const QString& Mark() const { return m_mark; }
    /// Whether the server has one.
    bool HasStored() const { return Stored() == Kept; }
    /// Whether it stays what the server has.
    bool IsKept() const { return Draft() == Kept; }
    /// What the operator typed; nothing typed keeps the one that is there.
    void Enter(const QString& typed) { SetDraft(typed.isEmpty() && HasStored() ? Kept : typed); }
    /// Takes the stored one away with the next save.
    void TakeAway() { SetDraft({}); }
    /// Seals passwords for the server; whoever builds the screen sets it.
    void SetSealer(std::function<QString(const QString& plain)> seal) { m_seal = std::move(seal); }

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override { SetStored({}); }
    void Accept() override;
    void BecomeNew() override { Clear(); }
    bool IsBlank() const override { return Draft().isEmpty(); }
    QStringList Words() const override;

private:
    /// Stands for what the server has; no password begins so.
    static inline const QString Kept = QString(QChar(1));

    QString m_mark;
    std::function<QString(const QString&)> m_seal;
};

} // namespace sysadmin
