// Whether a transform of a patch is for a database, by what its summary information requires. No window header.
#pragma once

#include "base/string.h"

// What a transform says it changes: property 9 of its summary information is
// "{product code}version;{product code}version;{upgrade code}", property 7 "platform;language", and property 16 has the
// requirements in its high word.
struct TransformTarget
{
    CString strCodes;
    CString strTemplate;
    unsigned int requirements = 0;
};

// A product as its database tells it.
struct PatchedProduct
{
    CString strProductCode;
    CString strVersion;
    CString strUpgradeCode;
    CString strTemplate; // of the summary information
    CString strLanguage; // a number
};

// The requirements; numbers of the installer's (MSITRANSFORM_VALIDATE_...).
enum TransformRequirement : unsigned int
{
    REQUIRE_LANGUAGE = 1,
    REQUIRE_PRODUCT = 2,
    REQUIRE_PLATFORM = 4,
    REQUIRE_MAJOR_VERSION = 8,
    REQUIRE_MINOR_VERSION = 0x10,
    REQUIRE_UPDATE_VERSION = 0x20,
    REQUIRE_LOWER = 0x40,
    REQUIRE_LOWER_OR_EQUAL = 0x80,
    REQUIRE_EQUAL = 0x100,
    REQUIRE_HIGHER_OR_EQUAL = 0x200,
    REQUIRE_HIGHER = 0x400,
    REQUIRE_UPGRADE_CODE = 0x800,
};

// Why it isn't for that product, to follow after "it"; empty when it is.
[[nodiscard]] CString FindTransformMisfit(const TransformTarget& target, const PatchedProduct& product);
// The product code that the transform starts from; empty when its codes have another form.
[[nodiscard]] CString ProductOfTransform(const TransformTarget& target);
