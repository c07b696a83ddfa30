#pragma once

/// @file
/// Everything that most hosts need for documents: load them, list their problems, read, change and save them. Comparing, merging and
/// laying out texts have headers of their own: document/compare.h, text_diff.h, merge.h and format.h.

#include "document/access.h"
#include "document/include.h"
#include "document/json.h"
#include "document/load.h"
#include "document/path.h"
#include "document/places.h"
#include "document/problem.h"
#include "document/ranges.h"
#include "document/recover.h"
#include "document/save.h"
#include "document/strings.h"
#include "document/utf8.h"

/// Documents as a host uses them: loaded in any stored form with a list of their problems, read and changed by paths, and saved with
/// their layout. Everything here is built on the classes of the library itself, such as ParserGroup and ParserEntry.
namespace bk_parser {}
