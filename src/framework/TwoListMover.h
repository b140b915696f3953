#pragma once

#include "framework/forms/GridRow.h"

#include <QWidget>

#include <functional>
#include <optional>

class QPushButton;

namespace sysadmin {

class ListGrid;
class PickedLists;
class Prompter;
struct PickedNames;

/// The available and the selected list side by side, with four buttons that move rows between them. It shows
/// lists that someone else owns, and asks the owner to carry out each move.
class TwoListMover : public QWidget {
    Q_OBJECT

public:
    using Move = std::function<void(PickedLists&)>;
    /// Carries out a move on the lists that the mover shows.
    using Owner = std::function<void(const Move&)>;

    /// The grids' first column is captioned as `names` say and takes the rows' first cell; `more` describes
    /// further columns, of the available list `availableMore` where they differ. `lists` must live as long as
    /// the mover.
    TwoListMover(const PickedNames& names, const PickedLists& lists, Owner owner, QWidget* parent = nullptr,
                 const QList<GridColumn>& more = {},
                 const std::optional<QList<GridColumn>>& availableMore = {});

    ListGrid& AvailableGrid() const { return *m_available; }
    ListGrid& SelectedGrid() const { return *m_selected; }
    /// In tab order: filter and grid of the available list, the four buttons, filter and grid of the selected
    /// one.
    QList<QWidget*> FocusWidgets() const;
    /// Shows the lists as they are now. Lists that are still the same keep filter and selection.
    void Refresh();
    /// The same for lists that are still the same record's: filter and selection stay in any case.
    void RefreshInPlace();
    /// Display only: the lists can be looked through, nothing moves.
    void SetReadOnly(bool readOnly);
    void SetPrompter(Prompter& prompter);
    /// Asked before rows move: why they may not; empty lets them go. The answer is shown to the operator.
    void SetVeto(std::function<QString(const QStringList& keys, bool toSelected)> veto) {
        m_veto = std::move(veto);
    }

    /// Asked behind the veto: answers the rows that do move, having asked and told what there is to it.
    void SetAdmission(
        std::function<QStringList(const QStringList& keys, bool toSelected, Prompter&, QWidget*)> admit) {
        m_admit = std::move(admit);
    }

signals:
    /// The operator moved rows.
    void Changed();

private:
    ListGrid* MakeGrid(const QString& name, const QString& caption, const QList<GridColumn>& more);
    QPushButton* MakeButton(const QString& name, const QString& text, const QString& toolTip,
                            void (TwoListMover::*slot)());
    void Show(ListGrid& grid, bool selected);
    void Select();
    void SelectAll();
    void Discard();
    void DiscardAll();
    void Shift(ListGrid& from, ListGrid& to, QStringList keys, bool toSelected);
    void FollowOrder(ListGrid& grid, bool selected);
    void RefreshButtons();

    const PickedLists& m_lists;
    Owner m_owner;
    std::function<QString(const QStringList&, bool)> m_veto;
    std::function<QStringList(const QStringList&, bool, Prompter&, QWidget*)> m_admit;
    ListGrid* m_available = nullptr;
    ListGrid* m_selected = nullptr;
    QPushButton* m_select = nullptr;
    QPushButton* m_selectAll = nullptr;
    QPushButton* m_discard = nullptr;
    QPushButton* m_discardAll = nullptr;
    bool m_readOnly = false;
    bool m_isMoving = false;
    quint64 m_shownRevisions[2] = {}; // of the available list and the selected one
};

} // namespace sysadmin
