#pragma once

#include "core/data/PickLists.h"
#include "wire/Message.h"

#include <QMap>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>

namespace sysadmin::exact {

/// What one step of an add or update must put.
struct Put {
    enum class Kind { Value, Also, Constant, Changed, Key, WhenOn, Out, In };
    Kind kind = Kind::Value;
    QString tag;
    QString other; ///< the constant; the field's tag (Also, Changed, WhenOn); the tag of the state (Out, In)
};

struct Column {
    QString tag;
    QString caption;
    QString field; ///< tag of the field that it shows, where that differs
    bool hidden = false;
    QString marks = {}; ///< "yes-no" of Y and N, "yes-no=*" where Y is shown so
};

struct Source {
    QString request, id = "ID", text = "Nm", none, pickList, caption, unable;
};

struct Field {
    QString kind; ///< "text", "flag", "letter", "choice", "number", "date", "lines", "interval", "picked",
                  ///< "other"
    QString control;
    QString tag;
    QString caption;
    int max = 0;
    int serverMax = 0; ///< where the server keeps longer texts that came from elsewhere
    qint16 unique = 0; ///< status of a second record with the same text
    int least = 0;
    int most = 0;
    bool required = false;
    bool shown = false;    ///< displayed only
    bool editOnly = false; ///< a new record cannot use it
    QString initial, unit, by, suffix, loads, tip;
    QString format = "yyyy-MM-dd";
    QStringList parts;  ///< of a grid of rows: its columns, puts, buttons and dialog, as `CompareDeclaration`
                        ///< says them
    QStringList values; ///< of the records 1, 2, 3 where the driver's own will not do
    QList<PickItem> entries;
    Source source;
    // of a pair of lists
    QString available, selected; ///< grids
    QString selectedCaption;
    QStringList tags;    ///< available id, name; selected id, name
    QStringList buttons; ///< select, select all, discard, discard all
};

/// A request for what a new record may have: its records become the available ones of a pair of lists.
struct Available {
    QString request, id, name, control;
    bool continuing = false;
};

struct Words {
    bool onDelete = false;
    qint16 status = 0;
    QString text, title;
};

/// Why the server refuses to delete a record: what is in use, or the table and column that refer to it.
struct Refusal {
    qint16 status = 0;
    QString kind;
    QString table, column;
};

struct Table {
    QString subject, frame, listFrame, viewFrame, tab, grid = "vsf";
    QString list, record, get, add, update, remove;
    QString getKey, notice, finds;
    QStringList existsAs; ///< of a single record: the tag that is filled once there is one
    bool single = false;
    bool strict = true;
    bool unable = false;
    bool sorted = true;
    bool open = false;       ///< everybody who is signed on may list
    bool sharesList = false; ///< its records come with the first table's list
    QString loadCaption, editCaption, saveCaption, deleteCaption;
    QString loadFailure, saveFailure;
    QString stored; ///< the server's table
    QString follow; ///< a further request of a save, when it has something to put
    QList<Put> follows;
    QString question; ///< delete question; "%1" is the item
    QStringList pickLists;
    QString pickTag;
    QList<Column> columns;
    QList<Field> fields;
    QList<Put> adds, updates;
    QList<Available> available;
    QList<Words> words;
    QList<Refusal> refusals;
    QList<QPair<QString, wire::Fields>> given; ///< what further a request's reply holds
    QList<QPair<QString, QString>> frames;     ///< name and caption of a frame in the form
    QStringList pages, notes;
};

struct Screen {
    QString key, name, caption, area;
    bool told = false; ///< stories tell what it does; its rows are compared with what it declares
    wire::Fields listPuts;
    QList<QPair<QString, wire::Fields>> asksFirst; ///< requests before everything else, and what they put
    QList<Table> tables;
};

/// What a save knows: values and changes by tag, the key before the edit, ids moved out and in by tag.
struct Saving {
    std::function<QString(const QString& tag)> value;
    std::function<bool(const QString& tag)> isChanged;
    QString key;
    QMap<QString, QStringList> out = {};
    QMap<QString, QStringList> in = {};
};

/// What a request puts.
wire::Fields FieldsOf(const QList<Put>& puts, const Saving& saving);

/// The screens of one file of `tests/exact`; README.md there says how it is written.
QList<Screen> ReadTables(const QString& subsystem);
/// Those of all files.
const QList<Screen>& AllScreens();
const Screen& FindScreen(const QString& key);

/// The value, as it travels, that a field has in record 1, 2 or 3 of the drivers.
QString ValueOf(const Table& table, const Field& field, int record);

/// The name of a test case that is known by a key.
inline std::string NameOfKey(const ::testing::TestParamInfo<QString>& key) {
    return key.param.toStdString();
}

} // namespace sysadmin::exact
