// A small product, 1.0.0, and patches for it, as tests/support/make_patch_fixtures.py makes them before the tests run.
// A test program that uses them adds the source file to its own and `add_dependencies(... patch_fixtures)`.
#pragma once

#include "base/string.h"

// Full path of one of them: PatchFixture(L"First.msp").
//
// The package PatchTest.msi, and the patches First, Second and Independent, stand in three folders each, by where the files
// of the product lie: "beside" (a cabinet beside the package), "inside" (a cabinet within it), "loose". They are named with the
// folder (`beside\First.msp`), and the plain names below stand in none:
//
//   First            1.0.0 to 1.0.1: replaces replaced.txt, adds "Support\added file.txt". "Patch Test", "First"
//   Second           1.0.1 to 1.0.2, builds on First: replaces the added file and Support\second.txt
//   Independent      for 1.0.0, which stays: replaces Support\second.txt
//   OtherProduct     names another product, OTHER_PRODUCT_CODE
//   NoMetadata       as First, without the table of names
//   TargetNameOnly   as First, with the product's name alone
//   HostileName      as First, with names of more than 1,500 characters, format signs, line ends and marks of direction
//   Superseding      as First; its revision number goes on with the code of First
//   SameCode         First, byte for byte, under another name
//   ChangedFirst     as First, with its code, but with other contents of its files
//   CutOff, Empty, NoPatch    damaged, no byte, and plain text
//   SelfExtracting.exe        writes First.msp where " /e TARGET" says
//   ExtractsNothing.exe       ends with 2 and writes nothing
//
// Unusual, in the three folders, is as First, but kept.txt goes and a table Extras with a stream comes. Of the patches that a
// build can't merge each has one thing wrong that its name tells: Delta, WithoutAFile, WithoutCabinet, DamagedCabinet,
// UnknownTable, UnknownColumn, DamagedRows, StrayName, ProductsNumbers, ProductsMedium, MakesAnotherProduct, InvalidVersion.
[[nodiscard]] CString PatchFixture(const CString& name);

constexpr const wchar_t* PATCHED_PRODUCT_CODE = L"{7C1E0000-2B5D-4E0C-9D41-3A6F00000000}";
constexpr const wchar_t* OTHER_PRODUCT_CODE = L"{7C1E0000-2B5D-4E0C-9D41-3A6F00000010}";

constexpr const wchar_t* FIRST_PATCH_CODE = L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000001}";
constexpr const wchar_t* SECOND_PATCH_CODE = L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000002}";
constexpr const wchar_t* INDEPENDENT_PATCH_CODE = L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000003}";
constexpr const wchar_t* OTHER_PRODUCT_PATCH_CODE = L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000004}";
constexpr const wchar_t* NO_METADATA_PATCH_CODE = L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000005}";
constexpr const wchar_t* TARGET_NAME_ONLY_PATCH_CODE = L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000006}";
constexpr const wchar_t* HOSTILE_NAME_PATCH_CODE = L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000007}";
constexpr const wchar_t* SUPERSEDING_PATCH_CODE = L"{7C1E0001-2B5D-4E0C-9D41-3A6F00000008}";
