#pragma once
// How the members of a group of eight are named: the group's name, an
// underscore and the row 0..7 ("tabINPNazev_3" is the name of input 4).

#include <QString>

namespace rm8::ui {

inline QString rowName(const QString& name, int row)
{
    return name + QLatin1Char('_') + QString::number(row);
}

} // namespace rm8::ui
