#include "settings/codec_error.h"

namespace rm8 {

std::string CodecError::describe() const
{
    std::string where;
    if (!field.empty()) {
        where = "pole " + field;
        if (row > 0)
            where += " (řádek " + std::to_string(row) + ")";
        where += ": ";
    }
    switch (fault) {
    case CodecFault::AddressOutOfRange:
        return where + "adresa " + std::to_string(address)
               + " leží mimo paměť EEPROM (0 až 65535)";
    case CodecFault::ValueOverflow:
        return where + "hodnota se nevejde na adresu " + std::to_string(address)
               + (detail.empty() ? "" : " (" + detail + ")");
    case CodecFault::TextConversion:
        return where + "text obsahuje znak, který nelze uložit v kódování Windows-1250"
               + (detail.empty() ? "" : " (" + detail + ")");
    }
    return where;
}

} // namespace rm8
