// patchlist.npl on the disk: written whole or not at all, and read with the distrust that the service's answer gets.
#pragma once

#include "catalog/catalog_answer.h"

// The list of an inquiry made just now replaces the one before. 0, or why the former one stands as it was.
[[nodiscard]] unsigned int WritePatchList(const CString& path, const CatalogAnswer& answer,
                                          const CString& key, const CString& product);

// What CheckPatchFile answers.
[[nodiscard]] unsigned int CheckListedFile(const CString& listPath, const CString& filePath);
