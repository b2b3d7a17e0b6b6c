#pragma once

namespace tp3 {

/// Parts of the language that the parser lets in. One that is off has no standard identifiers, and its types
/// and literals are error 41: a program that needs it is refused rather than compiled wrong.
struct Features {
    bool reals = false; ///< Real, its literals, /, Sin and the like
    bool sets = false;
    bool files = false; ///< Text, file of, Assign and the like, Con, Lst and the other devices
    bool heap = false;  ///< New, Dispose, GetMem and the like; pointer types themselves are always there
};

/// What generator and run-time library of this version can do. Open a part here when they can do more.
inline constexpr Features shippedFeatures{.reals = true, .sets = true, .files = true, .heap = true};

} // namespace tp3
