#pragma once
// The captions of the row labels of the main window's tables, which messages
// and dialog captions quote: IN1..IN8, OUT1..OUT8, AIN1..AIN7 and BAT (the
// eighth analog input measures the battery), T1..T8.

#include <cstddef>
#include <string>

namespace rm8 {

enum class RowTable { Inputs, Outputs, Analog, Phones };

std::string rowLabel(RowTable table, std::size_t row); // row 0..7

} // namespace rm8
