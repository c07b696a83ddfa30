#pragma once

#include "core/core_string.h"
#include "core/sys_device.h"
#include "document/load/meter_impl.h"
#include "document/sources/byte_facts_impl.h"

#include <cstdint>
#include <string>

namespace bk_parser {

/// A file as it is stored.
struct FileBytes {
    CoreString bytes;
    std::uint64_t hash = 0;    // ByteHash of them
    ByteFacts facts;           // of them
    std::string reason;        // why it could not be read, in plain words; else empty
    bool is_too_large = false; // then `bytes` has only the first few bytes
    std::uint64_t size = 0;    // of one that is too large; 0 when that is not known
};

/// Returns why a path of this kind cannot be read, or an empty text when it can. Call it right after the inspection: when there is no file,
/// the reason is that of the last system call.
std::string why_no_file(SysPathKind kind);

/// Reads a file, of at most `most` bytes, through the device in use. The meter's range is the reading.
FileBytes read_file(const std::string& path, core_uint64 most, const Meter::Range& range, Meter& meter);

} // namespace bk_parser
