// A list of records into the grid until it is painted, and the same rows into a QTableWidget.
#include "support/BenchLibrary.h"

#include "framework/ListGrid.h"
#include "framework/TwoListMover.h"
#include "framework/forms/ListFields.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableWidget>

#include <benchmark/benchmark.h>

using namespace sysadmin;

namespace {

const QSize WindowSize(800, 600);
const QList<GridColumn> Columns{{.caption = "Codes", .width = 80},
                                {.caption = "Names"},
                                {.caption = "Owning Library", .width = 216},
                                {.caption = "Id", .hidden = true}};

QList<GridRow> MakeRows(int count) {
    QList<GridRow> rows;
    rows.reserve(count);
    for (int i = 0; i < count; ++i) {
        const QString id = QString::number(i);
        rows.append(
            {id, {"LOC" + QString::number(i * 7919LL % count), "Reading room " + id, "Library", id}, {}});
    }
    return rows;
}

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

void FillListGrid(benchmark::State& state) {
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

void FillTableWidget(benchmark::State& state) {
    const QList<GridRow> rows = MakeRows(int(state.range(0)));
    QTableWidget table(0, int(Columns.size()));
    for (int column = 0; column < Columns.size(); ++column) {
        table.setHorizontalHeaderItem(column, new QTableWidgetItem(Columns[column].caption));
        table.setColumnHidden(column, Columns[column].hidden);
    }
    table.verticalHeader()->hide();
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    Show(table);
    for (auto _ : state) {
        table.setRowCount(int(rows.size()));
        for (int row = 0; row < rows.size(); ++row)
            for (int column = 0; column < Columns.size(); ++column)
                table.setItem(row, column, new QTableWidgetItem(rows[row].cells[column]));
        table.selectRow(0);
        Paint(table);
        state.PauseTiming();
        table.setRowCount(0);
        Paint(table);
        state.ResumeTiming();
    }
}

// In a list that the operator has sorted, each filling sorts, too.
void FillSortedListGrid(benchmark::State& state) {
    const QList<GridRow> rows = MakeRows(int(state.range(0)));
    ListGrid grid("vsf", Columns);
    grid.sortByColumn(0, Qt::AscendingOrder);
    Show(grid);
    for (auto _ : state) {
        grid.SetRows(rows);
        Paint(grid);
    }
}

void FillSortedTableWidget(benchmark::State& state) {
    const QList<GridRow> rows = MakeRows(int(state.range(0)));
    QTableWidget table(0, int(Columns.size()));
    Show(table);
    for (auto _ : state) {
        table.setRowCount(int(rows.size()));
        for (int row = 0; row < rows.size(); ++row)
            for (int column = 0; column < Columns.size(); ++column)
                table.setItem(row, column, new QTableWidgetItem(rows[row].cells[column]));
        table.sortItems(0);
        Paint(table);
        state.PauseTiming();
        table.setRowCount(0);
        state.ResumeTiming();
    }
}

void Filter(benchmark::State& state, bool sorted) {
    ListGrid grid("vsf", Columns);
    if (sorted)
        grid.sortByColumn(0, Qt::AscendingOrder);
    Show(grid);
    grid.SetRows(MakeRows(int(state.range(0))));
    for (auto _ : state) {
        grid.FilterBox()->setText("room 1");
        Paint(grid);
        state.PauseTiming();
        grid.FilterBox()->clear();
        state.ResumeTiming();
    }
}

// One more letter in the filter box.
void FilterListGrid(benchmark::State& state) {
    Filter(state, false);
}

// The same in a list that the operator has sorted.
void FilterSortedListGrid(benchmark::State& state) {
    Filter(state, true);
}

QList<GridRow> MakeDates(int count) {
    QList<GridRow> rows;
    for (int i = 0; i < count; ++i)
        rows.append(
            {QString::number(i),
             {QLocale().toString(QDate(1990, 1, 1).addDays(i * 7919LL % 20000), QLocale::ShortFormat)},
             {}});
    return rows;
}

// A click on a column of dates, as people here write them.
void SortDates(benchmark::State& state) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    GridModel model({{.caption = "Since"}});
    model.SetRows(MakeDates(int(state.range(0))));
    for (auto _ : state) {
        model.sort(0, Qt::AscendingOrder);
        state.PauseTiming();
        model.sort(-1);
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

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(FillListGrid)->Apply(Sizes);
BENCHMARK(FillTableWidget)->Apply(Sizes);
BENCHMARK(FillSortedListGrid)->Apply(Sizes);
BENCHMARK(FillSortedTableWidget)->Apply(Sizes);
BENCHMARK(FilterListGrid)->Apply(Sizes);
BENCHMARK(FilterSortedListGrid)->Apply(Sizes);
BENCHMARK(SortDates)->Apply(Sizes);
BENCHMARK(SortNumbers)->Apply(Sizes);
BENCHMARK(MoveOneRow)->Apply(Sizes);

} // namespace

int main(int argc, char** argv) {
    const BenchEnvironment environment;
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
