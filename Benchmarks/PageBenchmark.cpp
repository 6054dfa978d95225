// What a user waits for: a page's rows built, a switch moved, by the number of rows.

#include "Support/TestPhone.h"
#include "TDCallsSettingsController.h"
#include "TDRootListController.h"

#include <benchmark/benchmark.h>

namespace {

constexpr const char* simChoice = "ShowSimSlectionForCalls";

/// A Calls page of so many rows under a root page.
struct Pages {
    TestPhone phone { TDRootListController::classObject() };
    std::shared_ptr<TDRootListController> root = std::make_shared<TDRootListController>();
    std::shared_ptr<TDCallsSettingsController> calls = std::make_shared<TDCallsSettingsController>();

    explicit Pages(std::int64_t rows)
    {
        Array items { item("PSSwitchCell", "TandemEnabledCalls"), item("PSGroupCell", "group"),
            item("PSSwitchCell", simChoice), item("PSSliderCell", "TandemSimSelectionTimeForCalls") };
        while (items.size() < static_cast<std::size_t>(rows))
            items.push_back(item("PSSwitchCell", "row" + std::to_string(items.size())));
        items.push_back(item("PSGroupCell", "last"));
        phone.writePage("Root", {});
        phone.writePage("Calls", items);
        root->initForContentSize({ 375, 667 });
        calls->initForContentSize({ 375, 667 });
        calls->setParentController(root);
        calls->loadViewIfNeeded();
    }
};

void buildRows(benchmark::State& state)
{
    Pages pages(state.range(0));
    for (auto _ : state)
        pages.calls->reloadSpecifiers();
}
BENCHMARK(buildRows)->Arg(15)->Arg(150)->Arg(10000);

void moveSimChoice(benchmark::State& state)
{
    Pages pages(state.range(0));
    const Row row = pages.calls->specifierAtIndex(2);
    row->setProperty_forKey(simChoice, PSProperty::key);
    bool on = false;
    for (auto _ : state) {
        pages.calls->enableShowSimSelection_specifier(on, row);
        on = !on;
    }
}
BENCHMARK(moveSimChoice)->Arg(15)->Arg(150)->Arg(10000);

void layOutOneCell(benchmark::State& state)
{
    Pages pages(state.range(0));
    for (auto _ : state) {
        pages.calls->table().reloadCells();
        const auto cell = pages.calls->table().loadCellForRowAtIndexPath({ 0, 0 });
        cell->setFrame({ 0, 0, 375, 44 });
        cell->layoutIfNeeded();
    }
}
BENCHMARK(layOutOneCell)->Arg(15)->Arg(10000);

} // namespace
