#pragma once

#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// How one text that travels is made of several entries and taken apart again.
struct TagCodec {
    /// The entries in the order of the parts; whatever is missing is blank.
    std::function<QStringList(const QString& text)> split;
    /// The text. `former` is the one that was loaded: what it holds beyond the parts stays in it.
    std::function<QString(const QStringList& parts, const QString& former)> join;
};

/// Parts of fixed widths ("650**"): a blank part is filled with `any`, and a part of nothing else is blank.
TagCodec FixedWidths(const QList<int>& widths, QChar any = u'*');
/// Pairs of key and value ("IX=C CS=a~b") in the order of the keys; a blank value leaves its pair out. Keys
/// that are none of these stay behind them.
TagCodec KeyValues(const QStringList& keys, QChar separator = u' ', QChar equals = u'=');

/// One tag that several fields make up together; they have no tags of their own and are declared in front of
/// it. A text that nobody edited goes back as it came, whatever it is.
class ComposedTag : public Field {
public:
    ComposedTag(Form& form, const QString& tag, const QList<ValueField*>& parts, TagCodec codec)
        : Field(form, Kind::Own, {.tag = tag})
        , m_parts(parts)
        , m_codec(std::move(codec)) {}

    /// The text as it would travel now.
    QString Text() const;
    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override { m_loaded.clear(); }
    bool IsChanged() const override;
    bool IsBlank() const override { return Text().trimmed().isEmpty(); }
    void Accept() override { m_loaded = Text(); }
    void Revert() override {}
    QStringList Words() const override { return {}; } // its parts say it

private:
    QList<ValueField*> m_parts;
    TagCodec m_codec;
    QString m_loaded;
};

} // namespace sysadmin
