#pragma once
// Cases kept in a data file, one a line: tab-separated columns, '#' starts a
// comment line. Byte strings are written as hexadecimal pairs ("C5 BE").

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

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
        Row& row = rows.emplace_back();
        std::size_t start = 0;
        for (std::size_t tab; (tab = line.find('\t', start)) != std::string::npos; start = tab + 1)
            row.push_back(line.substr(start, tab - start));
        row.push_back(line.substr(start));
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
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
