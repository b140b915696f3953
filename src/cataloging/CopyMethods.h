#pragma once

#include "core/data/PickLists.h"
#include "framework/forms/Field.h"
#include "wire/BulkImport.h"

namespace sysadmin {

/// How items are numbered where the record does not say, for the operator.
inline QList<PickItem> CopyMethods() {
    namespace methods = wire::bulkimport::copynumbers;
    return {{{}, Form::tr("No copy number")},
            {methods::Same, Form::tr("The start number for every item")},
            {methods::PerRecord, Form::tr("Counted up within the bibliographic record")},
            {methods::PerHoldings, Form::tr("Counted up within the MFHD")}};
}

} // namespace sysadmin
