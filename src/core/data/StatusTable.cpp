#include "core/data/StatusTable.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace sysadmin {

namespace {

enum Weight { Plain, Serious };

struct Row {
    qint16 status;
    Weight weight;
    const char* message;
};

// The operators and the manuals know these texts: they are kept to the letter, slips included.
// clang-format off
constexpr Row Rows[] = {
    {1, Serious, QT_TRANSLATE_NOOP("StatusTable", "Communications Failure")},
    {2, Serious, QT_TRANSLATE_NOOP("StatusTable", "Database table error.")},
    {3, Serious, QT_TRANSLATE_NOOP("StatusTable", "Database column error.")},
    {4, Serious, QT_TRANSLATE_NOOP("StatusTable", "Duplicate Record")},
    {5, Serious, QT_TRANSLATE_NOOP("StatusTable", "Record not found to be updated.")},
    {6, Serious, QT_TRANSLATE_NOOP("StatusTable", "Function not yet available.")},
    {7, Plain, QT_TRANSLATE_NOOP("StatusTable", "This name already exists.  Please enter a unique name.")},
    {8, Plain, QT_TRANSLATE_NOOP("StatusTable", "This code already exists.  Please enter a unique code.")},
    {9, Plain, QT_TRANSLATE_NOOP("StatusTable", "This ID already exists.  Please enter a unique ID.")},
    {10, Serious, QT_TRANSLATE_NOOP("StatusTable", "You cannot define this database with this IP and port because it is already being used.")},
    {11, Serious, QT_TRANSLATE_NOOP("StatusTable", "Invalid Sign-On.")},
    {12, Serious, QT_TRANSLATE_NOOP("StatusTable", "User is not authorized for System Administration.")},
    {13, Plain, QT_TRANSLATE_NOOP("StatusTable", "Record is in use.")},
    {14, Serious, QT_TRANSLATE_NOOP("StatusTable", "Record in use by Circulation Policy Definitions.")},
    {15, Serious, QT_TRANSLATE_NOOP("StatusTable", "Record in use by Circulation Transaction.")},
    {16, Plain, QT_TRANSLATE_NOOP("StatusTable", "852B is a reserved search code.  Please enter a different code.")},
    {20, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a holdings record.")},
    {21, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in an item record.")},
    {22, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a line item record.")},
    {23, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted while it belongs to an acquisitions policy group.")},
    {24, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted while it belongs to an cataloging policy group.")},
    {25, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted while it belongs to a circ policy group.")},
    {26, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a line item copy record.")},
    {27, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in an account location record.")},
    {28, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a purchase order.")},
    {29, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a ledger location.")},
    {30, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in an invoice.")},
    {31, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a hold/recall record.")},
    {32, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a fine/fee transaction record.")},
    {33, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a fine/fee record.")},
    {34, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in an exception record.")},
    {35, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a serial claim record.")},
    {36, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a marked issue record.")},
    {37, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a marked line item record.")},
    {38, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a issues received record.")},
    {39, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a reserve list record.")},
    {40, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a renew transactions record.")},
    {41, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a renew transactions archive record.")},
    {42, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a circ transaction record.")},
    {43, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a circ transaction archive record.")},
    {44, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a circ transaction exception record.")},
    {45, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a Media Room record.")},
    {46, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a Media Schedule Room record.")},
    {47, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a Media Schedule Room Archive record.")},
    {48, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a Media Policy Location record.")},
    {49, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a Media Security Location record.")},
    {50, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is in a Routing List Members record.")},
    {51, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted while it is the OPAC circ desk.")},
    {52, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is being used in a call slip rule record.")},
    {56, Plain, QT_TRANSLATE_NOOP("StatusTable", "This calendar cannot be saved.  It is being used in more than one Circulation Policy Group with dates which overlap.")},
    {57, Plain, QT_TRANSLATE_NOOP("StatusTable", "This fiscal year cannot be deleted while used in a rollover rule.")},
    {58, Plain, QT_TRANSLATE_NOOP("StatusTable", "The vendor code you entered is invalid.")},
    {59, Plain, QT_TRANSLATE_NOOP("StatusTable", "The fund code you entered is invalid.")},
    {60, Plain, QT_TRANSLATE_NOOP("StatusTable", "Unable to connect to remote database.\r\n\r\nPlease retry after verifying that the database address and port numbers are correct. To save your changes anyway, please uncheck the UB Database box.")},
    {61, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Owning library cannot be deleted because it is used in a Bib record.")},
    {62, Plain, QT_TRANSLATE_NOOP("StatusTable", "An owning library cannot be deleted until all locations are reassigned to other owning libraries.")},
    {63, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Vendor Report cannot be deleted because it is used in a Non-Serials Claim record.")},
    {64, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Vendor Report cannot be deleted because it is used in a Serials Claim record.")},
    {65, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Mark Reason cannot be deleted because it is used in a Marked Line Item record.")},
    {66, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Mark Reason cannot be deleted because it is used in a Marked Issue record.")},
    {67, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Dup Detection profile cannot be deleted because it is being used in a Catalog Profile.")},
    {68, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Dup Detection profile cannot be deleted because it is being used in an Acquisitions Profile.")},
    {69, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Dup Detection profile cannot be deleted because it is being used in a Bulk Import Profile.")},
    {70, Plain, QT_TRANSLATE_NOOP("StatusTable", "This hierarchy cannot be deleted because it is being used in a Catalog Profile.")},
    {71, Plain, QT_TRANSLATE_NOOP("StatusTable", "This hierarchy is being used in Bulk Import records and will be replaced by the default hierarchy in those Bulk Import records.")},
    {72, Plain, QT_TRANSLATE_NOOP("StatusTable", "This hierarchy cannot be deleted because it is the default hierarchy.")},
    {73, Plain, QT_TRANSLATE_NOOP("StatusTable", "This hierarchy cannot be deleted because it is being used in Bulk Import records and there is no default hierarchy to replace it.")},
    {74, Plain, QT_TRANSLATE_NOOP("StatusTable", "This claim type cannot be deleted because it is in a Mark Reason record.")},
    {75, Plain, QT_TRANSLATE_NOOP("StatusTable", "Minimum Call Number is invalid.")},
    {76, Plain, QT_TRANSLATE_NOOP("StatusTable", "Maximum Call Number is invalid.")},
    {77, Plain, QT_TRANSLATE_NOOP("StatusTable", "This record cannot be deleted because it is being used in a Call Slip record.")},
    {78, Plain, QT_TRANSLATE_NOOP("StatusTable", "This record cannot be deleted because it is being used in a Call Slip Archive record.")},
    {79, Plain, QT_TRANSLATE_NOOP("StatusTable", "This circ policy group cannot be deleted because an associated circ matrix is being used in a circ transaction record.")},
    {80, Plain, QT_TRANSLATE_NOOP("StatusTable", "This circ policy group cannot be deleted because it contains the OPAC circ desk.")},
    {81, Plain, QT_TRANSLATE_NOOP("StatusTable", "This form cannot be deleted because it is a system-defined form.")},
    {82, Plain, QT_TRANSLATE_NOOP("StatusTable", "This application has a more recent version available.\r\n\r\nPlease see your system administrator.")},
    {83, Plain, QT_TRANSLATE_NOOP("StatusTable", "This search cannot be deleted because it is in use in a composite search.")},
    {84, Plain, QT_TRANSLATE_NOOP("StatusTable", "This item type cannot be deleted while there are item records assigned to it.")},
    {85, Plain, QT_TRANSLATE_NOOP("StatusTable", "This patron group cannot be deleted because there are patron barcode records assigned to it.")},
    {86, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Adjust Reason cannot be deleted because it is used in a Price Adjustment record.")},
    {87, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Fine/Fee Reason cannot be deleted since it is used in a Fine/Fee record.")},
    {88, Plain, QT_TRANSLATE_NOOP("StatusTable", "This fund type cannot be deleted while there are fund records assigned to it.")},
    {89, Plain, QT_TRANSLATE_NOOP("StatusTable", "This fiscal year cannot be deleted while used in a ledger record.")},
    {90, Plain, QT_TRANSLATE_NOOP("StatusTable", "This Payment type cannot be deleted while it is used in Fine/Fee Transaction records.")},
    {91, Plain, QT_TRANSLATE_NOOP("StatusTable", "This PO type cannot be deleted because it is used in a Purchase Order record.")},
    {92, Plain, QT_TRANSLATE_NOOP("StatusTable", "This matrix entry cannot be deleted because it is being used in a circ transaction record.")},
    {93, Plain, QT_TRANSLATE_NOOP("StatusTable", "This calendar cannot be deleted while it is assigned to a Circ Policy Group.")},
    {94, Plain, QT_TRANSLATE_NOOP("StatusTable", "This search cannot be deleted because it is in use in a composite search.")},
    {95, Plain, QT_TRANSLATE_NOOP("StatusTable", "This patron group cannot be deleted because it is being used in a Patron Barcode record.")},
    {96, Plain, QT_TRANSLATE_NOOP("StatusTable", "This patron group cannot be deleted because it is being used in a UB Patron Group Home Policy record.")},
    {101, Plain, QT_TRANSLATE_NOOP("StatusTable", "This claim type cannot be deleted because it is in a Serial Claim record.")},
    {102, Plain, QT_TRANSLATE_NOOP("StatusTable", "This patron group cannot be deleted because it is being used in a circulation transaction.")},
    {103, Plain, QT_TRANSLATE_NOOP("StatusTable", "This patron group cannot be deleted because it is being used in a circ policy matrix.")},
    {111, Plain, QT_TRANSLATE_NOOP("StatusTable", "This location cannot be deleted because it is in use in a GDC Security Profile.")},
    {120, Plain, QT_TRANSLATE_NOOP("StatusTable", "This item type cannot be deleted because it is in use in an Acq Policy definition.")},
    {123, Plain, QT_TRANSLATE_NOOP("StatusTable", "This calendar cannot be saved.  A date is outside the calendar's coverage dates.")},
    {130, Plain, QT_TRANSLATE_NOOP("StatusTable", "The list is too long to be shown.")},
    {131, Plain, QT_TRANSLATE_NOOP("StatusTable", "Somebody else has changed this record in the meantime.  Nothing was saved.")},
    {132, Plain, QT_TRANSLATE_NOOP("StatusTable", "Some of the chosen matrix entries already exist.  Nothing was saved.")},
    {133, Plain, QT_TRANSLATE_NOOP("StatusTable", "The dates of the selected calendars overlap.  Nothing was saved.")},
    {134, Plain, QT_TRANSLATE_NOOP("StatusTable", "A location belongs to another policy group.  Nothing was saved.")},
    {135, Plain, QT_TRANSLATE_NOOP("StatusTable", "You cannot define this database with this IP and port because it is already being used.")},
    {136, Plain, QT_TRANSLATE_NOOP("StatusTable", "The local database cannot be deleted, and its code and type cannot be changed.")},
    {137, Plain, QT_TRANSLATE_NOOP("StatusTable", "This index comes with the system: it cannot be deleted, and its code cannot be changed.")},
    {138, Plain, QT_TRANSLATE_NOOP("StatusTable", "What was there then is not known any more: the history is not kept so long.")},
    {139, Plain, QT_TRANSLATE_NOOP("StatusTable", "Some of the records cannot be saved.  Nothing was saved.")},
    {-92, Plain, QT_TRANSLATE_NOOP("StatusTable", "The server or database is not compatible with this version of your application. The application will be aborted. Client version: #  Server version: #  Database version: #")},
};
// clang-format on

} // namespace

StatusText TextOfStatus(qint16 status) {
    const auto row =
        std::find_if(std::begin(Rows), std::end(Rows), [status](const Row& r) { return r.status == status; });
    if (row == std::end(Rows))
        return {QCoreApplication::translate("StatusTable", "Database Error"), true};
    return {QCoreApplication::translate("StatusTable", row->message), row->weight == Serious};
}

} // namespace sysadmin
