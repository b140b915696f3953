#pragma once

#include "framework/SingleRecordScreen.h"

namespace sysadmin {

/// A date of new patron records: an exact one, or one so long after the record's creation.
struct DefaultDate {
    DefaultDate(Form& form, const QString& role, const QString& tagStart, const QString& caption);

    bool IsExact() const { return how.Draft() == u"E"; }
    /// Tells exact from relative by what was loaded.
    void FollowLoaded();
    /// Puts the chosen one, and the other one empty.
    void Put(RequestChannel& channel) const;
    /// The other one was saved empty.
    void ClearOther();

    LetterField how;
    DateField exact;
    IntervalField relative;
};

struct PatronDefaultDatesForm : Form {
    PatronDefaultDatesForm();
    DefaultDate expiration{*this, "Expiration", "PatExp", tr("Expiration date")};
    DefaultDate purge{*this, "Purge", "PatPurge", tr("Purge date")};
};

/// The expiration and purge dates that new patron records receive.
class frmCirculation_PatronDefaultDates : public SingleRecordScreen {
    Q_OBJECT

public:
    frmCirculation_PatronDefaultDates(Application& application, QWidget* parent);

protected:
    void ReadRecord() override;
    bool CheckBeforeSave() override;
    void AfterSave() override;

private:
    /// Whether the date may be saved: there is one, and it lies ahead or the operator takes it all the same.
    bool CheckDate(const DefaultDate& date, const QString& missing, const QString& past);

    PatronDefaultDatesForm& m_form = KeepForm<PatronDefaultDatesForm>();
};

} // namespace sysadmin
