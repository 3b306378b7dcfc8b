#pragma once

#include "support/Testing.h"

namespace tessaloom::testing {

/// A line of a table: its cells with the escapes resolved, and its number in the file for messages.
struct TsvRow {
    int line = 0;
    std::vector<std::string> cells;

    const std::string& operator[](std::size_t column) const { return cells.at(column); }
};

inline void AppendUtf8(std::string& out, unsigned codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | codePoint >> 6);
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | codePoint >> 12);
        out += static_cast<char>(0x80 | (codePoint >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

/// A cell without its escapes: \r \n \t \\, \xHH for a byte, \uXXXX for a character (as UTF-8).
inline std::string Unescaped(std::string_view cell) {
    std::string out;
    auto hex = [&](std::size_t at, std::size_t digits) {
        return static_cast<unsigned>(std::stoul(std::string(cell.substr(at, digits)), nullptr, 16));
    };
    for (std::size_t i = 0; i < cell.size(); ++i) {
        if (cell[i] != '\\' || i + 1 == cell.size()) {
            out += cell[i];
            continue;
        }
        switch (cell[++i]) {
            case 'r':
                out += '\r';
                break;
            case 'n':
                out += '\n';
                break;
            case 't':
                out += '\t';
                break;
            case 'x':
                out += static_cast<char>(hex(i + 1, 2)), i += 2;
                break;
            case 'u':
                AppendUtf8(out, hex(i + 1, 4)), i += 4;
                break;
            default:
                out += cell[i];
        }
    }
    return out;
}

/// The rows of a tab-separated file of tests/data below its header line. Throws when it cannot be read.
inline std::vector<TsvRow> ReadTsv(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path);
    std::vector<TsvRow> rows;
    std::string text;
    for (int line = 1; std::getline(file, text); ++line) {
        if (line == 1 || text.empty()) continue;
        TsvRow row{line, {}};
        for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
            end = text.find('\t', start);
            row.cells.push_back(Unescaped(std::string_view(text).substr(start, end - start)));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace tessaloom::testing
