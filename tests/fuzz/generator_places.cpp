#include "generator.h"

namespace fuzz {

/// An index that lies in the array.
std::string Generator::indexInto(const Type* array, int depth) {
    if (array->index != nullptr) {
        return scalar(array->index, depth).text;
    }
    return integerOf(array->low, array->high, depth).text;
}

/// Follows fields and elements, towards something of `kind`.
void Generator::descend(Place& place, Kind kind, int depth) {
    while (place.type->kind != kind) {
        if (place.type->kind == Kind::array) {
            const Type* element = place.type->element;
            std::string index = indexInto(place.type, depth);
            // a[i][j] and a[i, j] are the same.
            if (place.text.back() == ']' && random_.chance(1, 2)) {
                place.text.back() = ',';
                place.text += " " + index + "]";
            } else {
                place.text += "[" + index + "]";
            }
            place.type = element;
            place.indexed = true;
        } else if (place.type->kind == Kind::record) {
            const Field& field = place.type->fields[static_cast<std::size_t>(
                random_.below(static_cast<int>(place.type->fields.size())))];
            place.text += "." + field.name;
            place.type = field.type;
        } else if (place.type->kind == Kind::pointer) {
            place.text = read(place) + "^";
            place.type = place.type->element;
            place.byPointer = true;
        } else {
            return;
        }
        place.low = place.type->low;
        place.high = place.type->high;
    }
}

/// Looks for a variable or a part of one of `kind`, and of exactly `type` when that is given.
bool Generator::findPlace(Place& place, Kind kind, const Type* type, bool forWriting) {
    for (int attempt = 0; attempt < 16 && !variables_.empty(); ++attempt) {
        std::size_t first = pure_ && forWriting ? ownVariables_ : 0;
        // The block's own ones, which are the last, are the more interesting ones.
        if (random_.chance(1, 2) && ownVariables_ < variables_.size()) {
            first = ownVariables_;
        }
        if (first >= variables_.size()) {
            return false;
        }
        const Variable& variable =
            variables_[first +
                       static_cast<std::size_t>(random_.below(static_cast<int>(variables_.size() - first)))];
        if ((forWriting && !variable.writable) || (pure_ && forWriting && !variable.local)) {
            continue;
        }
        Place found{variable.name, variable.type, variable.low, variable.high, false, false, &variable};
        // What an index is made of may be a place itself, and so on.
        if (variable.type->kind != kind && nesting_ > 3) {
            continue;
        }
        ++nesting_;
        descend(found, kind, 1);
        --nesting_;
        if (pure_ && forWriting && found.byPointer) {
            continue; // it may lead to anything
        }
        if (found.type->kind == kind && (type == nullptr || found.type == type)) {
            place = found;
            return true;
        }
    }
    return false;
}

} // namespace fuzz
