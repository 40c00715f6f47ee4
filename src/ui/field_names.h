#pragma once
// How the window names its fields: a group of eight as the group's name, an
// underscore and the row 0..7 ("tabINPNazev_3" is the name of input 4), a
// single field by its name alone. The window hands rows around as an int,
// -1 for a single field, since Qt's signals and item data carry one; the
// core's FieldRow is converted here and nowhere else.

#include <QString>

#include "fields/table_rows.h"

namespace rm8::ui {

inline QString rowName(const QString& name, int row)
{
    return name + QLatin1Char('_') + QString::number(row);
}

inline FieldRow fieldRowOf(int windowRow)
{
    return windowRow < 0 ? std::nullopt : FieldRow(static_cast<std::size_t>(windowRow));
}

inline int windowRowOf(FieldRow row)
{
    return row ? static_cast<int>(*row) : -1;
}

// The object name of a field at a window row.
inline QString fieldName(const QString& name, int windowRow)
{
    return fieldRowOf(windowRow) ? rowName(name, windowRow) : name;
}

} // namespace rm8::ui
