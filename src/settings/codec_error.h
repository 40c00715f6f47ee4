#pragma once
// Why encoding or decoding an image stopped. The codec never shows a message;
// the flow that called it decides what the user is told.

#include <cstdint>
#include <string>

namespace rm8 {

enum class CodecFault {
    AddressOutOfRange, // an address past 65,535
    ValueOverflow,     // a value that does not fit its byte or word
    TextConversion,    // a character that Windows-1250 cannot hold, or a NUL
};

struct CodecError {
    CodecFault fault = CodecFault::AddressOutOfRange;
    std::uint64_t address = 0;
    std::string field;  // the field being converted, when there is one
    int row = 0;        // 1..8 for a field of a table, 0 otherwise
    std::string detail; // for example the character that failed

    // One line in Czech for the user, naming the field and what is wrong.
    std::string describe() const;
};

} // namespace rm8
