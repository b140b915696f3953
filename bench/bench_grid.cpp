// Lists in the grid until they are painted, and the same in a QTableView with a plain model behind a
// QSortFilterProxyModel, or in a QTableWidget.
#include "support/BenchLibrary.h"

#include "framework/ListGrid.h"
#include "framework/TwoListMover.h"
#include "framework/forms/ListFields.h"

#include <QAbstractButton>
#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTableWidget>

#include <benchmark/benchmark.h>

using namespace sysadmin;

namespace {

const QSize WindowSize(800, 600);
const QList<GridColumn> Columns{{.caption = "Codes", .width = 80},
                                {.caption = "Names"},
                                {.caption = "Owning Library", .width = 216},
                                {.caption = "Id", .hidden = true}};

QStringList MakeCells(int i, int count) {
    const QString id = QString::number(i);
    return {"LOC" + QString::number(i * 7919LL % count), "Reading room " + id, "Library", id};
}

QList<GridRow> MakeRows(int count) {
    QList<GridRow> rows;
    rows.reserve(count);
    for (int i = 0; i < count; ++i)
        rows.append({QString::number(i), MakeCells(i, count), {}});
    return rows;
}

/// The reference: a model as one writes it, which a QSortFilterProxyModel sorts and filters.
class PlainModel : public QAbstractTableModel {
public:
    void Fill(int count) {
        beginResetModel();
        m_rows.clear();
        m_rows.reserve(count);
        for (int i = 0; i < count; ++i)
            m_rows.append(MakeCells(i, count));
        endResetModel();
    }
    void Append(const QStringList& row) {
        beginInsertRows({}, int(m_rows.size()), int(m_rows.size()));
        m_rows.append(row);
        endInsertRows();
    }
    QStringList Take(int row) {
        beginRemoveRows({}, row, row);
        QStringList taken = m_rows.takeAt(row);
        endRemoveRows();
        return taken;
    }
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : int(m_rows.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : int(Columns.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        return role == Qt::DisplayRole ? m_rows[index.row()][index.column()] : QVariant();
    }

private:
    QList<QStringList> m_rows;
};

struct PlainView {
    PlainView() {
        proxy.setFilterKeyColumn(-1);
        proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
        proxy.setSortCaseSensitivity(Qt::CaseInsensitive);
        proxy.setSourceModel(&model);
        table.setModel(&proxy);
        table.setColumnHidden(3, true);
        table.verticalHeader()->hide();
        table.setSelectionBehavior(QAbstractItemView::SelectRows);
    }

    PlainModel model;
    QSortFilterProxyModel proxy;
    QTableView table;
};

void Show(QWidget& widget) {
    widget.resize(WindowSize);
    widget.show();
    QApplication::processEvents();
}

// Paints what has to be painted, layout of the scroll bars and headers included.
void Paint(QAbstractScrollArea& view) {
    QApplication::processEvents();
    view.viewport()->repaint();
}

// Rows that are there already, and are only shown.
void ShowReadyRows(benchmark::State& state) {
    const QList<GridRow> rows = MakeRows(int(state.range(0)));
    ListGrid grid("vsf", Columns);
    Show(grid);
    for (auto _ : state) {
        grid.SetRows(rows);
        Paint(grid);
        state.PauseTiming();
        grid.SetRows({});
        Paint(grid);
        state.ResumeTiming();
    }
}

// From here on rows are made on the clock, as are the items of the references. In a list that the operator
// has sorted, each filling sorts, too.
void FillGrid(benchmark::State& state, bool sorted) {
    ListGrid grid("vsf", Columns);
    if (sorted)
        grid.sortByColumn(0, Qt::AscendingOrder);
    Show(grid);
    for (auto _ : state) {
        grid.SetRows(MakeRows(int(state.range(0))));
        Paint(grid);
        state.PauseTiming();
        grid.SetRows({});
        Paint(grid);
        state.ResumeTiming();
    }
}

void FillPlain(benchmark::State& state, bool sorted) {
    PlainView view;
    if (sorted)
        view.proxy.sort(0);
    Show(view.table);
    for (auto _ : state) {
        view.model.Fill(int(state.range(0)));
        view.table.selectRow(0);
        Paint(view.table);
        state.PauseTiming();
        view.model.Fill(0);
        Paint(view.table);
        state.ResumeTiming();
    }
}

void FillTable(benchmark::State& state, bool sorted) {
    const int count = int(state.range(0));
    QTableWidget table(0, int(Columns.size()));
    table.setColumnHidden(3, true);
    table.verticalHeader()->hide();
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    Show(table);
    for (auto _ : state) {
        table.setRowCount(count);
        for (int row = 0; row < count; ++row) {
            const QStringList cells = MakeCells(row, count);
            for (int column = 0; column < cells.size(); ++column)
                table.setItem(row, column, new QTableWidgetItem(cells[column]));
        }
        if (sorted)
            table.sortItems(0);
        table.selectRow(0);
        Paint(table);
        state.PauseTiming();
        table.setRowCount(0);
        Paint(table);
        state.ResumeTiming();
    }
}

// A click on a column of texts.
void SortGridByText(benchmark::State& state) {
    ListGrid grid("vsf", Columns);
    Show(grid);
    grid.SetRows(MakeRows(int(state.range(0))));
    for (auto _ : state) {
        grid.sortByColumn(0, Qt::AscendingOrder);
        Paint(grid);
        state.PauseTiming();
        grid.sortByColumn(-1, Qt::AscendingOrder);
        state.ResumeTiming();
    }
}

void SortPlainByText(benchmark::State& state) {
    PlainView view;
    Show(view.table);
    view.model.Fill(int(state.range(0)));
    for (auto _ : state) {
        view.proxy.sort(0);
        Paint(view.table);
        state.PauseTiming();
        view.proxy.sort(-1);
        state.ResumeTiming();
    }
}

// One more letter in the filter box, in a list whose first letter was typed before.
void FilterGrid(benchmark::State& state, bool sorted) {
    ListGrid grid("vsf", Columns);
    if (sorted)
        grid.sortByColumn(0, Qt::AscendingOrder);
    Show(grid);
    grid.SetRows(MakeRows(int(state.range(0))));
    grid.FilterBox()->setText("room");
    grid.FilterBox()->clear();
    for (auto _ : state) {
        grid.FilterBox()->setText("room 1");
        Paint(grid);
        state.PauseTiming();
        grid.FilterBox()->clear();
        state.ResumeTiming();
    }
}

// The first letter since the rows came.
void FilterGridFirst(benchmark::State& state) {
    ListGrid grid("vsf", Columns);
    grid.sortByColumn(0, Qt::AscendingOrder);
    Show(grid);
    const QList<GridRow> rows = MakeRows(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        grid.SetRows(rows);
        Paint(grid);
        state.ResumeTiming();
        grid.FilterBox()->setText("room 1");
        Paint(grid);
    }
}

void FilterPlain(benchmark::State& state, bool sorted) {
    PlainView view;
    if (sorted)
        view.proxy.sort(0);
    Show(view.table);
    view.model.Fill(int(state.range(0)));
    view.table.selectRow(0);
    for (auto _ : state) {
        view.proxy.setFilterFixedString("room 1");
        Paint(view.table);
        state.PauseTiming();
        view.proxy.setFilterFixedString({});
        state.ResumeTiming();
    }
}

QList<GridRow> MakeDates(int count) {
    QList<GridRow> rows;
    for (int i = 0; i < count; ++i)
        rows.append({QString::number(i), {ShownDate(QDate(1990, 1, 1).addDays(i * 7919LL % 20000))}, {}});
    return rows;
}

// A click on a column of dates, as people here write them, until the grid is painted.
void SortDates(benchmark::State& state) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    ListGrid grid("vsf", {{.caption = "Since"}});
    Show(grid);
    grid.SetRows(MakeDates(int(state.range(0))));
    for (auto _ : state) {
        grid.sortByColumn(0, Qt::AscendingOrder);
        Paint(grid);
        state.PauseTiming();
        grid.sortByColumn(-1, Qt::AscendingOrder);
        Paint(grid);
        state.ResumeTiming();
    }
    QLocale::setDefault(before);
}

// The reference: the same days as numbers, by the standard library.
void SortNumbers(benchmark::State& state) {
    std::vector<std::pair<double, int>> days;
    for (int i = 0; i < int(state.range(0)); ++i)
        days.emplace_back(double(i * 7919LL % 20000), i);
    for (auto _ : state) {
        auto sorted = days;
        std::sort(sorted.begin(), sorted.end());
        benchmark::DoNotOptimize(sorted.data());
    }
}

// One row from a long sorted list into another one.
void MoveOneRow(benchmark::State& state) {
    const QList<GridRow> rows = MakeRows(int(state.range(0)));
    PickedLists lists;
    lists.Load(rows, {});
    lists.MoveToSelected([&] {
        QStringList half;
        for (qsizetype i = 0; i < rows.size(); i += 2)
            half.append(rows[i].key);
        return half;
    }());
    const PickedNames names{"vsfAvailable", "Available",    "vsfSelected", "Selected",
                            "cmdSelect",    "cmdSelectAll", "cmdDiscard",  "cmdDiscardAll"};
    TwoListMover mover(
        names, lists, [&](const TwoListMover::Move& move) { move(lists); }, nullptr);
    Show(mover);
    auto* available = mover.findChild<ListGrid*>("vsfAvailable");
    for (ListGrid* grid : mover.findChildren<ListGrid*>())
        grid->sortByColumn(0, Qt::AscendingOrder);
    auto* select = mover.findChild<QAbstractButton*>("cmdSelect");
    for (auto _ : state) {
        available->SelectKey(available->Model().RowAt(available->Model().rowCount() / 2).key);
        select->click();
        Paint(*available);
    }
}

// The reference: the same with plain models, each behind a proxy that sorts it.
void MoveOneRowPlain(benchmark::State& state) {
    PlainView from;
    PlainView to;
    for (PlainView* view : {&from, &to}) {
        view->proxy.sort(0);
        Show(view->table);
        view->model.Fill(int(state.range(0)) / 2);
    }
    for (auto _ : state) {
        const int row = from.proxy.rowCount() / 2;
        to.model.Append(from.model.Take(from.proxy.mapToSource(from.proxy.index(row, 0)).row()));
        from.table.selectRow(row);
        Paint(from.table);
        Paint(to.table);
    }
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(ShowReadyRows)->Apply(Sizes);
BENCHMARK_CAPTURE(FillGrid, as_it_comes, false)->Apply(Sizes);
BENCHMARK_CAPTURE(FillPlain, as_it_comes, false)->Apply(Sizes);
BENCHMARK_CAPTURE(FillTable, as_it_comes, false)->Apply(Sizes);
BENCHMARK_CAPTURE(FillGrid, sorted, true)->Apply(Sizes);
BENCHMARK_CAPTURE(FillPlain, sorted, true)->Apply(Sizes);
BENCHMARK_CAPTURE(FillTable, sorted, true)->Apply(Sizes);
BENCHMARK(SortGridByText)->Apply(Sizes);
BENCHMARK(SortPlainByText)->Apply(Sizes);
BENCHMARK(SortDates)->Apply(Sizes);
BENCHMARK(SortNumbers)->Apply(Sizes);
BENCHMARK_CAPTURE(FilterGrid, as_it_comes, false)->Apply(Sizes);
BENCHMARK_CAPTURE(FilterPlain, as_it_comes, false)->Apply(Sizes);
BENCHMARK_CAPTURE(FilterGrid, sorted, true)->Apply(Sizes);
BENCHMARK_CAPTURE(FilterPlain, sorted, true)->Apply(Sizes);
BENCHMARK(FilterGridFirst)->Apply(Sizes);
BENCHMARK(MoveOneRow)->Apply(Sizes);
BENCHMARK(MoveOneRowPlain)->Apply(Sizes);

} // namespace

int main(int argc, char** argv) {
    const BenchEnvironment environment;
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
