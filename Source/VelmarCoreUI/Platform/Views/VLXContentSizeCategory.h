#pragma once

#include <string_view>

/// The reader's preferred text size, as the platform names it. Categories are plain constant
/// strings: compare them with `==` (the texts are distinct, so equal text means the same
/// category). A host stores and passes the constants below; any other text is an unknown
/// category.
using VLXContentSizeCategory = std::string_view;

/// No preference given.
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryUnspecified =
    "VLXContentSizeCategoryUnspecified";

inline constexpr VLXContentSizeCategory VLXContentSizeCategoryExtraSmall =
    "VLXContentSizeCategoryExtraSmall";
inline constexpr VLXContentSizeCategory VLXContentSizeCategorySmall = "VLXContentSizeCategorySmall";
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryMedium =
    "VLXContentSizeCategoryMedium";
/// The default category.
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryLarge = "VLXContentSizeCategoryLarge";
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryExtraLarge =
    "VLXContentSizeCategoryExtraLarge";
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryExtraExtraLarge =
    "VLXContentSizeCategoryExtraExtraLarge";
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryExtraExtraExtraLarge =
    "VLXContentSizeCategoryExtraExtraExtraLarge";

// The larger accessibility sizes.
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryAccessibilityMedium =
    "VLXContentSizeCategoryAccessibilityMedium";
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryAccessibilityLarge =
    "VLXContentSizeCategoryAccessibilityLarge";
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryAccessibilityExtraLarge =
    "VLXContentSizeCategoryAccessibilityExtraLarge";
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryAccessibilityExtraExtraLarge =
    "VLXContentSizeCategoryAccessibilityExtraExtraLarge";
inline constexpr VLXContentSizeCategory VLXContentSizeCategoryAccessibilityExtraExtraExtraLarge =
    "VLXContentSizeCategoryAccessibilityExtraExtraExtraLarge";
