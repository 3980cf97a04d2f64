// Basic's Variant: construction, type, raw access, comparison and the
// readable form for transcripts. The conversions live in variant_convert.cpp.
#include "platform/automation/variant.h"

#include <utility>

namespace automation {

namespace {

// Index of each alternative in Variant's storage.
enum StorageIndex : size_t {
    kEmpty, kNull, kInteger, kLong, kDouble, kString, kBoolean, kDate, kObject, kArray
};

constexpr VarType kTypeOfIndex[] = {vtEmpty, vtNull, vtInteger, vtLong, vtDouble,
                                    vtString, vtBoolean, vtDate, vtObject, vtArray};

}  // namespace

Variant Variant::Null() { return Holding(NullTag{}); }
Variant Variant::Integer(int16_t value) { return Holding(value); }
Variant Variant::Long(int32_t value) { return Holding(value); }
Variant Variant::Boolean(bool value) { return Holding(value); }
Variant Variant::Date(double serial) { return Holding(DateValue{serial}); }

Variant::Variant(double v) : v_(v) {}
Variant::Variant(const std::string& v) : v_(v) {}
Variant::Variant(std::string&& v) : v_(std::move(v)) {}
Variant::Variant(const char* v) : v_(std::string(v ? v : "")) {}
Variant::Variant(com::ComPtr<com::IUnknown> object) : v_(std::move(object)) {}
Variant::Variant(VariantArray array) : v_(std::make_shared<VariantArray>(std::move(array))) {}
Variant::Variant(int32_t v) : v_(v) {}

VarType Variant::Type() const { return kTypeOfIndex[v_.index()]; }

bool Variant::IsNumeric() const {
    switch (v_.index()) {
        case kEmpty:
        case kInteger:
        case kLong:
        case kDouble:
        case kBoolean:
            return true;
        case kString: {
            double ignored = 0;
            return ParseBasicNumber(std::get<std::string>(v_), &ignored);
        }
        default:
            return false;
    }
}

const std::string& Variant::AsString() const {
    if (v_.index() != kString) RaiseBasic(kErrTypeMismatch);
    return std::get<std::string>(v_);
}

com::ComPtr<com::IUnknown> Variant::AsObject() const {
    if (v_.index() != kObject) RaiseBasic(kErrObjectRequired);
    return std::get<com::ComPtr<com::IUnknown>>(v_);
}

const VariantArray& Variant::AsArray() const {
    if (v_.index() != kArray) RaiseBasic(kErrTypeMismatch);
    return *std::get<std::shared_ptr<VariantArray>>(v_);
}

VariantArray& Variant::AsArray() {
    if (v_.index() != kArray) RaiseBasic(kErrTypeMismatch);
    // Copies share an array until one of them writes: arrays are values.
    auto& shared = std::get<std::shared_ptr<VariantArray>>(v_);
    if (shared.use_count() > 1) shared = std::make_shared<VariantArray>(*shared);
    return *shared;
}

bool Variant::EqualsBasic(const Variant& other) const {
    if (IsNull() || other.IsNull()) return false;
    if (IsArray() || other.IsArray()) RaiseBasic(kErrTypeMismatch);
    if (IsObject() || other.IsObject()) {
        if (!IsObject() || !other.IsObject()) RaiseBasic(kErrTypeMismatch);
        return AsObject().Get() == other.AsObject().Get();
    }
    const bool text = v_.index() == kString, otherText = other.v_.index() == kString;
    if (text && otherText) return AsString() == other.AsString();
    // Empty reads as "" beside text and as 0 beside a number; a number and
    // a text are never equal (the number sorts first).
    if (text || otherText) {
        const Variant& number = text ? other : *this;
        return number.IsEmpty() && (text ? AsString() : other.AsString()).empty();
    }
    return CDbl() == other.CDbl();
}

bool Variant::operator==(const Variant& other) const {
    if (v_.index() != other.v_.index()) return false;
    switch (v_.index()) {
        case kEmpty:
        case kNull:
            return true;
        case kArray: {
            const VariantArray& a = AsArray();
            const VariantArray& b = other.AsArray();
            return a.lowerBound == b.lowerBound && a.items == b.items;
        }
        case kObject:
            return AsObject().Get() == other.AsObject().Get();
        case kInteger: return std::get<int16_t>(v_) == std::get<int16_t>(other.v_);
        case kLong: return std::get<int32_t>(v_) == std::get<int32_t>(other.v_);
        case kDouble: return std::get<double>(v_) == std::get<double>(other.v_);
        case kString: return std::get<std::string>(v_) == std::get<std::string>(other.v_);
        case kBoolean: return std::get<bool>(v_) == std::get<bool>(other.v_);
        default: return std::get<DateValue>(v_) == std::get<DateValue>(other.v_);
    }
}

std::string Variant::Describe() const {
    switch (v_.index()) {
        case kEmpty: return "Empty";
        case kNull: return "Null";
        case kString: return "'" + AsString() + "'";
        case kDate: return "#" + FormatBasicDouble(std::get<DateValue>(v_).serial) + "#";
        case kObject: return AsObject() ? "<object>" : "Nothing";
        case kArray: {
            std::string out;
            for (const Variant& item : AsArray().items) {
                out += (out.empty() ? "" : ", ") + item.Describe();
            }
            return "[" + out + "]";
        }
        default: return CStr();
    }
}

}  // namespace automation
