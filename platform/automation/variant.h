#pragma once
// Basic's Variant: Empty, Null, Integer (16-bit), Long (32-bit), Double,
// Currency-free subset of the automation types the library uses, with
// Basic's conversion rules (CInt, CLng, CDbl, CStr, CBool).
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/automation/basic_error.h"
#include "platform/com/unknown.h"

namespace automation {

using VARIANT_BOOL = int16_t;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;   // all bits set
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// Automation's type codes (VarType).
enum VarType : int16_t {
    vtEmpty = 0,
    vtNull = 1,
    vtInteger = 2,
    vtLong = 3,
    vtDouble = 5,
    vtDate = 7,
    vtString = 8,
    vtObject = 9,
    vtBoolean = 11,
    vtArray = 0x2000,  // array of Variants (vtArray | vtVariant in Basic)
};

class Variant;
// A one-dimensional array of Variants with its lower bound (Basic arrays
// may be empty: bounds 0 to -1).
struct VariantArray {
    int32_t lowerBound = 0;
    std::vector<Variant> items;
    int32_t UpperBound() const { return lowerBound + static_cast<int32_t>(items.size()) - 1; }
};

struct DateValue {
    double serial = 0;  // days since 1899-12-30, fraction = time of day
    bool operator==(const DateValue& o) const { return serial == o.serial; }
};

class Variant {
public:
    struct EmptyTag {};
    struct NullTag {};

    Variant() = default;  // Empty
    static Variant Null();
    static Variant Empty() { return Variant(); }
    static Variant Integer(int16_t v);
    static Variant Long(int32_t v);
    static Variant Boolean(bool v);
    static Variant Date(double serial);
    Variant(double v);
    Variant(const std::string& v);
    Variant(std::string&& v);
    Variant(const char* v);
    Variant(com::ComPtr<com::IUnknown> object);
    Variant(VariantArray array);
    // int32 converts to Long; use Integer() for a 16-bit value.
    Variant(int32_t v);

    VarType Type() const;
    bool IsEmpty() const { return Type() == vtEmpty; }
    bool IsNull() const { return Type() == vtNull; }
    bool IsObject() const { return Type() == vtObject; }
    bool IsArray() const { return Type() == vtArray; }
    bool IsNumeric() const;  // Basic's IsNumeric

    // Basic's conversions. Null raises error 94; text that is no number
    // raises 13; out-of-range raises 6 (overflow). CLng and CInt round half
    // to even. CStr of Empty is "", of a Boolean "True"/"False".
    int16_t CInt() const;
    int32_t CLng() const;
    double CDbl() const;
    bool CBool() const;
    std::string CStr() const;
    double CDate() const;

    // Raw access (type must match, else error 13).
    const std::string& AsString() const;
    com::ComPtr<com::IUnknown> AsObject() const;
    const VariantArray& AsArray() const;
    VariantArray& AsArray();

    // Basic's "=" comparison between two values; Null compares as not equal
    // (the result of a comparison with Null is Null, which is not True).
    bool EqualsBasic(const Variant& other) const;
    // Exact equality of type and value (for tests and containers).
    bool operator==(const Variant& other) const;
    bool operator!=(const Variant& other) const { return !(*this == other); }

    // A readable form for transcripts: Empty, Null, 12, 'text', True, ...
    std::string Describe() const;

private:
    template <class T>
    static Variant Holding(T value) {
        Variant v;
        v.v_ = std::move(value);
        return v;
    }
    using Storage = std::variant<EmptyTag, NullTag, int16_t, int32_t, double, std::string, bool, DateValue,
                                 com::ComPtr<com::IUnknown>, std::shared_ptr<VariantArray>>;
    Storage v_;
};

// Basic's rounding to an integer: half to even (banker's rounding).
double RoundHalfEven(double v);

// Basic's Val-style number parsing for text conversions: leading/trailing
// blanks allowed, decimal point '.', optional sign and exponent, "&H" hex.
// Returns false when the text is not a number.
bool ParseBasicNumber(const std::string& text, double* out);

// Formats a double the way CStr does ("1", "2.5", "1E+20").
std::string FormatBasicDouble(double v);

}  // namespace automation
