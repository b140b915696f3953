#pragma once

#include "framework/forms/Field.h"
#include "wire/BulkImport.h"

#include <QMap>

namespace sysadmin {

namespace bulkimport = wire::bulkimport;

/// Stands where nothing is chosen.
inline QString NoImportChoice() {
    return Form::tr("(none)");
}

/// The named settings of one part of a bulk import rule, as pairs of tag and value: what a dialog of its own
/// edits. It has no control on the screen.
class ImportSettings : public Field {
public:
    using Values = QMap<QString, QString>; ///< by tag

    /// `caption` names the part where two versions of a rule are compared.
    ImportSettings(Form& form, bulkimport::Setting::Part part, const QString& caption);

    /// The value of a setting by its name.
    QString Value(const QString& name) const;
    /// Fills the form of a dialog, whose fields carry the tags of these parts.
    static void Fill(Form& form, std::initializer_list<const ImportSettings*> parts);
    /// Takes what was entered in it.
    void TakeFrom(const Form& form);

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    void Clear() override;
    bool IsChanged() const override { return m_draft != m_stored; }
    bool IsBlank() const override;
    void Accept() override { m_stored = m_draft; }
    void Revert() override;
    std::any TakeDraft() const override { return m_draft; }
    void GiveDraft(const std::any& draft) override;
    QStringList Words() const override;

private:
    QList<bulkimport::Setting> m_settings;
    Values m_stored;
    Values m_draft;
};

} // namespace sysadmin
