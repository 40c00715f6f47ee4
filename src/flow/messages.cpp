#include "flow/messages.h"

namespace rm8::messages {
namespace {

std::string quoted(std::string_view before, std::string_view path, std::string_view after)
{
    std::string text(before);
    text += path;
    text += after;
    return text;
}

} // namespace

std::string loadingFile(std::string_view path)
{
    return quoted("Načítám nastavení ze souboru '", path, "'.");
}

std::string loadFailed(std::string_view path)
{
    return quoted("Při načítání nastavení programu ze souboru '", path, "' nastala chyba.");
}

std::string loadSucceeded(std::string_view path)
{
    return quoted("Data ze souboru '", path, "' byla úspěšně načtena.");
}

std::string notEepromFormat(std::string_view path)
{
    return quoted("Data v souboru '", path, "' nejsou v pořádku - neodpovídají formátu EEPROM.");
}

std::string savingFile(std::string_view path)
{
    return quoted("Ukládám nastavení do souboru '", path, "'.");
}

std::string saveFailed(std::string_view path)
{
    return quoted("Při ukládání nastavení programu do souboru '", path, "' nastala chyba.");
}

std::string portNotOpened(std::string_view portName)
{
    return quoted("Nelze otevřít port ", portName, "");
}

std::string wrongProduct(std::string_view programmableProduct)
{
    return quoted("Touto verzí programu lze naprogramovat pouze zařízení ", programmableProduct, ".");
}

std::string oldProcessor(std::string_view minimumVersion)
{
    return quoted("Touto verzí programu lze naprogramovat pouze zařízení s procesorem verze ", minimumVersion,
                  " a vyšší.");
}

} // namespace rm8::messages
