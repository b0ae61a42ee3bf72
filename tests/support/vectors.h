// Messages as lines of hexadecimal octets, and the tables of tests/vectors/.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "talvek/types.h"

using Octets = std::vector<BYTE>;

// Blanks and '|' may stand anywhere.
inline Octets FromHex(const std::string& text)
{
    Octets octets;
    std::string digits;
    for (const char c : text) {
        if (c == ' ' || c == '|') continue;
        digits += c;
        if (digits.size() < 2) continue;
        octets.push_back(static_cast<BYTE>(std::stoul(digits, nullptr, 16)));
        digits.clear();
    }
    EXPECT_TRUE(digits.empty()) << text;
    return octets;
}

inline std::string ToHex(const BYTE* octets, size_t count)
{
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        text += "0123456789ABCDEF"[octets[i] >> 4];
        text += "0123456789ABCDEF"[octets[i] & 15];
    }
    return text;
}
inline std::string ToHex(const Octets& octets) { return ToHex(octets.data(), octets.size()); }

// A row: the cells by the names of the table's first line.
using VectorRow = std::map<std::string, std::string>;

inline std::vector<VectorRow> ReadVectors(const std::string& name)
{
    std::ifstream file(TALVEK_SOURCE_DIRECTORY "/tests/vectors/" + name);
    std::vector<std::string> columns;
    std::vector<VectorRow> rows;
    for (std::string line, cell; std::getline(file, line);) {
        std::istringstream cells(line);
        VectorRow row;
        for (size_t i = 0; std::getline(cells, cell, '\t'); ++i) {
            if (rows.empty() && row.empty() && columns.size() == i) {
                columns.push_back(cell);
            } else {
                row[columns.at(i)] = cell;
            }
        }
        if (!row.empty()) rows.push_back(row);
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

inline ULONG Number(const std::string& text, int base = 10)
{
    return static_cast<ULONG>(std::stoul(text, nullptr, base));
}
