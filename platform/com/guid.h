#pragma once
// Class and interface identifiers in the registry's text form
// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}".
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace com {

struct GUID {
    uint32_t data1 = 0;
    uint16_t data2 = 0;
    uint16_t data3 = 0;
    std::array<uint8_t, 8> data4{};

    bool operator==(const GUID& o) const {
        return data1 == o.data1 && data2 == o.data2 && data3 == o.data3 && data4 == o.data4;
    }
    bool operator!=(const GUID& o) const { return !(*this == o); }
    bool operator<(const GUID& o) const;
    bool IsNull() const { return *this == GUID{}; }
};
using CLSID = GUID;
using IID = GUID;
using REFIID = const GUID&;
using REFCLSID = const GUID&;

// Parses the braced registry form (case-insensitive hex); nullopt when malformed.
std::optional<GUID> ParseGuid(const std::string& text);
// Parses or throws std::invalid_argument; for identifiers fixed in code.
GUID MakeGuid(const char* text);
// Upper-case braced registry form.
std::string FormatGuid(const GUID& guid);

}  // namespace com

template <>
struct std::hash<com::GUID> {
    size_t operator()(const com::GUID& g) const noexcept {
        size_t h = g.data1;
        h = h * 31 + g.data2;
        h = h * 31 + g.data3;
        for (auto b : g.data4) h = h * 31 + b;
        return h;
    }
};
