#pragma once
// Cases kept in a data file, one a line: tab-separated columns, '#' starts a
// comment line. Byte strings are written as hexadecimal pairs ("C5 BE").

#include <gtest/gtest.h>

#include <sstream>

#include "support/test_data.h"

namespace rm8::test {

using Row = std::vector<std::string>;

inline std::vector<Row> readTable(const std::string& name)
{
    std::ifstream in(dataDir() / name);
    std::vector<Row> rows;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream fields(line + "\t");
        Row& row = rows.emplace_back();
        for (std::string field; std::getline(fields, field, '\t');)
            row.push_back(field);
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

// The actual text cut to the expected one when that ends in '*', which stands
// for the system's or a library's own words.
inline std::string likePattern(const std::string& actual, const std::string& expected)
{
    return expected.ends_with("*") ? actual.substr(0, expected.size() - 1) + "*" : actual;
}

inline std::string unhex(const std::string& text)
{
    std::istringstream in(text);
    std::string bytes;
    for (unsigned byte; in >> std::hex >> byte;)
        bytes.push_back(static_cast<char>(byte));
    return bytes;
}

} // namespace rm8::test
