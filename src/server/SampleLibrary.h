#pragma once

namespace sysadmin::server {

class Database;
class Library;
class Records;

/// Fills a sample library from the files that the program carries, one for each table. Each table is filled
/// once per library; those that a later version of the program brings are filled into the libraries that are
/// there, as far as people have left what their records refer to. Nothing of it goes into the history of
/// changes. Belongs into a transaction.
void FillSampleLibrary(const Library& library, Database& database);

/// Adds the search indexes that every library has, with what they show of records.
void FillSystemIndexes(Records& records, const Library& library);

/// Adds the title lists that every library has, with columns of the texts that are there.
void FillTitleLists(Records& records, const Library& library);

/// Whether the program carries files of tables with which the library has not been filled.
bool IsSampleIncomplete(const Library& library, Database& database);

/// Takes over which parts earlier versions have filled in: they counted by other names than the tables'.
void ConvertSampleParts(Database& database);

} // namespace sysadmin::server
