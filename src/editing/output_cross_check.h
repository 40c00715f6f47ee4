#pragma once
// Before the EEPROM is written, every output's name and command words are
// tested against the others: the station recognises an output and a command
// by the start of a word, so none may equal or begin another that it could be
// taken for.

#include <cstddef>
#include <string>
#include <vector>

#include "settings/station_settings.h"

namespace rm8 {

enum class OutputColumn { Name, On, Off, Impulse };

struct OutputConflict {
    std::size_t row; // 0..7
    OutputColumn column;
    std::string field;   // tabOUTNazev, tabOUTZap, tabOUTVyp or tabOUTimpuls
    std::string message; // with the row's label in it
};

// Every conflicting cell, in the order the write flow tests them: row by row,
// and within a row the name, the on, off and impulse commands. The write
// stops at the first.
std::vector<OutputConflict> outputCrossCheck(const StationSettings& settings);

} // namespace rm8
