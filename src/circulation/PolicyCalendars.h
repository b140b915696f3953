#pragma once

#include "framework/forms/ListFields.h"

namespace sysadmin {

/// The calendars of a policy group, and the cluster's others. No two of a group have a day in common.
class PolicyCalendarsField : public PickedField {
public:
    explicit PolicyCalendarsField(Form& form);

    void Load(RequestChannel& channel) override;
    /// Puts the rows that moved: under "A" those that left, under "S" those that joined.
    void Put(RequestChannel& channel) const override;
    QString PlainCaption() const override { return Form::tr("Calendars"); }

private:
    QStringList TellOverlaps(const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                             QWidget* parent) const;
};

} // namespace sysadmin
