#include "link/win32_error_text.h"

#include <algorithm>
#include <iterator>

namespace rm8::link {
namespace {

struct ErrorText {
    unsigned long code;
    std::string_view text;
};

// Windows refuses a port that another program holds with "access denied",
// not with a sharing violation: both say the port is taken.
constexpr ErrorText kErrorTexts[] = {
    { 2, "port neexistuje" }, // ERROR_FILE_NOT_FOUND
    { 3, "port neexistuje" }, // ERROR_PATH_NOT_FOUND
    { 5, "přístup odepřen: port používá jiný program" }, // ERROR_ACCESS_DENIED
    { 32, "port používá jiný program" }, // ERROR_SHARING_VIOLATION
    { 22, "zařízení portu neodpovídá, bylo odpojeno?" }, // ERROR_BAD_COMMAND
    { 31, "zařízení portu neodpovídá, bylo odpojeno?" }, // ERROR_GEN_FAILURE
    { 1167, "zařízení portu bylo odpojeno" }, // ERROR_DEVICE_NOT_CONNECTED
    { 995, "přenos byl přerušen, zařízení portu bylo odpojeno?" }, // ERROR_OPERATION_ABORTED
    { 123, "neplatné jméno portu" }, // ERROR_INVALID_NAME
    { 1, "není to sériový port" }, // ERROR_INVALID_FUNCTION
};

} // namespace

std::optional<std::string_view> serialPortErrorText(unsigned long win32Error)
{
    const auto found = std::find_if(std::begin(kErrorTexts), std::end(kErrorTexts),
        [win32Error](const ErrorText& entry) { return entry.code == win32Error; });
    if (found == std::end(kErrorTexts))
        return std::nullopt;
    return found->text;
}

} // namespace rm8::link
