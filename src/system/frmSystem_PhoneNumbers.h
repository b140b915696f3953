#pragma once

#include "core/data/PickLists.h"
#include "framework/forms/RowsField.h"

namespace sysadmin {

/// The columns of a list of phone numbers, with their tags.
QList<GridColumn> PhoneColumns();

/// Asks for one phone number in the dialog "frmSystem_PhoneNumbers"; nothing is sent. A new phone begins with
/// the type of the lowest id.
RowAsker AskPhone(const PickLists& pickLists);

} // namespace sysadmin
