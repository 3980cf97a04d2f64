// Basic's conversion functions CInt, CLng, CDbl, CBool, CStr and CDate.
#include <cctype>
#include <cmath>
#include <limits>
#include <string>

#include "platform/automation/basic_date.h"
#include "platform/automation/variant.h"

namespace automation {

namespace {

bool EqualsIgnoringCase(const std::string& a, const char* b) {
    size_t i = 0;
    for (; i < a.size() && b[i]; ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    }
    return i == a.size() && !b[i];
}

// Rounds half to even and checks the result fits the target integer type.
template <class Int>
Int RoundToInteger(double value) {
    const double rounded = RoundHalfEven(value);
    if (!(rounded >= std::numeric_limits<Int>::min() && rounded <= std::numeric_limits<Int>::max()))
        RaiseBasic(kErrOverflow);
    return static_cast<Int>(rounded);
}

}  // namespace

double Variant::CDbl() const {
    switch (Type()) {
        case vtEmpty: return 0;
        case vtNull: RaiseBasic(kErrInvalidUseOfNull);
        case vtInteger: return std::get<int16_t>(v_);
        case vtLong: return std::get<int32_t>(v_);
        case vtDouble: return std::get<double>(v_);
        case vtBoolean: return std::get<bool>(v_) ? VARIANT_TRUE : VARIANT_FALSE;
        case vtDate: return std::get<DateValue>(v_).serial;
        case vtString: {
            double value = 0;
            if (!ParseBasicNumber(std::get<std::string>(v_), &value)) RaiseBasic(kErrTypeMismatch);
            return value;
        }
        default: RaiseBasic(kErrTypeMismatch);
    }
}

int32_t Variant::CLng() const {
    switch (Type()) {
        case vtInteger: return std::get<int16_t>(v_);
        case vtLong: return std::get<int32_t>(v_);
        default: return RoundToInteger<int32_t>(CDbl());
    }
}

int16_t Variant::CInt() const {
    if (Type() == vtInteger) return std::get<int16_t>(v_);
    return RoundToInteger<int16_t>(CDbl());
}

bool Variant::CBool() const {
    switch (Type()) {
        case vtBoolean: return std::get<bool>(v_);
        case vtString: {
            const std::string& text = std::get<std::string>(v_);
            if (EqualsIgnoringCase(text, "True")) return true;
            if (EqualsIgnoringCase(text, "False")) return false;
            return CDbl() != 0;
        }
        default: return CDbl() != 0;
    }
}

std::string Variant::CStr() const {
    switch (Type()) {
        case vtEmpty: return "";
        case vtNull: RaiseBasic(kErrInvalidUseOfNull);
        case vtInteger: return std::to_string(std::get<int16_t>(v_));
        case vtLong: return std::to_string(std::get<int32_t>(v_));
        case vtDouble: return FormatBasicDouble(std::get<double>(v_));
        case vtString: return std::get<std::string>(v_);
        case vtBoolean: return std::get<bool>(v_) ? "True" : "False";
        case vtDate: return FormatBasicDate(std::get<DateValue>(v_).serial);
        default: RaiseBasic(kErrTypeMismatch);
    }
}

double Variant::CDate() const {
    if (Type() == vtString) {
        double serial = 0;
        if (ParseBasicDate(std::get<std::string>(v_), &serial)) return serial;
        RaiseBasic(kErrTypeMismatch);
    }
    return CDbl();
}

}  // namespace automation
