// Everything that the pages share beside the frame: texts, patterns, paths, folders, error codes, GUIDs.
#pragma once

#include "frame/error_text.h"
#include "frame/file_path.h"
#include "frame/folder_browser.h"
#include "frame/folder_check.h"
#include "frame/host_name.h"
#include "frame/path_rules.h"
#include "frame/pattern.h"
#include "frame/resource_library.h"
#include "frame/resource_text.h"
#include "frame/text_rules.h"
