#pragma once

#include "WindowTest.h"

#include <QStringList>

#include <ostream>
#include <vector>

/// A page or a sheet, and how it is reached from the root page: which rows are tapped, and which buttons then.
struct Place {
    const char* name;
    QStringList rows;
    QStringList buttons;
};

/// Every page and every sheet, and the states of them that are read otherwise.
const std::vector<Place>& everyPlace();

void PrintTo(const Place& place, std::ostream* stream);
std::string nameOf(const testing::TestParamInfo<Place>& place);

/// A window so high that all of each page is on it.
class PlaceTest : public WindowTest {
protected:
    void go(const Place& place);
};
