#include "editing/row_labels.h"

#include "settings/station_settings.h"

namespace rm8 {

std::string rowLabel(RowTable table, std::size_t row)
{
    const std::string number = std::to_string(row + 1);
    switch (table) {
    case RowTable::Inputs:
        return "IN" + number;
    case RowTable::Outputs:
        return "OUT" + number;
    case RowTable::Analog:
        return row == kBatteryRow ? std::string("BAT") : "AIN" + number;
    case RowTable::Phones:
        return "T" + number;
    }
    return number;
}

} // namespace rm8
