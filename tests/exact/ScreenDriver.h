#pragma once

#include "exact/Rig.h"
#include "framework/ListGrid.h"

namespace sysadmin::exact {

/// Takes a screen through everything that its rows in `tests/exact` say, with a scripted server, and collects
/// where it differs.
class ScreenDriver {
public:
    using Alter = std::function<void(ScreenDeclaration&)>;

    /// `alter` changes what the screen declares before it is built: the mutation test. `stopAtFirst` ends the
    /// run as soon as something differs.
    explicit ScreenDriver(const Screen& screen, const Alter& alter = {}, bool stopAtFirst = false)
        : m_screen(screen)
        , m_alter(alter)
        , m_stopAtFirst(stopAtFirst) {}

    /// What differs, a line each; nothing when all is exact.
    QStringList Run();

private:
    struct Stop {};
    using Values = QMap<QString, QString>; // by control

    void Expect(const QString& what, const QString& is, const QString& wanted);
    void ExpectSent(const QString& what, const QStringList& wanted);
    void ExpectTold(const QString& what, const QStringList& wanted);
    void ExpectCaption(const QString& what, const QString& wanted);
    void ExpectRows(const QString& what, const QStringList& wanted);
    void ExpectValues(const QString& what);

    /// Of a screen that stories tell.
    QStringList Compare();
    void Start(bool mayEdit = true, const std::function<void()>& prepare = {});
    void Script(bool mayEdit);
    void Guard(const QString& what, const std::function<void()>& step);

    // A table.
    void RunTable(const Table& table);
    void OpenTable(bool mayEdit = true, const std::function<void()>& prepare = {});
    void CheckOpening();
    void CheckForm(bool isNew);
    void CheckFocusOrder();
    void AddRecord();
    void UpdateRecord();
    void ChangeOne(const QString& tag);
    void DeleteRecord();
    void ReadOnly();
    void FailingLists();
    void FailingSources();
    void FailingRequests();
    void PickLists();
    // A single record.
    void RunRecord(const Table& table);
    void OpenRecord(bool mayEdit = true, const std::function<void()>& prepare = {});

    void CheckRequired();
    void EnterAll(int record);
    void SetField(const Field& field, const QString& value);
    void LoadValues(int record);
    void Click(const QString& button);
    bool CanSave();
    ListGrid& Grid() { return Find<ListGrid>(*m_rig->screen, m_table->grid); }
    void Select(int record) { Grid().SelectKey(KeyOf(record)); }
    QString FrameCaption();
    void MovePicked(bool isNew);

    QString KeyOf(int record) const;
    QString CellOf(const Column& column, int record) const;
    QString RowText(int record) const;
    QString RowFromValues(int formerRecord) const;
    wire::Fields ListReply(const Table& table, const QList<int>& records) const;
    wire::Fields GetReply(const Table& table, int record) const;
    QStringList Saved(const QString& request, const QList<Put>& puts, const QString& key);
    const Field* FieldOf(const QString& tag) const;
    QStringList SourceRequests() const;

    const Screen& m_screen;
    Alter m_alter;
    bool m_stopAtFirst;
    QStringList m_differences;
    std::unique_ptr<Rig> m_rig;
    const Table* m_table = nullptr;
    Values m_values;                  ///< what the form must hold
    Values m_loaded;                  ///< what it held when editing began
    QMap<QString, QStringList> m_out; ///< moved out, by control
    QMap<QString, QStringList> m_in;
};

} // namespace sysadmin::exact
