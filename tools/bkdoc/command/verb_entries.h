#pragma once

#include "command/arguments.h"
#include "output/output.h"
#include "verbs/exit_code.h"

/// What the command table calls: each takes the options of its verb out of the command line and runs it.
namespace bkdoc {

class StreamDevice;

ExitCode check_entry(const Arguments& arguments, Streams& streams, StreamDevice& device);
ExitCode cat_entry(const Arguments& arguments, Streams& streams, StreamDevice& device);
ExitCode tree_entry(const Arguments& arguments, Streams& streams, StreamDevice& device);
ExitCode info_entry(const Arguments& arguments, Streams& streams, StreamDevice& device);
ExitCode same_entry(const Arguments& arguments, Streams& streams, StreamDevice& device);
ExitCode convert_entry(const Arguments& arguments, Streams& streams, StreamDevice& device);
ExitCode dump_entry(const Arguments& arguments, Streams& streams, StreamDevice& device);

} // namespace bkdoc
