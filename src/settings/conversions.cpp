#include "settings/conversions.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

namespace rm8 {
namespace {

double powerOfTen(int decimals)
{
    return std::pow(10.0, decimals);
}

// Splits UTF-8 into characters so that the phone form swaps characters, not
// the bytes of one.
std::vector<std::string_view> characters(std::string_view text)
{
    std::vector<std::string_view> result;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length = 1;
        if (lead >= 0xF0)
            length = 4;
        else if (lead >= 0xE0)
            length = 3;
        else if (lead >= 0xC0)
            length = 2;
        std::size_t end = i + 1;
        while (end < text.size() && end < i + length
               && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            ++end;
        result.push_back(text.substr(i, end - i));
        i = end;
    }
    return result;
}

std::string swappedPairs(const std::vector<std::string_view>& chars, std::size_t from)
{
    std::string out;
    std::size_t i = from;
    for (; i + 1 < chars.size(); i += 2) {
        out += chars[i + 1];
        out += chars[i];
    }
    if (i < chars.size())
        out += chars[i];
    return out;
}

// The value as it comes back from the decimal text of value * 10^decimals.
double throughScaledText(double value, int decimals)
{
    const double scale = powerOfTen(decimals);
    const double scaled = value * scale;
    if (!std::isfinite(scaled))
        return value;
    return textValue(decimalText(scaled)) / scale;
}

int wholeByte(double value)
{
    if (!std::isfinite(value) || value < -1 || value > 256)
        return -1;
    return static_cast<int>(value);
}

} // namespace

double roundHalfUp(double x, int decimals)
{
    const double scale = powerOfTen(decimals);
    const double y = x * scale;
    double i = std::trunc(y);
    if (y - i >= 0.5)
        i += 1;
    return i / scale;
}

std::string decimalText(double value)
{
    if (value == 0 || !std::isfinite(value))
        return "0";
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return buffer;
}

std::string startupNumberText(double value)
{
    const std::string text = decimalText(value);
    return value < 0 ? text : " " + text;
}

double textValue(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    std::string number;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        number += text[i++];
    const auto isDigit = [&](std::size_t k) { return k < text.size() && text[k] >= '0' && text[k] <= '9'; };
    bool digits = false;
    while (isDigit(i)) {
        number += text[i++];
        digits = true;
    }
    if (i < text.size() && (text[i] == '.' || text[i] == ',')) {
        number += '.';
        ++i;
        while (isDigit(i)) {
            number += text[i++];
            digits = true;
        }
    }
    if (!digits)
        return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t k = i + 1;
        std::string exponent = "e";
        if (k < text.size() && (text[k] == '+' || text[k] == '-'))
            exponent += text[k++];
        if (isDigit(k)) {
            while (isDigit(k))
                exponent += text[k++];
            number += exponent;
        }
    }
    const char* first = number.data();
    if (*first == '+')
        ++first;
    double value = 0;
    const auto [end, error] = std::from_chars(first, number.data() + number.size(), value);
    (void)end;
    if (error == std::errc::result_out_of_range) {
        // Far beyond any range: saturate so that clamping still works.
        const bool tiny = number.find("e-") != std::string::npos;
        const bool negative = number[0] == '-';
        if (tiny)
            return 0;
        return negative ? -DBL_MAX : DBL_MAX;
    }
    return value;
}

std::string clampText(std::string_view text, double lo, double hi, int decimals)
{
    const double v = throughScaledText(textValue(text), decimals);
    if (v < lo)
        return decimalText(throughScaledText(lo, decimals));
    if (v > hi)
        return decimalText(throughScaledText(hi, decimals));
    return decimalText(v);
}

std::string decimalPoint(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        if (c == ',')
            c = '.';
    return out;
}

std::uint8_t levelToByte(const MeasuringRange& range, std::string_view text)
{
    const std::string t = clampText(text, range.lower, range.upper, range.decimals);
    const double span = range.upper - range.lower;
    const int b = wholeByte(roundHalfUp((textValue(t) - range.lower) * 255 / span, 0));
    return static_cast<std::uint8_t>(b < 0 ? 0 : (b > 255 ? 255 : b));
}

double byteToLevel(const MeasuringRange& range, std::uint8_t byte)
{
    const double step = (range.upper - range.lower) / 255;
    const double v = range.lower + roundHalfUp(byte * step, range.decimals);
    return textValue(clampText(decimalText(v), range.lower, range.upper, range.decimals));
}

std::uint8_t hysteresisToByte(const MeasuringRange& range, std::string_view text)
{
    const double span = range.upper - range.lower;
    const std::string t = clampText(text, 0, span / 2, range.decimals);
    const int b = wholeByte(roundHalfUp(textValue(t) * 255 / span, 0));
    return static_cast<std::uint8_t>(b < 0 ? 0 : (b > 255 ? 255 : b));
}

double byteToHysteresis(const MeasuringRange& range, std::uint8_t byte)
{
    const double span = range.upper - range.lower;
    const double h = roundHalfUp(byte * span / 255, range.decimals);
    return textValue(clampText(decimalText(h), 0, span / 2, range.decimals));
}

std::string phoneToAddressForm(std::string_view phone)
{
    if (phone.empty())
        return {};
    const bool international = phone.front() == '+';
    auto digits = characters(international ? phone.substr(1) : phone);
    char length[16];
    std::snprintf(length, sizeof length, "%02zX", digits.size());
    if (digits.size() % 2 == 1)
        digits.push_back("F");
    return std::string(length) + (international ? "91" : "81") + swappedPairs(digits, 0);
}

std::string addressFormToPhone(std::string_view addressForm)
{
    const auto chars = characters(addressForm);
    std::string phone;
    if (chars.size() >= 4 && chars[2] == "9" && chars[3] == "1")
        phone = "+";
    phone += swappedPairs(chars, 4);
    if (!phone.empty() && phone.back() == 'F')
        phone.pop_back();
    return phone;
}

} // namespace rm8
